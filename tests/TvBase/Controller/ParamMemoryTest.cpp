#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Controller/EnumParamMemory.h"
#include "TvBase/Controller/FloatParamMemory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{

/// Every value a parameter announced, in order.
template <typename T>
struct Recorder
{
    explicit Recorder(Controller::Param<T>& param)
    {
        param.valueChanged.Connect(nullptr, [this](T const& value) { values.push_back(value); });
    }
    std::vector<T> values;
};

/// A bool parameter of a host that records gestures: the order of grab, set and release.
class RecordingBoolParam : public Controller::BoolParamMemory
{
public:
    RecordingBoolParam() : BoolParamMemory(false) {}
    void set(bool const& value) override
    {
        log += IsGrabbed() ? "set(grabbed) " : "set ";
        BoolParamMemory::set(value);
    }
    void grab() override { log += "grab "; }
    void release() override { log += "release "; }
    std::string log;
};

} // namespace

TEST(FloatParamMemory, ClampsIntoTheRangeAndAnnouncesOnlyChanges)
{
    Controller::FloatParamMemory param(0.5f, value_range<float>(0.0f, 1.0f), "dB");
    Recorder<float> recorder(param);

    param.set(2.0f);
    EXPECT_EQ(1.0f, param.get());
    param.set(2.0f);
    param.set(1.0f);
    EXPECT_EQ(std::vector<float>({1.0f}), recorder.values);

    param.set(-3.0f);
    param.set(0.25f);
    param.set(0.25f);
    EXPECT_EQ(std::vector<float>({1.0f, 0.0f, 0.25f}), recorder.values);
    // The edges themselves are inside the range.
    param.set(0.0f);
    EXPECT_EQ(0.0f, param.get());
    { // Na n passes the clamp and is announced every time.
        Controller::FloatParamMemory param(0.0f, value_range<float>(0.0f, 1.0f));
        Recorder<float> recorder(param);
        float const nan = std::numeric_limits<float>::quiet_NaN();

        param.set(nan);
        EXPECT_TRUE(std::isnan(param.get()));
        param.set(nan);
        ASSERT_EQ(2u, recorder.values.size());
        EXPECT_TRUE(std::isnan(recorder.values[1]));

        param.set(std::numeric_limits<float>::infinity());
        EXPECT_EQ(1.0f, param.get());
    }
}

TEST(FloatParamMemory, RangeAndDefaultChanges)
{
    Controller::FloatParamMemory param(0.8f, value_range<float>(0.0f, 1.0f));
    Recorder<float> recorder(param);
    std::vector<float> ranges;
    param.rangeChanged.Connect(nullptr,
                               [&](value_range<float> const& range)
                               {
                                   ranges.push_back(range.minimum);
                                   ranges.push_back(range.maximum);
                               });

    param.SetRange(value_range<float>(0.0f, 0.5f));
    EXPECT_EQ(std::vector<float>({0.0f, 0.5f}), ranges);
    EXPECT_EQ(0.5f, param.GetRange().maximum);
    EXPECT_EQ(0.8f, param.get());
    EXPECT_TRUE(recorder.values.empty());

    param.set(0.8f);
    EXPECT_EQ(0.5f, param.get());
    EXPECT_EQ(std::vector<float>({0.5f}), recorder.values);
    { // Starts at the default which can change without touching the value.
        Controller::FloatParamMemory param(4.0f, value_range<float>(-96.0f, 12.0f), "dB");
        EXPECT_EQ(4.0f, param.get());
        EXPECT_EQ(4.0f, param.GetDefault());
        EXPECT_EQ(String("dB"), param.GetUnit());
        EXPECT_FALSE(param.IsNegInfMin());
        EXPECT_EQ(String("Param"), param.GetName());

        param.SetDefault(-6.0f);
        EXPECT_EQ(-6.0f, param.GetDefault());
        EXPECT_EQ(4.0f, param.get());

        Controller::FloatParamMemory unitless(0.0f, value_range<float>(0.0f, 1.0f));
        EXPECT_TRUE(unitless.GetUnit().IsEmpty());
    }
}

TEST(BoolParamMemory, AnnouncesOnlyChangesAndEnumsKeepWithinCaptions)
{
    Controller::BoolParamMemory param(true);
    Recorder<bool> recorder(param);
    EXPECT_TRUE(param.get());
    EXPECT_TRUE(param.GetDefault());
    EXPECT_FALSE(param.GetRange().minimum);
    EXPECT_TRUE(param.GetRange().maximum);

    param.set(true);
    param.set(false);
    param.set(false);
    param.set(true);
    EXPECT_EQ(std::vector<bool>({false, true}), recorder.values);
    { // Keeps its value within its captions.
        Controller::EnumParamMemory param(1, {"Low", "Mid", "High"});
        Recorder<unsigned int> recorder(param);
        EXPECT_EQ(1u, param.get());
        EXPECT_EQ(3u, param.GetNumValues());
        EXPECT_EQ(0u, param.GetRange().minimum);
        EXPECT_EQ(2u, param.GetRange().maximum);
        EXPECT_EQ(String("High"), param.GetCaptionForValue(2));
        EXPECT_TRUE(param.GetCaptionForValue(3).IsNull());

        param.set(7);
        param.set(2);
        param.set(0);
        EXPECT_EQ(std::vector<unsigned int>({2u, 0u}), recorder.values);

        Controller::EnumParamMemory none(0, {});
        none.set(5);
        EXPECT_EQ(0u, none.get());
    }
}

TEST(ParamGesture, SetWithGestureAndEmitChanged)
{
    RecordingBoolParam param;
    param.SetWithGesture(true);
    EXPECT_EQ("grab set(grabbed) release ", param.log);
    EXPECT_FALSE(param.IsGrabbed());

    // A user's gesture is open: the write goes straight in and the gesture stays open.
    param.log.clear();
    param.SetGrabbed(true);
    param.SetWithGesture(false);
    EXPECT_EQ("set(grabbed) ", param.log);
    EXPECT_TRUE(param.IsGrabbed());
    EXPECT_FALSE(param.get());
    { // Emit changed announces the current value even without a change.
        Controller::BoolParamMemory param(true);
        Recorder<bool> recorder(param);
        param.emitChanged();
        param.emitChanged();
        EXPECT_EQ(std::vector<bool>({true, true}), recorder.values);
    }
}

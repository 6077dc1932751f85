#include "TvBase/Controller/EnumToBool.h"
#include "TvBase/Controller/EnumParamMemory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

/// An enumeration whose host records gestures and writes.
class RecordingEnumParam : public Controller::EnumParamMemory
{
public:
    RecordingEnumParam() : EnumParamMemory(0, {"Sine", "Square", "Saw"}) {}
    void set(unsigned int const& value) override
    {
        log += (IsGrabbed() ? "set(grabbed)=" : "set=") + std::to_string(value) + " ";
        EnumParamMemory::set(value);
    }
    void grab() override { log += "grab "; }
    void release() override { log += "release "; }
    std::string log;
};

} // namespace

TEST(EnumToBool, IsOnWhileTheSourceHoldsItsValue)
{
    Controller::EnumParamMemory wave(1, {"Sine", "Square", "Saw"});
    Controller::EnumToBool square(&wave, 1);
    Controller::EnumToBool saw(&wave, 2);
    EXPECT_TRUE(square.get());
    EXPECT_FALSE(saw.get());
    EXPECT_TRUE(square.GetDefault());
    EXPECT_FALSE(saw.GetDefault());

    wave.set(2);
    EXPECT_FALSE(square.get());
    EXPECT_TRUE(saw.get());
    // The default follows the source's default, not its value.
    EXPECT_TRUE(square.GetDefault());
    { // Turning off needs a false value.
        Controller::EnumParamMemory wave(0, {"Sine", "Square", "Saw"});
        Controller::EnumToBool radio(&wave, 2);
        radio.set(true);
        EXPECT_EQ(2u, wave.get());
        radio.set(false);
        EXPECT_EQ(2u, wave.get());
        EXPECT_TRUE(radio.get());

        Controller::EnumToBool checkBox(&wave, 2, checked_value<unsigned int>(1));
        checkBox.set(false);
        EXPECT_EQ(1u, wave.get());
        EXPECT_FALSE(checkBox.get());
    }
    { // Announces every change of the source even when its result stays.
        Controller::EnumParamMemory wave(0, {"Sine", "Square", "Saw"});
        Controller::EnumToBool saw(&wave, 2);
        std::vector<bool> announced;
        saw.valueChanged.Connect(nullptr, [&](bool const& on) { announced.push_back(on); });

        wave.set(1); // off before and after
        wave.set(2);
        wave.set(2); // no change of the source: nothing
        wave.set(0);
        EXPECT_EQ(std::vector<bool>({false, true, false}), announced);
    }
}

TEST(EnumToBool, WritesInsideAGestureWhichDyingCloses)
{
    RecordingEnumParam wave;
    Controller::EnumToBool saw(&wave, 2, checked_value<unsigned int>(0));
    saw.set(true);
    EXPECT_EQ("grab set(grabbed)=2 release ", wave.log);
    EXPECT_FALSE(wave.IsGrabbed());

    wave.log.clear();
    saw.grab();
    EXPECT_TRUE(wave.IsGrabbed());
    saw.set(false);
    saw.set(true);
    saw.release();
    EXPECT_EQ("grab set(grabbed)=0 set(grabbed)=2 release ", wave.log);
    EXPECT_FALSE(wave.IsGrabbed());

    // A release without a grab closes nothing.
    wave.log.clear();
    saw.release();
    EXPECT_EQ("", wave.log);
    { // Dying with a gesture open closes it and stops listening.
        RecordingEnumParam wave;
        int announced = 0;
        {
            Controller::EnumToBool saw(&wave, 2);
            saw.valueChanged.Connect(nullptr, [&](bool const&) { ++announced; });
            saw.grab();
            wave.log.clear();
        }
        EXPECT_EQ("release ", wave.log);
        EXPECT_FALSE(wave.IsGrabbed());

        // The view is gone: the source's signal no longer reaches it.
        wave.set(1);
        EXPECT_EQ(0, announced);
        EXPECT_EQ(0u, wave.valueChanged.GetSlotCount());
    }
}

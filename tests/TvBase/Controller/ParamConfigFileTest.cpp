#include "TvBase/Controller/BoolParamConfigFile.h"
#include "TvBase/Controller/FloatParamConfigFile.h"
#include "TvBase/Util/ConfigFile.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace
{

/// A domain of its own for each test, so that the process-wide copies never mix.
String freshDomain()
{
    static std::atomic<int> counter{0};
    return String("com.tavorin.paramtest%1").Arg(++counter);
}

/// A settings-backed bool parameter whose host records gestures.
class RecordingBoolParam : public Controller::BoolParamConfigFile
{
public:
    RecordingBoolParam(Util::ConfigFile* config, String key)
        : BoolParamConfigFile(false, config, key, true)
    {
    }
    void grab() override { log += "grab "; }
    void release() override { log += "release "; }
    std::string log;
};

} // namespace

TEST(BoolParamConfigFile, StoresOnChangeOrWhenAsked)
{
    TestSupport::TempConfigHome home;
    String const domain = freshDomain();
    Util::ConfigFile config(domain);

    Controller::BoolParamConfigFile on(true, &config, "Show/Ruler", true);
    Controller::BoolParamConfigFile off(false, &config, "Show/Grid", true);
    EXPECT_TRUE(on.get());
    EXPECT_FALSE(off.get());
    std::vector<String> names;
    config.GetValueNames(names, "Show");
    EXPECT_TRUE(names.empty());
    { // Write through stores each change and survives a reload.
        TestSupport::TempConfigHome home;
        String const domain = freshDomain();
        {
            Util::ConfigFile config(domain);
            Controller::BoolParamConfigFile param(true, &config, "DesignAidVisible", true);
            param.set(false);
            EXPECT_FALSE(config.GetBool("DesignAidVisible", true));
            config.Synchronize();
        }

        // Another view of the same files, as a later run of the program sees them.
        home.SwitchToOtherView();
        Util::ConfigFile reloaded(domain);
        Controller::BoolParamConfigFile again(true, &reloaded, "DesignAidVisible", true);
        EXPECT_FALSE(again.get());
    }
    { // Without write through only write to config file stores.
        TestSupport::TempConfigHome home;
        String const domain = freshDomain();
        Util::ConfigFile config(domain);
        {
            Controller::BoolParamConfigFile param(false, &config, "Flag", false);
            param.set(true);
            EXPECT_FALSE(config.GetBool("Flag", false));
            param.WriteToConfigFile();
            EXPECT_TRUE(config.GetBool("Flag", false));
            param.set(false);
            // The destructor writes nothing either.
        }
        EXPECT_TRUE(config.GetBool("Flag", false));
    }
}

TEST(BoolParamConfigFile, ReadingBracketsAGestureAndWithoutSettingsItIsInMemory)
{
    TestSupport::TempConfigHome home;
    String const domain = freshDomain();
    Util::ConfigFile config(domain);
    config.SetBool("Key", true);

    RecordingBoolParam param(&config, "Key");
    EXPECT_TRUE(param.get());
    param.log.clear();

    config.SetBool("Key", false);
    param.ReadFromConfigFile();
    EXPECT_EQ("grab release ", param.log);
    EXPECT_FALSE(param.get());
    EXPECT_FALSE(param.IsGrabbed());

    param.log.clear();
    param.SetGrabbed(true);
    config.SetBool("Key", true);
    param.ReadFromConfigFile();
    EXPECT_EQ("", param.log);
    EXPECT_TRUE(param.get());
    EXPECT_TRUE(param.IsGrabbed());
    { // Without settings it is a memory parameter.
        Controller::BoolParamConfigFile param(true, nullptr, "Anything", true);
        EXPECT_TRUE(param.get());
        param.set(false);
        param.ReadFromConfigFile();
        param.WriteToConfigFile();
        EXPECT_FALSE(param.get());
    }
}

TEST(FloatParamConfigFile, ReadsTheStoredValueClampedOrTheDefault)
{
    TestSupport::TempConfigHome home;
    String const domain = freshDomain();
    {
        Util::ConfigFile config(domain);
        config.SetFloat("PixelZoomFactor", 64.0f);
        Controller::FloatParamConfigFile zoom(8.0f, value_range<float>(4.0f, 32.0f), &config,
                                              "PixelZoomFactor");
        EXPECT_EQ(32.0f, zoom.get());

        Controller::FloatParamConfigFile ruler(10.0f, value_range<float>(4.0f, 32.0f), &config,
                                               "PixelZoomRulerSize");
        EXPECT_EQ(10.0f, ruler.get());
        ruler.set(12.5f);
        EXPECT_EQ(-1.0f, config.GetFloat("PixelZoomRulerSize", -1.0f));
        ruler.WriteToConfigFile();
        EXPECT_EQ(12.5f, config.GetFloat("PixelZoomRulerSize", -1.0f));
        config.Synchronize();
    }

    home.SwitchToOtherView();
    Util::ConfigFile reloaded(domain);
    Controller::FloatParamConfigFile ruler(10.0f, value_range<float>(4.0f, 32.0f), &reloaded,
                                           "PixelZoomRulerSize");
    EXPECT_EQ(12.5f, ruler.get());
    // Read again after a change behind its back.
    reloaded.SetFloat("PixelZoomRulerSize", 1.0f);
    ruler.ReadFromConfigFile();
    EXPECT_EQ(4.0f, ruler.get());
    { // A value of another type reads as the default.
        TestSupport::TempConfigHome home;
        Util::ConfigFile config(freshDomain());
        config.SetString("Gain", "loud");
        Controller::FloatParamConfigFile gain(0.5f, value_range<float>(0.0f, 1.0f), &config,
                                              "Gain");
        EXPECT_EQ(0.5f, gain.get());
    }
}

#include "TvBase/Util/ConfigFile.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"

#include <gtest/gtest.h>

#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

using TestSupport::ReadSettingsFile;
using TestSupport::TempConfigHome;
using TestSupport::WriteSettingsFile;
using Util::ConfigFile;

namespace
{

std::vector<String> keyNames(ConfigFile const& config, char const* path)
{
    std::vector<String> names;
    config.GetKeyNames(names, path);
    return names;
}

std::vector<String> valueNames(ConfigFile const& config, char const* path)
{
    std::vector<String> names;
    config.GetValueNames(names, path);
    return names;
}

std::vector<String> strings(std::initializer_list<char const*> items)
{
    std::vector<String> out;
    for (char const* item : items)
        out.push_back(item);
    return out;
}

/// The name of the one file in `folder`; empty when there is not exactly one.
std::string onlyFileIn(std::string const& folder)
{
    std::vector<std::string> names;
    if (DIR* dir = opendir(folder.c_str()))
    {
        while (dirent* entry = readdir(dir))
        {
            std::string name = entry->d_name;
            if (name != "." && name != ".." && name.find(".lock") == std::string::npos)
                names.push_back(name);
        }
        closedir(dir);
    }
    return names.size() == 1 ? names[0] : std::string();
}

bool exists(std::string const& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

std::string plistWith(std::string const& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n" + body +
           "</dict>\n</plist>\n";
}

std::vector<unsigned char> bytes(std::initializer_list<int> list)
{
    std::vector<unsigned char> out;
    for (int b : list)
        out.push_back(static_cast<unsigned char>(b));
    return out;
}

bool sameBits(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

TEST(ConfigFileListing, KeyAndValueNamesAndPaths)
{
    TempConfigHome home;
    ConfigFile config("com.test.listing");
    for (char const* path : {"a/x", "a/y", "b/c/d", "e"})
        config.SetString(path, "v");

    EXPECT_EQ(keyNames(config, ""), strings({"a", "b"}));
    EXPECT_EQ(keyNames(config, "b"), strings({"c"}));
    EXPECT_EQ(keyNames(config, "b/"), strings({"c"}));
    EXPECT_EQ(keyNames(config, "B"), strings({"c"}));
    EXPECT_TRUE(keyNames(config, "a").empty());
    EXPECT_TRUE(keyNames(config, "e").empty());
    // "b" must be followed by "/" in the key path, so "bc/..." is not below "b".
    config.SetString("bc/z", "v");
    EXPECT_EQ(keyNames(config, "b"), strings({"c"}));
    EXPECT_EQ(keyNames(config, ""), strings({"a", "b", "bc"}));

    // A key exists only through its values.
    config.RemoveValue("b/c/d");
    EXPECT_EQ(keyNames(config, ""), strings({"a", "bc"}));
    EXPECT_TRUE(keyNames(config, "b").empty());
    { // Value names match the key case insensitively.
        TempConfigHome home;
        ConfigFile config("com.test.values");
        for (char const* path : {"a/x", "a/y", "b/c/d", "e", "Foo/x", "b/c/"})
            config.SetString(path, "v");

        EXPECT_EQ(valueNames(config, ""), strings({"e"}));
        EXPECT_EQ(valueNames(config, "B/C"), strings({"", "d"}));
        EXPECT_EQ(valueNames(config, "a"), strings({"x", "y"}));
        EXPECT_EQ(valueNames(config, "a/"), strings({"x", "y"}));
        EXPECT_EQ(valueNames(config, "a//"), strings({"x", "y"}));
        EXPECT_EQ(valueNames(config, "foo"), strings({"x"}));
        EXPECT_TRUE(valueNames(config, "nothing").empty());

        // Byte order, capitals first; stale entries in the output vector are cleared.
        ConfigFile order("com.test.order");
        for (char const* path : {"k/b", "k/B", "k/a", "k/_"})
            order.SetInt(path, 1);
        std::vector<String> names = strings({"stale"});
        order.GetValueNames(names, "k");
        EXPECT_EQ(names, strings({"B", "_", "a", "b"}));
    }
    { // Normalises doubled slashes but keeps ends.
        TempConfigHome home;
        ConfigFile config("com.test.paths");
        config.SetString("a//b", "one");
        EXPECT_EQ(config.GetString("a/b", "d"), "one");
        EXPECT_EQ(config.GetString("a////b", "d"), "one");

        // Leading and trailing "/" survive: "a//b/" is the value "a/b/", not "a/b".
        config.SetString("a//b/", "two");
        EXPECT_EQ(config.GetString("a/b/", "d"), "two");
        EXPECT_EQ(config.GetString("a/b", "d"), "one");
        config.SetString("//top", "three");
        EXPECT_EQ(config.GetString("/top", "d"), "three");
        EXPECT_EQ(config.GetString("top", "d"), "d");
    }
}

TEST(ConfigFileListing, CoversAllFourScopesWithoutDuplicates)
{
    TempConfigHome home;
    ConfigFile probe("com.test.scopes");
    probe.SetStringLegacyLocation("k/legacy", "l");
    probe.Synchronize();
    // The current host's file, under the name the store chose for this host.
    std::string hostFile = onlyFileIn(home.UserFolder() + "ByHost/");
    ASSERT_EQ(hostFile.rfind("com.test.scopes.", 0), 0u) << hostFile;
    WriteSettingsFile(home.SystemFolder() + "com.test.scopes.plist",
                      plistWith("<key>k/system</key><string>s</string>"
                                "<key>k/shared</key><string>system value</string>"
                                "<key>k/hostShared</key><string>any host</string>"));
    WriteSettingsFile(home.SystemFolder() + "ByHost/" + hostFile,
                      plistWith("<key>k/systemHost</key><string>sh</string>"
                                "<key>k/hostShared</key><string>this host</string>"));

    home.SwitchToOtherView();
    ConfigFile config("com.test.scopes");
    config.SetString("k/shared", "user value");
    config.SetString("k/user", "u");
    config.SetStringLegacyLocation("k/user", "host value");

    EXPECT_EQ(valueNames(config, "k"),
              strings({"hostShared", "legacy", "shared", "system", "systemHost", "user"}));
    // The user's values stand over the any-user ones, and the current host's over any host's.
    EXPECT_EQ(config.GetString("k/shared", "d"), "user value");
    EXPECT_EQ(config.GetString("k/system", "d"), "s");
    EXPECT_EQ(config.GetString("k/systemHost", "d"), "sh");
    EXPECT_EQ(config.GetString("k/hostShared", "d"), "this host");
    EXPECT_EQ(config.GetString("k/legacy", "d"), "l");
    EXPECT_EQ(config.GetString("k/user", "d"), "host value");

    // RemoveValue takes away what the plain setters wrote, nothing else.
    config.RemoveValue("k/user");
    config.RemoveValue("k/legacy");
    config.RemoveValue("k/system");
    EXPECT_EQ(config.GetString("k/user", "d"), "host value");
    EXPECT_EQ(config.GetString("k/legacy", "d"), "l");
    EXPECT_EQ(config.GetString("k/system", "d"), "s");

    // The any-user files are never written.
    std::string before = ReadSettingsFile(home.SystemFolder() + "com.test.scopes.plist");
    config.SetString("k/system", "mine");
    config.Synchronize();
    EXPECT_EQ(ReadSettingsFile(home.SystemFolder() + "com.test.scopes.plist"), before);
    EXPECT_EQ(config.GetString("k/system", "d"), "mine");
}

TEST(ConfigFileTypes, EveryTypeAndItsLimits)
{
    TempConfigHome home;
    ConfigFile config("com.test.types");
    config.SetInt("number", 7);
    config.SetString("text", "12");
    config.SetBinary("data", bytes({1, 2, 3, 4}).data(), 4);

    EXPECT_EQ(config.GetString("number", "d"), "d");
    EXPECT_EQ(config.GetInt("text", -3), -3);
    EXPECT_EQ(config.GetUInt("text", 9u), 9u);
    EXPECT_TRUE(config.GetBool("text", true));
    EXPECT_FALSE(config.GetBool("data", false));
    EXPECT_EQ(config.GetUInt64("data", 5), 5u);
    EXPECT_EQ(config.GetFloat("number", 2.5f), 2.5f);
    EXPECT_EQ(config.GetFloat("text", 2.5f), 2.5f);
    std::vector<unsigned char> data = bytes({9});
    EXPECT_FALSE(config.GetBinary("number", data));
    EXPECT_TRUE(data.empty());
    EXPECT_EQ(config.GetString("data", "d"), "d");

    // Missing values give the defaults too.
    EXPECT_EQ(config.GetString("missing", "d"), "d");
    EXPECT_TRUE(config.GetString("missing").IsNull());
    EXPECT_EQ(config.GetInt("missing", -1), -1);

    // A later setter changes the type.
    config.SetString("number", "now text");
    EXPECT_EQ(config.GetInt("number", -1), -1);
    EXPECT_EQ(config.GetString("number"), "now text");
    { // Integers share one number form.
        TempConfigHome home;
        ConfigFile config("com.test.numbers");
        EXPECT_TRUE(config.SetUInt("u", 0xFFFFFFFFu));
        EXPECT_EQ(config.GetInt("u", 0), -1);
        EXPECT_TRUE(config.SetInt("i", -2));
        EXPECT_EQ(config.GetUInt("i", 0), 0xFFFFFFFEu);
        EXPECT_TRUE(config.SetBool("b", true));
        EXPECT_EQ(config.GetInt("b", 0), 1);
        EXPECT_TRUE(config.SetBool("f", false));
        EXPECT_FALSE(config.GetBool("f", true));
        config.SetInt("n", 5);
        EXPECT_TRUE(config.GetBool("n", false));
        config.SetInt("z", 0);
        EXPECT_FALSE(config.GetBool("z", true));
    }
    { // U int64 truncates both value and default.
        TempConfigHome home;
        ConfigFile config("com.test.uint64");
        config.SetUInt64("big", 0x100000002ull);
        EXPECT_EQ(config.GetUInt64("big", 0), 2u);
        EXPECT_EQ(config.GetUInt64("missing", 0x100000005ull), 5u);
        config.SetUInt64("max", 0xFFFFFFFFFFFFFFFFull);
        EXPECT_EQ(config.GetUInt64("max", 0), 0xFFFFFFFFu);
        config.SetInt("small", -1);
        EXPECT_EQ(config.GetUInt64("small", 0), 0xFFFFFFFFu);

        // All 64 bits reach the file: another process reads them back.
        config.Synchronize();
        home.SwitchToOtherView();
        ConfigFile other("com.test.uint64");
        EXPECT_EQ(other.GetUInt64("big", 0), 2u);
        EXPECT_NE(ReadSettingsFile(home.UserFolder() + "com.test.uint64.plist").find("4294967298"),
                  std::string::npos);
    }
    { // Reads the written form and the old form.
        TempConfigHome home;
        ConfigFile config("com.test.floats");
        for (float value : {0.0f, -0.0f, 1.5f, -3.25e-38f, 3.4028235e38f, 1e-45f, 0.1f})
        {
            config.SetFloat("f", value);
            EXPECT_TRUE(sameBits(config.GetFloat("f", 7.0f), value)) << value;
        }

        // The written form: eight bytes, four zero, then the single in little-endian order.
        config.SetFloat("f", 1.5f);
        std::vector<unsigned char> data;
        ASSERT_TRUE(config.GetBinary("f", data));
        EXPECT_EQ(data, bytes({0, 0, 0, 0, 0x00, 0x00, 0xC0, 0x3F}));

        // The old form: four bytes, big-endian.
        auto old = bytes({0x3F, 0xC0, 0x00, 0x00});
        config.SetBinary("old", old.data(), old.size());
        EXPECT_EQ(config.GetFloat("old", 7.0f), 1.5f);
        auto negative = bytes({0xC0, 0x20, 0x00, 0x00});
        config.SetBinary("old", negative.data(), negative.size());
        EXPECT_EQ(config.GetFloat("old", 7.0f), -2.5f);

        // Anything else is not a float.
        auto five = bytes({0, 0, 0, 0, 1});
        config.SetBinary("five", five.data(), five.size());
        EXPECT_EQ(config.GetFloat("five", 7.0f), 7.0f);
        auto prefixed = bytes({0, 0, 0, 1, 0x00, 0x00, 0xC0, 0x3F});
        config.SetBinary("prefixed", prefixed.data(), prefixed.size());
        EXPECT_EQ(config.GetFloat("prefixed", 7.0f), 7.0f);
        config.SetBinary("empty", nullptr, 0);
        EXPECT_EQ(config.GetFloat("empty", 7.0f), 7.0f);

        // The same after a round trip through the file.
        config.Synchronize();
        home.SwitchToOtherView();
        ConfigFile other("com.test.floats");
        EXPECT_EQ(other.GetFloat("f", 7.0f), 1.5f);
        EXPECT_EQ(other.GetFloat("old", 7.0f), -2.5f);
    }
    { // Holds one to a million bytes.
        TempConfigHome home;
        ConfigFile config("com.test.binary");
        std::vector<unsigned char> data = bytes({1, 2});

        EXPECT_TRUE(config.SetBinary("empty", nullptr, 0));
        EXPECT_FALSE(config.GetBinary("empty", data));
        EXPECT_TRUE(data.empty());

        EXPECT_FALSE(config.SetBinary("null", nullptr, 3));
        EXPECT_FALSE(config.GetBinary("null", data));

        auto one = bytes({0});
        EXPECT_TRUE(config.SetBinary("one", one.data(), one.size()));
        EXPECT_TRUE(config.GetBinary("one", data));
        EXPECT_EQ(data, one);

        std::vector<unsigned char> million(1000000);
        for (std::size_t i = 0; i < million.size(); ++i)
            million[i] = static_cast<unsigned char>(i * 7919 >> 3);
        EXPECT_TRUE(config.SetBinary("million", million.data(), million.size()));
        EXPECT_TRUE(config.GetBinary("million", data));
        EXPECT_EQ(data, million);

        std::vector<unsigned char> tooLong(1000001, 0xAB);
        EXPECT_TRUE(config.SetBinary("tooLong", tooLong.data(), tooLong.size()));
        data = bytes({5});
        EXPECT_FALSE(config.GetBinary("tooLong", data));
        EXPECT_TRUE(data.empty());

        // Through the file and back.
        config.Synchronize();
        home.SwitchToOtherView();
        ConfigFile other("com.test.binary");
        EXPECT_TRUE(other.GetBinary("million", data));
        EXPECT_EQ(data, million);
        EXPECT_TRUE(other.GetBinary("one", data));
        EXPECT_EQ(data, one);
        EXPECT_FALSE(other.GetBinary("tooLong", data));
        EXPECT_FALSE(other.GetBinary("empty", data));
    }
    { // Text the file cannot hold becomes empty.
        TempConfigHome home;
        ConfigFile config("com.test.text");
        config.SetString("utf8", "Gr\xC3\xBC\xC3\x9F"
                                 "e \xE2\x82\xAC \xF0\x9F\x8E\xB5");
        config.SetString("markup", "<a & b> \"quoted\"\ttab\nline");
        config.SetString("invalid", "bad \xC3 byte");
        config.SetString("overlong", "\xC0\xAF");
        config.SetString("control", "bell \x07");
        config.SetString("bad \xFF path", "value");

        config.Synchronize();
        home.SwitchToOtherView();
        ConfigFile other("com.test.text");
        EXPECT_EQ(other.GetString("utf8"), "Gr\xC3\xBC\xC3\x9F"
                                           "e \xE2\x82\xAC \xF0\x9F\x8E\xB5");
        EXPECT_EQ(other.GetString("markup"), "<a & b> \"quoted\"\ttab\nline");
        EXPECT_EQ(other.GetString("invalid", "d"), "");
        EXPECT_EQ(other.GetString("overlong", "d"), "");
        EXPECT_EQ(other.GetString("control", "d"), "");
        // The path could not be stored either: the value went to the empty name.
        EXPECT_EQ(other.GetString("", "d"), "value");
    }
}

TEST(ConfigFileSharing, ValuesAreSharedAndMergedThroughTheFile)
{
    TempConfigHome home;
    ConfigFile first("com.test.share");
    ConfigFile second("com.test.share");
    first.SetString("k", "v");
    EXPECT_EQ(second.GetString("k"), "v");
    second.RemoveValue("k");
    EXPECT_EQ(first.GetString("k", "gone"), "gone");

    // Nothing reaches disk before Synchronize, and a removal of a missing value writes nothing.
    ConfigFile lazy("com.test.lazy");
    lazy.RemoveValue("never/there");
    lazy.Synchronize();
    EXPECT_FALSE(exists(home.UserFolder() + "com.test.lazy.plist"));
    lazy.SetString("k", "v");
    EXPECT_FALSE(exists(home.UserFolder() + "com.test.lazy.plist"));
    lazy.Synchronize();
    EXPECT_TRUE(exists(home.UserFolder() + "com.test.lazy.plist"));
    { // Other processes see writes after synchronize.
        TempConfigHome home;
        ConfigFile mine("com.test.visible");
        mine.SetString("early", "1");
        mine.Synchronize();

        home.SwitchToOtherView();
        ConfigFile theirs("com.test.visible");
        EXPECT_EQ(theirs.GetString("early"), "1");
        theirs.SetString("late", "2");
        theirs.RemoveValue("early");
        EXPECT_EQ(mine.GetString("late", "none"), "none");

        theirs.Synchronize();
        // Still the old view until this side synchronises too.
        EXPECT_EQ(mine.GetString("late", "none"), "none");
        EXPECT_EQ(mine.GetString("early", "none"), "1");
        mine.Synchronize();
        EXPECT_EQ(mine.GetString("late", "none"), "2");
        EXPECT_EQ(mine.GetString("early", "none"), "none");
    }
    { // Synchronize merges changes of both sides.
        TempConfigHome home;
        ConfigFile mine("com.test.merge");
        mine.SetString("shared", "old");
        mine.SetString("doomed", "x");
        mine.Synchronize();

        home.SwitchToOtherView();
        ConfigFile theirs("com.test.merge");
        theirs.SetString("theirs", "t");
        theirs.RemoveValue("doomed");
        mine.SetString("mine", "m");
        mine.SetString("shared", "new");

        theirs.Synchronize();
        mine.Synchronize();
        theirs.Synchronize();
        for (ConfigFile* config : {&mine, &theirs})
        {
            EXPECT_EQ(config->GetString("theirs"), "t");
            EXPECT_EQ(config->GetString("mine"), "m");
            EXPECT_EQ(config->GetString("shared"), "new");
            EXPECT_EQ(config->GetString("doomed", "gone"), "gone");
        }
    }
    { // Notices a change that keeps size and file.
        TempConfigHome home;
        ConfigFile config("com.test.samesize");
        config.SetString("k", "1");
        config.Synchronize();

        // Rewritten in place at once: same inode, same size, most likely the same time stamp.
        std::string file = home.UserFolder() + "com.test.samesize.plist";
        std::string text = ReadSettingsFile(file);
        std::size_t at = text.find("<string>1</string>");
        ASSERT_NE(at, std::string::npos);
        text[at + 8] = '2';
        WriteSettingsFile(file, text);

        config.Synchronize();
        EXPECT_EQ(config.GetString("k"), "2");
        // And a merge keeps it rather than writing back the old reading.
        WriteSettingsFile(file, ReadSettingsFile(file).replace(at + 8, 1, "3"));
        config.SetString("other", "x");
        config.Synchronize();
        home.SwitchToOtherView();
        EXPECT_EQ(ConfigFile("com.test.samesize").GetString("k"), "3");
    }
}

TEST(ConfigFileCopy, CopiesAnyTypeAndKeepsForeignOnes)
{
    TempConfigHome home;
    ConfigFile source("com.test.source");
    ConfigFile target("com.test.target");
    source.SetString("s", "text");
    source.SetUInt64("n", 0x100000003ull);
    source.SetFloat("f", 0.25f);
    auto blob = bytes({1, 2, 3});
    source.SetBinary("b", blob.data(), blob.size());

    for (char const* path : {"s", "n", "f", "b"})
        target.CopyPropertyFrom(path, source);
    EXPECT_EQ(target.GetString("s"), "text");
    EXPECT_EQ(target.GetUInt64("n", 0), 3u);
    EXPECT_EQ(target.GetFloat("f", 0), 0.25f);
    std::vector<unsigned char> data;
    EXPECT_TRUE(target.GetBinary("b", data));
    EXPECT_EQ(data, blob);

    // A missing value leaves the target as it was.
    target.CopyPropertyFrom("s2", source);
    target.SetString("kept", "k");
    target.CopyPropertyFrom("kept", source);
    EXPECT_EQ(target.GetString("kept"), "k");

    // The path is taken as given: "a//b" is not the stored "a/b".
    source.SetString("a//b", "x");
    target.CopyPropertyFrom("a//b", source);
    EXPECT_EQ(target.GetString("a/b", "none"), "none");
    target.CopyPropertyFrom("a/b", source);
    EXPECT_EQ(target.GetString("a/b", "none"), "x");
    { // Keeps values of types it does not write.
        TempConfigHome home;
        WriteSettingsFile(
            home.UserFolder() + "com.test.foreign.plist",
            plistWith("<key>flag</key><true/>"
                      "<key>list</key><array><string>a</string><integer>2</integer></array>"
                      "<key>ratio</key><real>0.5</real>"));
        ConfigFile config("com.test.foreign");
        EXPECT_TRUE(config.GetBool("flag", false));
        EXPECT_EQ(config.GetString("list", "d"), "d");
        EXPECT_EQ(config.GetInt("ratio", -1), -1);
        EXPECT_EQ(valueNames(config, ""), strings({"flag", "list", "ratio"}));

        // Writing another value leaves them exactly as they were.
        config.SetString("new", "n");
        config.Synchronize();
        std::string text = ReadSettingsFile(home.UserFolder() + "com.test.foreign.plist");
        EXPECT_NE(text.find("<true/>"), std::string::npos);
        EXPECT_NE(text.find("<array>"), std::string::npos);
        EXPECT_NE(text.find("<real>"), std::string::npos);

        ConfigFile copy("com.test.foreign.copy");
        copy.CopyPropertyFrom("list", config);
        copy.Synchronize();
        EXPECT_NE(
            ReadSettingsFile(home.UserFolder() + "com.test.foreign.copy.plist").find("<array>"),
            std::string::npos);
    }
}

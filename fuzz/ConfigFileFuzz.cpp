// Any bytes in a settings file: the store must read them as settings or as a damaged file (kept
// aside), never crash, and every getter must answer.

#include "TvBase/Util/ConfigFile.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{

std::string const& settingsFolder()
{
    static std::string const folder = []
    {
        char pattern[] = "/tmp/tvfuzz-config-XXXXXX";
        std::string root = mkdtemp(pattern) ? pattern : "/tmp";
        setenv("XDG_CONFIG_HOME", root.c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (root + "/system").c_str(), 1);
        std::string tavorin = root + "/tavorin/";
        mkdir(tavorin.c_str(), 0700);
        return tavorin;
    }();
    return folder;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const& folder = settingsFolder();
    static Util::ConfigFile config("com.fuzz.settings");
    std::string file = folder + "com.fuzz.settings.plist";
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
    }
    config.Synchronize();

    std::vector<String> keys;
    std::vector<String> values;
    config.GetKeyNames(keys, "");
    config.GetValueNames(values, "");
    for (String const& key : keys)
    {
        std::vector<String> inner;
        config.GetValueNames(inner, key);
        for (String const& name : inner)
            config.GetString(key + "/" + name, "");
    }
    std::vector<unsigned char> bytes;
    for (String const& name : values)
    {
        config.GetString(name, "");
        config.GetFloat(name, 0.0f);
        config.GetUInt64(name, 0);
        config.GetBool(name, false);
        config.GetBinary(name, bytes);
    }
    // A damaged file was moved aside; start the next run clean.
    unlink((file + ".corrupt").c_str());
    return 0;
}

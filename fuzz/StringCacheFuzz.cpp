// Reads arbitrary bytes as "stringCache.dat": the width cache must come up (possibly empty)
// and save again without crashing, whatever the file holds.

#include "Canvas/UI/StringWidthCache.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, size_t size)
{
    static std::string const folder = []
    {
        char pattern[] = "/tmp/tv-stringcache-fuzz-XXXXXX";
        char const* made = mkdtemp(pattern);
        return std::string(made ? made : "/tmp");
    }();
    std::string const file = folder + "/stringCache.dat";
    if (FILE* out = std::fopen(file.c_str(), "wb"))
    {
        std::fwrite(data, 1, size, out);
        std::fclose(out);
    }
    {
        UI::StringWidthCache cache(nullptr, folder.c_str());
        cache.GetCachedStringWidth("x", UI::FontInfo("Arial", 11.0f));
    } // saves the cache back
    std::remove(file.c_str());
    return 0;
}

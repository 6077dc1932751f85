// Reads arbitrary bytes as "stringCache.dat": the width cache must come up (possibly empty)
// and save again without crashing, whatever the file holds.

#include "Canvas/UI/StringWidthCache.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, size_t size)
{
    // One scratch folder for the whole run, removed when the fuzzer exits normally.
    struct Scratch
    {
        std::string folder;
        Scratch()
        {
            char pattern[] = "/tmp/tv-stringcache-fuzz-XXXXXX";
            if (char const* made = mkdtemp(pattern))
                folder = made;
        }
        ~Scratch()
        {
            if (!folder.empty())
                rmdir(folder.c_str());
        }
    };
    static Scratch const scratch;
    if (scratch.folder.empty())
        return 0;
    std::string const& folder = scratch.folder;
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

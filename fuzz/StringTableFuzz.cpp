// Parses arbitrary bytes as a string table (with and without a BOM put in front) and
// translates a few texts against it.

#include "TvBase/Language/Translator.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::vector<unsigned char> withBom{0xEF, 0xBB, 0xBF};
    withBom.insert(withBom.end(), data, data + size);

    Language::Translator translator;
    translator.AddStringTable(array_ref<unsigned char const>(data, size));
    translator.AddStringTable(array_ref<unsigned char const>(withBom.data(), withBom.size()));
    for (char const* language : {"en", "de", "ja"})
    {
        translator.SetCurrentLanguage(language);
        translator.Translate("3 items", "");
        translator.Translate("a\nb", "menu");
        translator.Translate("Update", "");
    }
    return 0;
}

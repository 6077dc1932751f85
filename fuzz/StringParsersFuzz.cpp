// Feeds arbitrary bytes to the number parsers, the formatter and the list and replace helpers,
// and checks the round trips that must hold for any input.
#include "TvBase/Util/String.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    if (size == 0)
        return 0;
    unsigned int const radix = data[0] % 40;
    std::string bytes(reinterpret_cast<char const*>(data + 1), size - 1);
    String const text(bytes.c_str(), static_cast<unsigned int>(bytes.size()));

    checked_value<long long> i64 = text.ToInt64(radix);
    text.ToShort(radix);
    text.ToUShort(radix);
    text.ToUInt(radix);
    text.ToUInt64(radix);
    text.ToUserFacingFloat();
    checked_value<int> i32 = text.ToInt();
    checked_value<double> d = text.ToDouble();
    if (i32.present && String::Number(i32.value).ToInt() != i32)
        std::abort();
    if (i64.present && String::Number(i64.value).ToInt64() != i64)
        std::abort();
    if (d.present && d.value == d.value && !String::Number(d.value, 17, unsigned('e')).ToDouble())
        std::abort();

    std::vector<String> parts;
    text.Split(data[0] & 1 ? '|' : ',', parts);
    if (String::Join(data[0] & 1 ? "|" : ",", parts) != text)
        std::abort();

    String formatted = text;
    for (String const& part : parts)
        formatted = formatted.Arg(part);
    formatted.Arg(static_cast<int>(data[0]) - 128, radix, checked_value<unsigned int>(data[0] % 8));

    if (parts.size() >= 2)
        text.Replace(parts[0], parts[1]);
    text.Replace(data[0] & 2 ? '%' : 'a', "xy");
    text.StripWhiteSpace();
    text.SimplifyWhiteSpace();
    text.Unicode();
    text.Unicode(2);
    String cut = text;
    cut.Resize(data[0] % (text.Length() + 1), true);
    text.Extract('|', data[0] % 4);
    text.Find(parts.front().CStr(), 0, false);
    return 0;
}

#include "tools/tvcheck/CheckReport.h"

#include <cstdio>

namespace Updater
{

namespace
{

std::string lineField(String const& text)
{
    std::string field(text.CStr());
    for (char& c : field)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = ' ';
    return field;
}

/// The length of the valid UTF-8 sequence at `i`, or 0 when the bytes there are not one.
std::size_t utf8SequenceLength(std::string const& text, std::size_t i)
{
    unsigned char const lead = static_cast<unsigned char>(text[i]);
    std::size_t length = 0;
    unsigned int codePoint = 0;
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
    {
        length = 2;
        codePoint = lead & 0x1F;
    }
    else if (lead >= 0xE0 && lead <= 0xEF)
    {
        length = 3;
        codePoint = lead & 0x0F;
    }
    else if (lead >= 0xF0 && lead <= 0xF4)
    {
        length = 4;
        codePoint = lead & 0x07;
    }
    else
        return 0;
    if (i + length > text.size())
        return 0;
    for (std::size_t k = 1; k < length; ++k)
    {
        unsigned char const next = static_cast<unsigned char>(text[i + k]);
        if ((next & 0xC0) != 0x80)
            return 0;
        codePoint = codePoint << 6 | (next & 0x3F);
    }
    bool const overlong =
        (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
    bool const surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (overlong || surrogate || codePoint > 0x10FFFF)
        return 0;
    return length;
}

std::string jsonString(String const& value)
{
    std::string const text(value.CStr());
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size();)
    {
        std::size_t const length = utf8SequenceLength(text, i);
        if (length == 0)
        {
            out += "\\ufffd";
            ++i;
            continue;
        }
        char const c = text[i];
        if (c == '"' || c == '\\')
            out += std::string("\\") + c;
        else if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else if (c == '\t')
            out += "\\t";
        else if (static_cast<unsigned char>(c) < 0x20)
        {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned char>(c));
            out += escaped;
        }
        else
            out.append(text, i, length);
        i += length;
    }
    return out + "\"";
}

} // namespace

std::string FormatUpdatesAsLines(std::vector<boost::shared_ptr<UpdateEntry>> const& updates)
{
    std::string out;
    for (auto const& entry : updates)
        out += lineField(entry->productName) + '\t' + lineField(entry->installedVersion) + '\t' +
               lineField(entry->availableVersion) + '\t' + lineField(entry->updateUrl) + '\n';
    return out;
}

std::string FormatUpdatesAsJson(std::vector<boost::shared_ptr<UpdateEntry>> const& updates)
{
    std::string out = "[";
    for (std::size_t i = 0; i < updates.size(); ++i)
    {
        UpdateEntry const& entry = *updates[i];
        out += i == 0 ? "\n  {" : ",\n  {";
        out += "\"product\": " + jsonString(entry.productName);
        out += ", \"installed\": " + jsonString(entry.installedVersion);
        out += ", \"available\": " + jsonString(entry.availableVersion);
        out += ", \"link\": " + jsonString(entry.updateUrl) + "}";
    }
    out += updates.empty() ? "]\n" : "\n]\n";
    return out;
}

std::string FormatFailureAsJson(std::string const& reason)
{
    return "{\"error\": " + jsonString(String(reason.c_str())) + "}\n";
}

} // namespace Updater

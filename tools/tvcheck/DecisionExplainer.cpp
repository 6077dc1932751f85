#include "tools/tvcheck/DecisionExplainer.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace Updater
{

namespace
{

std::vector<String> split(String const& text, char separator)
{
    std::vector<String> parts;
    text.Split(separator, parts);
    return parts;
}

/// A field of the file as a person should see it: quoted, control bytes escaped, long texts cut.
std::string quoted(String const& field)
{
    std::string const text(field.IsNull() ? "" : field.CStr());
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size() && i < 80; ++i)
    {
        unsigned char const c = static_cast<unsigned char>(text[i]);
        if (c == '\r')
            out += "\\r";
        else if (c < 0x20 || c == 0x7F)
        {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", c);
            out += escaped;
        }
        else
            out += static_cast<char>(c);
    }
    if (text.size() > 80)
        out += "...";
    return out + "\"";
}

/// The version as written, and how it reads when that differs from the text.
std::string versionAndReading(String const& text, float value)
{
    std::string const written = text.StripWhiteSpace().CStr();
    std::string const reading = DecisionExplainer::NumberText(value);
    if (written == reading)
        return written;
    return written + " reads as " + reading;
}

std::string notANumber(String const& text)
{
    std::string reason = quoted(text) + " is not a number";
    int dots = 0;
    for (char c : std::string(text.CStr()))
        dots += c == '.' || c == ',';
    if (dots > 1)
        reason += " (a version is one decimal number, with at most one point)";
    return reason;
}

std::string decide(String const& installedText, String const& availableText)
{
    checked_value<float> const installed = installedText.ToFloat();
    checked_value<float> const available = availableText.ToFloat();
    if (installedText.IsEmpty())
        return "no update: the installed version is not set";
    if (!installed)
        return "no update: the installed version " + notANumber(installedText);
    if (!available)
        return "no update: the available version " + notANumber(availableText);
    std::string const a = versionAndReading(availableText, *available);
    std::string const i = versionAndReading(installedText, *installed);
    if (*available > *installed)
        return "update offered: available " + a + ", newer than installed " + i;
    if (*available == *installed)
        return "no update: available " + a + ", the same number as installed " + i;
    return "no update: available " + a + ", not newer than installed " + i;
}

} // namespace

std::string DecisionExplainer::NumberText(float value)
{
    char text[32];
    for (int digits = 1; digits <= 9; ++digits)
    {
        std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(value));
        if (std::strtof(text, nullptr) == value)
            break;
    }
    return text;
}

bool DecisionExplainer::IsVersionsFile(String const& text, std::string& reason)
{
    if (text.IsNull() || text.IsEmpty())
    {
        reason = "the answer is empty";
        return false;
    }
    for (String const& line : split(text, '\n'))
        if (split(line, '|').size() >= 3)
            return true;
    reason = "the answer is not a versions file (no line reads product|version|link)";
    return false;
}

std::string DecisionExplainer::Explain(String const& text, VersionSettings& settings)
{
    std::vector<String> keys;
    settings.GetKeyNames(keys, "InstalledProducts");
    std::vector<String> const lines =
        text.IsNull() || text.IsEmpty() ? std::vector<String>() : split(text, '\n');

    std::string out;
    for (String const& key : keys)
    {
        String const installed = settings.GetString(
            String("%1/%2/CurrentVersion").Arg("InstalledProducts").Arg(key), "");
        bool named = false;
        for (std::size_t n = 0; n < lines.size(); ++n)
        {
            std::vector<String> const fields = split(lines[n], '|');
            if (fields.size() < 3 || !(fields[0] == key))
                continue;
            named = true;
            out += std::string(key.CStr()) + ": " + decide(installed, fields[1]) + " (line " +
                   std::to_string(n + 1) + ")\n";
        }
        if (!named)
            out += std::string(key.CStr()) + ": no update: not in the versions file\n";
    }
    if (keys.empty())
        out += "no products are registered (tvcheck --list shows them)\n";

    for (std::size_t n = 0; n < lines.size(); ++n)
    {
        std::string const where = "line " + std::to_string(n + 1);
        std::vector<String> const fields = split(lines[n], '|');
        if (lines[n].IsNull() || lines[n].IsEmpty())
            out += where + " skipped: empty" +
                   (n + 1 == lines.size() ? " (after the last line break)\n" : "\n");
        else if (fields.size() < 3)
            out += where + " skipped: fewer than three fields: " + quoted(lines[n]) + "\n";
        else
        {
            bool installed = false;
            for (String const& key : keys)
                installed = installed || fields[0] == key;
            if (!installed)
                out += where + ": " + quoted(fields[0]) + " is not installed\n";
        }
    }
    if (text.IsNull() || text.IsEmpty())
        out += "the versions file is empty\n";
    return out;
}

} // namespace Updater

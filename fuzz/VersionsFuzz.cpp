// Runs the update decision over arbitrary versions files and installed-product settings, and
// checks what must hold for any input: the pass ends with its success report (or the single
// empty-file report), and every entry names an installed product with a clean link.
#include "Updater/app/VersionsText.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace
{

/// Installed products read from "key|version" lines.
class FuzzSettings
{
public:
    explicit FuzzSettings(String const& description)
    {
        std::vector<String> lines;
        description.Split('\n', lines);
        for (String const& line : lines)
        {
            std::vector<String> parts;
            line.Split('|', parts);
            keys.push_back(parts[0]);
            if (parts.size() > 1)
                values[std::string("InstalledProducts/") + parts[0].CStr() + "/CurrentVersion"] =
                    parts[1];
        }
    }
    void GetKeyNames(std::vector<String>& names, String const&) { names = keys; }
    String GetString(String const& path, String const& defaultValue)
    {
        auto found = values.find(path.CStr());
        return found == values.end() ? defaultValue : found->second;
    }

    std::vector<String> keys;
    std::map<std::string, String> values;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    std::string input(reinterpret_cast<char const*>(data), size);
    std::size_t cut = input.find('\0');
    std::string description =
        cut == std::string::npos ? std::string("A|1.0\nB|x\nC") : input.substr(0, cut);
    std::string file = cut == std::string::npos ? input : input.substr(cut + 1);

    FuzzSettings settings(String(description.c_str()));
    String const text(file.c_str());
    std::vector<boost::shared_ptr<Updater::UpdateEntry>> entries;
    std::vector<std::pair<bool, std::string>> reports;
    Updater::ParseVersionsText(text, settings, entries,
                               [&reports](bool ok, String const& message)
                               { reports.emplace_back(ok, message.CStr()); });

    if (reports.empty())
        std::abort();
    if (text.IsEmpty())
    {
        if (reports.size() != 1 || reports[0].first || !entries.empty())
            std::abort();
        return 0;
    }
    if (!reports.back().first || !reports.back().second.empty())
        std::abort();
    for (auto const& entry : entries)
    {
        if (entry->updateUrl.Find('\r').present || entry->updateUrl.Find('\n').present)
            std::abort();
        bool installed = false;
        for (String const& key : settings.keys)
            installed = installed || key == entry->productName;
        if (!installed ||
            !(entry->availableVersion.ToFloat().value > entry->installedVersion.ToFloat().value))
            std::abort();
    }
    return 0;
}

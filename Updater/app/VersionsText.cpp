#include "Updater/app/VersionsText.h"

namespace Updater
{

namespace
{

char const* const kInstalledProducts = "InstalledProducts";

/// Builds the entry of one offered update from the fields of its line.
boost::shared_ptr<UpdateEntry> makeEntry(String const& key, String const& installed,
                                         std::vector<String> const& fields)
{
    boost::shared_ptr<UpdateEntry> entry(new UpdateEntry);
    entry->productName = key;
    entry->installedVersion = installed;
    entry->availableVersion = fields[1];
    entry->updateUrl = fields[2].Replace("\n", "").Replace("\r", "");
    if (fields.size() >= 4)
        fields[3].Split(',', entry->extraList);
    if (fields.size() >= 5)
        entry->extraText = fields[4];
    return entry;
}

} // namespace

void ParseVersionsText(String const& text, VersionSettings& settings,
                       std::vector<boost::shared_ptr<UpdateEntry>>& entries,
                       VersionsStatus const& status)
{
    if (text.IsNull() || text.Length() == 0 || text == "")
    {
        status(false, "Update file empty.");
        return;
    }

    std::vector<String> installedKeys;
    settings.GetKeyNames(installedKeys, kInstalledProducts);

    // One line at a time rather than all of them split up front: a body of millions of blank
    // lines would otherwise cost a string for each, many times the body's size.
    std::vector<String> fields;
    unsigned int const length = text.Length();
    for (unsigned int start = 0; start <= length;)
    {
        checked_value<unsigned int> const newline = text.Find('\n', start);
        unsigned int const end = newline.present ? newline.value : length;
        String const line = text.Mid(start, end - start);
        start = end + 1;
        line.Split('|', fields);
        if (fields.size() < 3)
        {
            status(false, "Incorrectly formatted version line");
            continue;
        }
        for (String const& key : installedKeys)
        {
            if (!(key == fields[0]))
                continue;
            String installed = settings.GetString(
                String("%1/%2/CurrentVersion").Arg(kInstalledProducts).Arg(key), "");
            // A trailing "\r" from a CRLF file is harmless here: ToFloat strips white space.
            checked_value<float> installedNumber = installed.ToFloat();
            checked_value<float> availableNumber = fields[1].ToFloat();
            if (!installedNumber.present || !availableNumber.present)
            {
                // The installed version stands in twice; the listed one is not quoted.
                status(false, String("Incorrectly formatted version for %1 %2 %3")
                                  .Arg(key)
                                  .Arg(installed)
                                  .Arg(installed));
                continue;
            }
            if (!(availableNumber.value > installedNumber.value))
                continue;
            entries.push_back(makeEntry(key, installed, fields));
        }
    }
    status(true, "");
}

} // namespace Updater

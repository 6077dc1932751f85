#pragma once

#include "Updater/app/UpdateEntry.h"

#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <type_traits>
#include <vector>

namespace Updater
{

/// Where the installed versions come from: the two reads that the update decision makes of the
/// application's settings.
class VersionSettings
{
public:
    virtual ~VersionSettings() = default;
    /// The immediate sub-keys of `path`, in the order the store gives them.
    virtual void GetKeyNames(std::vector<String>& names, String const& path) = 0;
    /// The text stored at `path`, or `defaultValue` when there is none.
    virtual String GetString(String const& path, String const& defaultValue) = 0;
};

/// Lets any settings object with `GetKeyNames(std::vector<String>&, String const&)` and
/// `GetString(String const&, String const&)` (such as `Util::ConfigFile`) serve the decision.
/// Does not own the object.
template <typename Settings>
class VersionSettingsOf : public VersionSettings
{
public:
    explicit VersionSettingsOf(Settings& s) : settings(s) {}
    void GetKeyNames(std::vector<String>& names, String const& path) override
    {
        settings.GetKeyNames(names, path);
    }
    String GetString(String const& path, String const& defaultValue) override
    {
        return settings.GetString(path, defaultValue);
    }

private:
    Settings& settings;
};

/// Receives each report of the pass: a success flag and a text.
using VersionsStatus = std::function<void(bool success, String const& text)>;

/// Reads the versions file `text` against the installed products under "InstalledProducts" and
/// appends one entry per line whose version is newer than the installed one, in file order and
/// without de-duplication. A version is one number (`String::ToFloat`) and newer means strictly
/// greater. Every malformed line or unreadable version is reported as a failure and skipped; the
/// pass always ends with (true, "") unless `text` is empty, which ends it at once with
/// (false, "Update file empty."). Never throws for bad content.
void ParseVersionsText(String const& text, VersionSettings& settings,
                       std::vector<boost::shared_ptr<UpdateEntry>>& entries,
                       VersionsStatus const& status);

/// The same pass over any object that offers `GetKeyNames` and `GetString`.
template <typename Settings,
          typename = std::enable_if_t<!std::is_base_of<VersionSettings, Settings>::value>>
void ParseVersionsText(String const& text, Settings& settings,
                       std::vector<boost::shared_ptr<UpdateEntry>>& entries,
                       VersionsStatus const& status)
{
    VersionSettingsOf<Settings> adapter(settings);
    ParseVersionsText(text, static_cast<VersionSettings&>(adapter), entries, status);
}

} // namespace Updater

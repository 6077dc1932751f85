#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace Util
{

namespace detail
{
class ConfigStore;
struct ConfigValue;
} // namespace detail

/// A handle on one domain of the user's settings ("com.tavorin.updater"), seen as a tree of keys
/// through "/" in flat value names.
///
/// The values live in a process-wide copy of the domain, shared by every `ConfigFile` on it:
/// a write is visible at once to reads through any other object in the process, from any thread.
/// `Synchronize` (and the destructor, and the end of the process) makes writes durable and
/// brings in what other processes wrote. On disk each domain is an XML property list per scope
/// under $XDG_CONFIG_HOME/tavorin/ (default ~/.config/tavorin/):
///   - current user, any host: `<domain>.plist` (where the plain setters write);
///   - current user, current host: `ByHost/<domain>.<host id>.plist` (the legacy location);
///   - any user: the same two names under the first folder of $XDG_CONFIG_DIRS (default
///     /etc/xdg) + "/tavorin/", read only.
/// A read takes the first scope that holds the name, in this order: current user and current
/// host, current user and any host, any user and current host, any user and any host.
///
/// Paths are normalised before use: every "//" becomes "/" until none is left (leading and
/// trailing "/" stay). Text that cannot be stored (not UTF-8, or control characters that an XML
/// file cannot hold) is replaced by the empty string, silently. Nothing here throws; missing
/// values and values of another type give the default.
class ConfigFile
{
public:
    /// Opens `domain`; the files are found from the environment at this moment.
    explicit ConfigFile(String const& domain);
    ConfigFile(ConfigFile const&) = default;
    ConfigFile& operator=(ConfigFile const&) = default;
    /// Calls `Synchronize`.
    ~ConfigFile();

    String GetDomain() const { return domain; }

    /// The immediate sub-keys of `path` ("" for the root), each once, in `String` order. A key
    /// exists only through the values below it. `path` may end in "/".
    void GetKeyNames(std::vector<String>& names, String const& path) const;
    /// The names of the values directly at `path`, in `String` order; the key path is compared
    /// case-insensitively (ASCII), so "Foo/x" is found under "foo".
    void GetValueNames(std::vector<String>& names, String const& path) const;

    /// The stored text; `defaultValue` when missing or not text.
    String GetString(String const& path, String const& defaultValue = String()) const;
    void SetString(String const& path, String const& value);
    /// Writes for the current user and the current host only.
    void SetStringLegacyLocation(String const& path, String const& value);

    /// 8-byte data whose first four bytes are zero gives the little-endian float in bytes 4..7;
    /// 4-byte data is read as a big-endian float (an older form); anything else the default.
    float GetFloat(String const& path, float defaultValue = 0.0f) const;
    /// Always writes the 8-byte form.
    void SetFloat(String const& path, float value);

    /// A stored number: non-zero is true. Missing or not a number: the default.
    bool GetBool(String const& path, bool defaultValue = false) const;
    /// Stores 1 or 0; true when the value was stored.
    bool SetBool(String const& path, bool value);

    /// A stored number as 32 bits, or the default.
    unsigned int GetUInt(String const& path, unsigned int defaultValue = 0) const;
    /// Stores the 32-bit number; the same operation as `SetInt`. True when stored.
    bool SetUInt(String const& path, unsigned int value);
    /// Writes for the current user and the current host only.
    void SetUIntLegacyLocation(String const& path, unsigned int value);
    int GetInt(String const& path, int defaultValue = 0) const;
    bool SetInt(String const& path, int value);

    /// Reads the number as 64 bits, but returns only its low 32 bits, and the default is
    /// truncated the same way. Callers rely on this.
    unsigned int GetUInt64(String const& path, unsigned long long defaultValue = 0) const;
    /// Stores all 64 bits.
    void SetUInt64(String const& path, unsigned long long value);

    /// True and the bytes when data of 1 to 1,000,000 bytes is stored; otherwise false with
    /// `data` emptied.
    bool GetBinary(String const& path, std::vector<unsigned char>& data) const;
    /// Stores `length` bytes (any length). False when they cannot be stored (a null pointer with
    /// a non-zero length, or no memory).
    bool SetBinary(String const& path, unsigned char const* data, unsigned long length);

    /// Removes the value written by the plain setters; a missing value is no error.
    void RemoveValue(String const& path);
    /// Copies the value at `path` of `source`'s domain, whatever its type, to the same path
    /// here. `path` is used as given, not normalised. A missing value leaves this domain as is.
    void CopyPropertyFrom(String const& path, ConfigFile const& source);

    /// Writes this process's changes to disk (atomically, merged with what other processes
    /// wrote meanwhile) and reads in other processes' changes.
    void Synchronize() const;

private:
    /// The value that a read of `path` sees; false when none.
    bool read(String const& path, detail::ConfigValue& value) const;
    /// True when the value went into the store.
    bool write(int scope, String const& path, detail::ConfigValue const& value);

    String domain;
    /// Process-wide, never destroyed; not owned. Null only when memory ran out at construction.
    detail::ConfigStore* store;
};

} // namespace Util

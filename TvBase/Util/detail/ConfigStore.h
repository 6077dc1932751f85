#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

/// The process-wide settings store behind `Util::ConfigFile` and the `tvdefaults` tool: one
/// `ConfigStore` per domain file, kept for the life of the process, holding the values of the
/// four scopes as read from disk plus this process's changes.
namespace Util
{
namespace detail
{

/// The scopes in the order in which names are listed.
enum ConfigScope
{
    ScopeCurrentUserCurrentHost = 0,
    ScopeAnyUserCurrentHost = 1,
    ScopeCurrentUserAnyHost = 2,
    ScopeAnyUserAnyHost = 3,
    ScopeCount = 4
};

/// One stored value. `Other` carries a property-list node of a type the setters never write
/// (dictionary, array, real, date), kept so that it can be copied and written back unchanged.
struct ConfigValue
{
    enum Kind
    {
        Text,
        Number,
        Data,
        Other
    };
    Kind kind = Text;
    /// Text or data bytes.
    std::string bytes;
    /// Numbers as 64 bits; 32-bit values are kept sign-extended.
    std::int64_t number = 0;
    /// The node of an `Other` value; shared, never changed.
    std::shared_ptr<void> node;

    static ConfigValue MakeText(std::string text);
    static ConfigValue MakeNumber(std::int64_t number);
    static ConfigValue MakeData(std::string bytes);
};

/// True when `text` is UTF-8 that an XML file can hold (no NUL and no control characters but
/// tab, line feed and carriage return).
bool IsStorableText(char const* text, std::size_t length);

/// `text` when it is storable, otherwise the empty string.
std::string StorableText(char const* text, std::size_t length);

/// Every "//" becomes "/", until none is left; leading and trailing "/" stay.
std::string NormalizeName(std::string const& name);

/// Where a domain's files are, from the environment at the moment of the call.
struct ConfigLocation
{
    std::string userFolder;   ///< "$XDG_CONFIG_HOME/tavorin/"; empty when there is no home
    std::string systemFolder; ///< "<first of $XDG_CONFIG_DIRS>/tavorin/"
    std::string hostId;       ///< /etc/machine-id, else the host name

    static ConfigLocation FromEnvironment();
    /// The file of `domain` in `scope` ("" when the scope has no folder).
    std::string FileFor(std::string const& domain, ConfigScope scope) const;
};

class ConfigStore
{
public:
    /// The store of `domain` at the files the environment names now; made on first use and
    /// never destroyed, so handles may outlive everything else.
    static ConfigStore& Get(std::string const& domain);
    /// Synchronizes every store made so far; runs at exit.
    static void SynchronizeAll();

    /// The first value of `name` in the read order (current user before any user, current host
    /// before any host); false when no scope holds it.
    bool Read(std::string const& name, ConfigValue& value);
    /// Writes into one of the two current-user scopes, in memory at once.
    void Write(ConfigScope scope, std::string const& name, ConfigValue const& value);
    /// Removes from one of the current-user scopes; true when a value was there.
    bool Remove(ConfigScope scope, std::string const& name);
    /// The names held in `scope`, unordered.
    std::vector<std::string> Names(ConfigScope scope);
    /// Writes pending changes (merging with other processes' writes) and reloads changed files.
    /// False when some change could not reach disk; it stays pending for the next call, and
    /// `failure`, when given, names the first file that failed and why.
    bool Synchronize(std::string* failure = nullptr);

    ConfigStore(ConfigStore const&) = delete;
    ConfigStore& operator=(ConfigStore const&) = delete;

private:
    struct PendingChange
    {
        bool removed = false;
        ConfigValue value;
    };

    struct Scope
    {
        std::string file;
        bool writable = false;
        bool loaded = false;
        /// True while `disk` is the reading of `diskText`.
        bool diskValid = false;
        /// The file's bytes as last read or written. Comparing bytes, not dates or inodes,
        /// tells reliably whether another process has written since.
        std::string diskText;
        /// The file's property-list dictionary; owned.
        std::shared_ptr<void> disk;
        std::unordered_map<std::string, ConfigValue> values;
        /// Changes not yet on disk, by name.
        std::map<std::string, PendingChange> pending;
    };

    explicit ConfigStore(std::vector<std::string> files);

    void ensureLoaded(Scope& scope);
    /// Brings `scope` up to date with its file. A damaged file of a writable scope is kept aside
    /// (taking the file lock unless `locked` says the caller holds it). False when the file is
    /// damaged and stays in place, so that nothing may be written over it.
    bool loadFromDisk(Scope& scope, bool locked);
    void adoptDisk(Scope& scope, std::shared_ptr<void> dict, std::string text);
    /// Moves a damaged file aside as "<file>.corrupt"; the caller holds the file lock.
    bool keepAside(Scope& scope);
    /// Writes `scope`'s pending changes; on failure `problem` says which file and why.
    bool writeScope(Scope& scope, std::string& problem);

    std::mutex mutex;
    Scope scopes[ScopeCount];
};

} // namespace detail
} // namespace Util

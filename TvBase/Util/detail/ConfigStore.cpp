// The process-wide settings store.
//
// Index:
//   - Values and text
//   - Locations
//   - Property-list conversion
//   - Files: reading, locking, atomic writing
//   - The store
//   - Registry and the exit flusher

#include "TvBase/Util/detail/ConfigStore.h"

#include "TvBase/Util/detail/PlistDepth.h"

#include <plist/plist.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Util
{
namespace detail
{

// ===== Values and text ===========================================================================

ConfigValue ConfigValue::MakeText(std::string text)
{
    ConfigValue v;
    v.kind = Text;
    v.bytes = std::move(text);
    return v;
}

ConfigValue ConfigValue::MakeNumber(std::int64_t number)
{
    ConfigValue v;
    v.kind = Number;
    v.number = number;
    return v;
}

ConfigValue ConfigValue::MakeData(std::string bytes)
{
    ConfigValue v;
    v.kind = Data;
    v.bytes = std::move(bytes);
    return v;
}

bool IsStorableText(char const* text, std::size_t length)
{
    auto const* p = reinterpret_cast<unsigned char const*>(text);
    std::size_t i = 0;
    while (i < length)
    {
        unsigned char c = p[i];
        if (c < 0x80)
        {
            // An XML file holds no control characters but these three.
            if (c < 0x20 && c != '\t' && c != '\n' && c != '\r')
                return false;
            ++i;
            continue;
        }
        std::size_t count;
        std::uint32_t code;
        if ((c & 0xE0) == 0xC0)
        {
            count = 1;
            code = c & 0x1F;
        }
        else if ((c & 0xF0) == 0xE0)
        {
            count = 2;
            code = c & 0x0F;
        }
        else if ((c & 0xF8) == 0xF0)
        {
            count = 3;
            code = c & 0x07;
        }
        else
            return false;
        if (i + count >= length)
            return false;
        for (std::size_t k = 1; k <= count; ++k)
        {
            if ((p[i + k] & 0xC0) != 0x80)
                return false;
            code = (code << 6) | (p[i + k] & 0x3F);
        }
        static std::uint32_t const smallest[] = {0, 0x80, 0x800, 0x10000};
        if (code < smallest[count] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF) ||
            code == 0xFFFE || code == 0xFFFF)
            return false;
        i += count + 1;
    }
    return true;
}

std::string StorableText(char const* text, std::size_t length)
{
    return IsStorableText(text, length) ? std::string(text, length) : std::string();
}

std::string NormalizeName(std::string const& name)
{
    std::string out;
    out.reserve(name.size());
    for (char c : name)
        if (!(c == '/' && !out.empty() && out.back() == '/'))
            out += c;
    return out;
}

// ===== Locations =================================================================================

namespace
{

std::string environment(char const* name)
{
    char const* value = std::getenv(name);
    return value ? std::string(value) : std::string();
}

std::string homeFolder()
{
    std::string home = environment("HOME");
    if (!home.empty())
        return home;
    struct passwd entry;
    struct passwd* found = nullptr;
    char buffer[4096];
    if (getpwuid_r(getuid(), &entry, buffer, sizeof buffer, &found) == 0 && found && found->pw_dir)
        return found->pw_dir;
    return std::string();
}

/// A text usable as one file-name component.
std::string fileNameSafe(std::string text)
{
    for (char& c : text)
        if (c == '/')
            c = '_';
    return text;
}

std::string readHostId()
{
    std::ifstream in("/etc/machine-id");
    std::string id;
    std::getline(in, id);
    while (!id.empty() && (id.back() == '\n' || id.back() == ' '))
        id.pop_back();
    if (!id.empty())
        return fileNameSafe(id);
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) == 0 && name[0])
        return fileNameSafe(name);
    return "localhost";
}

} // namespace

ConfigLocation ConfigLocation::FromEnvironment()
{
    ConfigLocation location;
    std::string configHome = environment("XDG_CONFIG_HOME");
    if (!configHome.empty() && configHome[0] == '/')
        location.userFolder = configHome + "/tavorin/";
    else
    {
        std::string home = homeFolder();
        if (!home.empty())
            location.userFolder = home + "/.config/tavorin/";
    }

    std::string dirs = environment("XDG_CONFIG_DIRS");
    std::string system = "/etc/xdg";
    std::string::size_type start = 0;
    while (start <= dirs.size() && !dirs.empty())
    {
        std::string::size_type colon = dirs.find(':', start);
        std::string entry = dirs.substr(start, colon == std::string::npos ? colon : colon - start);
        if (!entry.empty() && entry[0] == '/')
        {
            system = entry;
            break;
        }
        if (colon == std::string::npos)
            break;
        start = colon + 1;
    }
    location.systemFolder = system + "/tavorin/";

    static std::string const hostId = readHostId();
    location.hostId = hostId;
    return location;
}

std::string ConfigLocation::FileFor(std::string const& domain, ConfigScope scope) const
{
    bool currentUser = scope == ScopeCurrentUserAnyHost || scope == ScopeCurrentUserCurrentHost;
    std::string const& folder = currentUser ? userFolder : systemFolder;
    if (folder.empty())
        return std::string();
    std::string name = fileNameSafe(domain);
    if (scope == ScopeCurrentUserAnyHost || scope == ScopeAnyUserAnyHost)
        return folder + name + ".plist";
    return folder + "ByHost/" + name + "." + hostId + ".plist";
}

// ===== Property-list conversion ==================================================================

namespace
{

std::shared_ptr<void> own(plist_t node)
{
    return std::shared_ptr<void>(node,
                                 [](void* p)
                                 {
                                     if (p)
                                         plist_free(static_cast<plist_t>(p));
                                 });
}

ConfigValue fromNode(plist_t node)
{
    switch (plist_get_node_type(node))
    {
    case PLIST_STRING:
    {
        std::uint64_t length = 0;
        char const* text = plist_get_string_ptr(node, &length);
        return ConfigValue::MakeText(text ? std::string(text, length) : std::string());
    }
    case PLIST_UINT:
    {
        std::uint64_t number = 0;
        plist_get_uint_val(node, &number);
        return ConfigValue::MakeNumber(static_cast<std::int64_t>(number));
    }
    case PLIST_BOOLEAN:
    {
        // Hand-written files may say <true/>; it reads as the number the setters would store.
        std::uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return ConfigValue::MakeNumber(flag ? 1 : 0);
    }
    case PLIST_DATA:
    {
        std::uint64_t length = 0;
        char const* bytes = plist_get_data_ptr(node, &length);
        return ConfigValue::MakeData(bytes ? std::string(bytes, length) : std::string());
    }
    default:
    {
        ConfigValue v;
        v.kind = ConfigValue::Other;
        v.node = own(plist_copy(node));
        return v;
    }
    }
}

plist_t toNode(ConfigValue const& value)
{
    switch (value.kind)
    {
    case ConfigValue::Text:
        return plist_new_string(value.bytes.c_str());
    case ConfigValue::Number:
        return plist_new_uint(static_cast<std::uint64_t>(value.number));
    case ConfigValue::Data:
        return plist_new_data(value.bytes.data(), value.bytes.size());
    case ConfigValue::Other:
        break;
    }
    return plist_copy(static_cast<plist_t>(value.node.get()));
}

// ===== Files: reading, locking, atomic writing ===================================================

/// Larger files are not settings; they read as damaged rather than exhausting memory.
std::int64_t const maximumFileSize = 512ll * 1024 * 1024;
/// Deeper nesting is not settings either: the property-list library recurses over it.
unsigned int const maximumNesting = 512;

bool readAll(int fd, std::string& out, std::size_t expected)
{
    out.clear();
    out.reserve(expected);
    char buffer[65536];
    for (;;)
    {
        ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            return true;
        out.append(buffer, static_cast<std::size_t>(n));
        if (static_cast<std::int64_t>(out.size()) > maximumFileSize)
            return false;
    }
}

bool writeAll(int fd, char const* data, std::size_t length)
{
    while (length > 0)
    {
        ssize_t n = ::write(fd, data, length);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        data += n;
        length -= static_cast<std::size_t>(n);
    }
    return true;
}

std::string folderOf(std::string const& file)
{
    std::string::size_type slash = file.rfind('/');
    return slash == std::string::npos ? std::string(".") : file.substr(0, slash + 1);
}

/// "<path>: <reason>" for the latest failed call.
std::string failureOf(std::string const& path, int error)
{
    return path + ": " + std::strerror(error);
}

bool makeFolders(std::string const& folder, std::string& problem)
{
    for (std::string::size_type p = 1; p <= folder.size(); ++p)
    {
        if (p < folder.size() && folder[p] != '/')
            continue;
        std::string part = folder.substr(0, p);
        if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST)
        {
            problem = failureOf(part, errno);
            return false;
        }
    }
    struct stat info;
    if (::stat(folder.c_str(), &info) != 0)
        problem = failureOf(folder, errno);
    else if (!S_ISDIR(info.st_mode))
        problem = failureOf(folder, ENOTDIR);
    else
        return true;
    return false;
}

/// The file that `path` finally names. A settings file may be a symbolic link into a folder of
/// the user's choosing; writes replace the link's target and keep the link. A relative target
/// is taken from the link's folder; a dangling link names the file it would create.
std::string followLinks(std::string path)
{
    for (int hop = 0; hop < 40; ++hop)
    {
        char target[4096];
        ssize_t n = ::readlink(path.c_str(), target, sizeof target);
        if (n <= 0 || static_cast<std::size_t>(n) == sizeof target)
            break;
        std::string next(target, static_cast<std::size_t>(n));
        path = next[0] == '/' ? next : folderOf(path) + next;
    }
    return path;
}

bool pathExists(std::string const& path)
{
    struct stat info;
    return ::lstat(path.c_str(), &info) == 0;
}

/// An exclusive `flock` on "<file>.lock" for as long as the object lives; serialises writers of
/// one file across processes. Within this process the store's mutex already does.
class FileLock
{
public:
    explicit FileLock(std::string const& file)
    {
        fd = ::open((file + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (fd < 0)
            return;
        int result;
        do
            result = ::flock(fd, LOCK_EX);
        while (result != 0 && errno == EINTR);
        if (result != 0)
        {
            ::close(fd);
            fd = -1;
        }
    }
    ~FileLock()
    {
        if (fd >= 0)
            ::close(fd);
    }
    bool IsHeld() const { return fd >= 0; }

    FileLock(FileLock const&) = delete;
    FileLock& operator=(FileLock const&) = delete;

private:
    int fd;
};

/// Outcome of reading one file's bytes.
enum class ReadResult
{
    Missing,
    Good,
    Unreadable
};

/// The bytes of `file`. A folder, a FIFO or another special file, an oversized file or one that
/// cannot be read is unreadable. The open does not wait for a FIFO's writer.
ReadResult readText(std::string const& file, std::string& text)
{
    text.clear();
    int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return (errno == ENOENT || errno == ENOTDIR) ? ReadResult::Missing : ReadResult::Unreadable;
    struct stat info;
    bool good = ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) &&
                info.st_size <= maximumFileSize &&
                readAll(fd, text, static_cast<std::size_t>(info.st_size));
    ::close(fd);
    return good ? ReadResult::Good : ReadResult::Unreadable;
}

/// The dictionary of a property list (XML or binary); null when the text is not one. An empty
/// text holds no settings and reads as an empty dictionary.
std::shared_ptr<void> parse(std::string const& text)
{
    if (text.empty())
        return own(plist_new_dict());
    if (PropertyListNestsTooDeeply(text.data(), text.size(), maximumNesting))
        return nullptr;
    plist_t root = nullptr;
    plist_from_memory(text.data(), static_cast<std::uint32_t>(text.size()), &root);
    if (!root)
        return nullptr;
    if (plist_get_node_type(root) != PLIST_DICT)
    {
        plist_free(root);
        return nullptr;
    }
    return own(root);
}

/// Replaces `file` with `text` so that, whenever the machine stops, the file is either the old
/// one or the new one whole: the data is on disk before the rename. The fixed temporary name is
/// safe under the file lock, and a crash leaves at most one stale temporary, which the next
/// write truncates.
bool writeAtomically(std::string const& path, std::string const& text, std::string& problem)
{
    std::string const file = followLinks(path);
    std::string const temp = file + ".tmp";
    int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0)
    {
        problem = failureOf(temp, errno);
        return false;
    }
    bool good = writeAll(fd, text.data(), text.size()) && ::fsync(fd) == 0;
    int error = errno;
    if (::close(fd) != 0 && good)
    {
        good = false;
        error = errno;
    }
    if (good && ::rename(temp.c_str(), file.c_str()) != 0)
    {
        good = false;
        error = errno;
    }
    if (!good)
    {
        problem = failureOf(file, error);
        ::unlink(temp.c_str());
    }
    return good;
}

} // namespace

// ===== The store =================================================================================

ConfigStore::ConfigStore(std::vector<std::string> files)
{
    for (int i = 0; i < ScopeCount; ++i)
    {
        scopes[i].file = files[static_cast<std::size_t>(i)];
        scopes[i].writable = i == ScopeCurrentUserAnyHost || i == ScopeCurrentUserCurrentHost;
    }
}

void ConfigStore::adoptDisk(Scope& scope, std::shared_ptr<void> dict, std::string text)
{
    scope.disk = std::move(dict);
    scope.diskText = std::move(text);
    scope.diskValid = true;
    scope.values.clear();

    plist_t root = static_cast<plist_t>(scope.disk.get());
    plist_dict_iter it = nullptr;
    plist_dict_new_iter(root, &it);
    for (;;)
    {
        char* key = nullptr;
        plist_t node = nullptr;
        plist_dict_next_item(root, it, &key, &node);
        if (!node)
        {
            std::free(key);
            break;
        }
        if (key)
            scope.values[key] = fromNode(node);
        std::free(key);
    }
    std::free(it);

    // This process's changes stand over what the file says until they are written.
    for (auto const& change : scope.pending)
    {
        if (change.second.removed)
            scope.values.erase(change.first);
        else
            scope.values[change.first] = change.second.value;
    }
}

bool ConfigStore::loadFromDisk(Scope& scope, bool locked)
{
    if (scope.file.empty())
    {
        if (!scope.diskValid)
            adoptDisk(scope, own(plist_new_dict()), std::string());
        return false;
    }
    std::string text;
    ReadResult result = readText(scope.file, text);
    if (result != ReadResult::Unreadable && scope.diskValid && text == scope.diskText)
        return true;
    std::shared_ptr<void> dict = result == ReadResult::Unreadable ? nullptr : parse(text);
    if (dict)
    {
        adoptDisk(scope, std::move(dict), std::move(text));
        return true;
    }

    // Damaged. The any-user files are not ours to move: they read as empty.
    if (!scope.writable)
    {
        adoptDisk(scope, own(plist_new_dict()), std::move(text));
        return true;
    }
    if (!locked)
    {
        FileLock lock(scope.file);
        if (lock.IsHeld())
            return loadFromDisk(scope, true);
        adoptDisk(scope, own(plist_new_dict()), std::string());
        scope.diskValid = false;
        return false;
    }
    return keepAside(scope);
}

bool ConfigStore::keepAside(Scope& scope)
{
    std::string aside = scope.file + ".corrupt";
    for (int n = 1; pathExists(aside) && n < 1000; ++n)
        aside = scope.file + ".corrupt." + std::to_string(n);
    if (pathExists(aside) || ::rename(scope.file.c_str(), aside.c_str()) != 0)
    {
        // The damaged file stays where it is, and nothing may be written over it.
        adoptDisk(scope, own(plist_new_dict()), std::string());
        scope.diskValid = false;
        return false;
    }
    adoptDisk(scope, own(plist_new_dict()), std::string());
    return true;
}

void ConfigStore::ensureLoaded(Scope& scope)
{
    if (scope.loaded)
        return;
    scope.loaded = true;
    loadFromDisk(scope, false);
}

bool ConfigStore::writeScope(Scope& scope, std::string& problem)
{
    if (scope.file.empty())
    {
        problem = "no folder for settings (neither XDG_CONFIG_HOME nor HOME is set)";
        return false;
    }
    if (!makeFolders(folderOf(scope.file), problem))
        return false;
    FileLock lock(scope.file);
    if (!lock.IsHeld())
    {
        problem = failureOf(scope.file + ".lock", errno);
        return false;
    }

    // Merge: start from what is on disk now, which another process may have changed.
    if (!loadFromDisk(scope, true))
    {
        problem = scope.file + ": damaged, and it could not be moved aside";
        return false;
    }

    plist_t root = static_cast<plist_t>(scope.disk.get());
    for (auto const& change : scope.pending)
    {
        if (change.second.removed)
        {
            if (plist_dict_get_item(root, change.first.c_str()))
                plist_dict_remove_item(root, change.first.c_str());
        }
        else
            plist_dict_set_item(root, change.first.c_str(), toNode(change.second.value));
    }
    // The dictionary is ahead of the file until the write succeeds.
    scope.diskValid = false;

    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root, &xml, &length);
    if (!xml)
    {
        problem = scope.file + ": the settings could not be put into words";
        return false;
    }
    std::string text(xml, length);
    plist_to_xml_free(xml);
    if (!writeAtomically(scope.file, text, problem))
        return false;

    scope.diskText = std::move(text);
    scope.diskValid = true;
    scope.pending.clear();
    return true;
}

bool ConfigStore::Read(std::string const& name, ConfigValue& value)
{
    static ConfigScope const order[] = {ScopeCurrentUserCurrentHost, ScopeCurrentUserAnyHost,
                                        ScopeAnyUserCurrentHost, ScopeAnyUserAnyHost};
    std::lock_guard<std::mutex> guard(mutex);
    for (ConfigScope s : order)
    {
        Scope& scope = scopes[s];
        ensureLoaded(scope);
        auto found = scope.values.find(name);
        if (found != scope.values.end())
        {
            value = found->second;
            return true;
        }
    }
    return false;
}

void ConfigStore::Write(ConfigScope which, std::string const& name, ConfigValue const& value)
{
    std::lock_guard<std::mutex> guard(mutex);
    Scope& scope = scopes[which];
    if (!scope.writable)
        return;
    ensureLoaded(scope);
    scope.values[name] = value;
    PendingChange& change = scope.pending[name];
    change.removed = false;
    change.value = value;
}

bool ConfigStore::Remove(ConfigScope which, std::string const& name)
{
    std::lock_guard<std::mutex> guard(mutex);
    Scope& scope = scopes[which];
    if (!scope.writable)
        return false;
    ensureLoaded(scope);
    if (scope.values.erase(name) == 0)
        return false;
    PendingChange& change = scope.pending[name];
    change.removed = true;
    change.value = ConfigValue();
    return true;
}

std::vector<std::string> ConfigStore::Names(ConfigScope which)
{
    std::lock_guard<std::mutex> guard(mutex);
    Scope& scope = scopes[which];
    ensureLoaded(scope);
    std::vector<std::string> names;
    names.reserve(scope.values.size());
    for (auto const& entry : scope.values)
        names.push_back(entry.first);
    return names;
}

bool ConfigStore::Synchronize(std::string* failure)
{
    std::lock_guard<std::mutex> guard(mutex);
    bool good = true;
    for (Scope& scope : scopes)
    {
        // A scope never read has no changes and nothing to refresh.
        if (!scope.loaded)
            continue;
        if (scope.writable && !scope.pending.empty())
        {
            std::string problem;
            if (!writeScope(scope, problem))
            {
                if (good && failure)
                    *failure = problem;
                good = false;
            }
        }
        else
            loadFromDisk(scope, false);
    }
    return good;
}

// ===== Registry and the exit flusher =============================================================

namespace
{

struct Registry
{
    std::mutex mutex;
    std::map<std::string, ConfigStore*> stores;
};

/// Made on first use and never destroyed: handles in static objects may synchronise during the
/// end of the process, after this file's own statics are gone.
Registry& registry()
{
    static Registry* instance = new Registry;
    return *instance;
}

/// Writes what is still pending when the process ends normally.
struct ExitFlusher
{
    ~ExitFlusher()
    {
        try
        {
            ConfigStore::SynchronizeAll();
        }
        catch (...)
        {
            // Out of memory at the very end: what was not written is lost, quietly.
        }
    }
} exitFlusher;

} // namespace

ConfigStore& ConfigStore::Get(std::string const& domain)
{
    ConfigLocation location = ConfigLocation::FromEnvironment();
    std::vector<std::string> files;
    for (int i = 0; i < ScopeCount; ++i)
        files.push_back(location.FileFor(domain, static_cast<ConfigScope>(i)));
    std::string key = files[ScopeCurrentUserAnyHost] + '\n' + files[ScopeAnyUserAnyHost];

    Registry& r = registry();
    std::lock_guard<std::mutex> guard(r.mutex);
    ConfigStore*& store = r.stores[key];
    if (!store)
        store = new ConfigStore(files);
    return *store;
}

void ConfigStore::SynchronizeAll()
{
    std::vector<ConfigStore*> all;
    {
        Registry& r = registry();
        std::lock_guard<std::mutex> guard(r.mutex);
        for (auto const& entry : r.stores)
            all.push_back(entry.second);
    }
    for (ConfigStore* store : all)
        store->Synchronize();
}

} // namespace detail
} // namespace Util

// tvdefaults: reads, writes, lists and deletes the user's settings from the command line, so
// that installers and users can register products:
//
//   tvdefaults write com.tavorin.updater "InstalledProducts/Alpha Mixer/CurrentVersion" 3.0
//
// Exit status: 0 success, 1 value missing (or not saved), 2 usage error.

#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/detail/ConfigStore.h"

#include <plist/plist.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

using Util::detail::ConfigScope;
using Util::detail::ConfigStore;
using Util::detail::ConfigValue;

namespace
{

int const exitSuccess = 0;
int const exitMissing = 1;
int const exitUsage = 2;

char const* const shortUsage =
    "usage: tvdefaults [--system] read|write|delete|keys|values DOMAIN [PATH] ... "
    "(tvdefaults --help)\n";

char const* const fullUsage =
    "usage: tvdefaults [--system] read DOMAIN [PATH [TYPE]]\n"
    "       tvdefaults [--system] write DOMAIN PATH [TYPE] VALUE\n"
    "       tvdefaults [--system] delete DOMAIN PATH\n"
    "       tvdefaults [--system] keys DOMAIN [PATH]\n"
    "       tvdefaults [--system] values DOMAIN [PATH]\n"
    "       tvdefaults --help | --version\n"
    "\n"
    "Reads and changes the settings of DOMAIN (for example com.tavorin.updater), kept in\n"
    "$XDG_CONFIG_HOME/tavorin/ (default ~/.config/tavorin/). PATH names a value; \"/\" separates\n"
    "key names.\n"
    "\n"
    "  read DOMAIN          every value of the domain as \"path = value\" lines, in path order\n"
    "  read DOMAIN PATH     one value; with TYPE, only a value readable as that type\n"
    "  write ...            stores VALUE as TYPE (default -string)\n"
    "  delete DOMAIN PATH   removes the value from the user's settings, or everything\n"
    "                       under PATH when it names a key (a whole product)\n"
    "  keys DOMAIN [PATH]   the sub-keys of PATH (default: the root), one a line\n"
    "  values DOMAIN [PATH] the names of the values at PATH, one a line\n"
    "\n"
    "TYPE is one of -string, -int, -bool (true/false, yes/no, 1/0), -float, -data (hex bytes).\n"
    "Numbers print in decimal, data in hex; a float is stored as 8 bytes of data.\n"
    "\n"
    "--system works on the settings of every user of the computer, in the tavorin folder of\n"
    "the first of $XDG_CONFIG_DIRS (default /etc/xdg/tavorin/); changing them needs root.\n"
    "\n"
    "Exit status: 0 success, 1 value missing or not saved, 2 usage error.\n";

enum class Type
{
    None,
    String,
    Int,
    Bool,
    Float,
    Data
};

Type parseType(std::string const& flag)
{
    if (flag == "-string")
        return Type::String;
    if (flag == "-int")
        return Type::Int;
    if (flag == "-bool")
        return Type::Bool;
    if (flag == "-float")
        return Type::Float;
    if (flag == "-data")
        return Type::Data;
    return Type::None;
}

int usageError(std::string const& problem = std::string())
{
    if (!problem.empty())
        std::fprintf(stderr, "tvdefaults: %s\n", problem.c_str());
    std::fputs(shortUsage, stderr);
    return exitUsage;
}

String toString(std::string const& text)
{
    return String(text.c_str(), static_cast<unsigned int>(text.size()));
}

std::string toHex(std::string const& bytes)
{
    static char const digits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned char c : bytes)
    {
        hex += digits[c >> 4];
        hex += digits[c & 15];
    }
    return hex;
}

bool fromHex(std::string const& hex, std::vector<unsigned char>& bytes)
{
    auto nibble = [](char c) -> int
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        if (c >= 'A' && c <= 'F')
            return c - 'A' + 10;
        return -1;
    };
    if (hex.size() % 2 != 0)
        return false;
    bytes.clear();
    for (std::size_t i = 0; i < hex.size(); i += 2)
    {
        int high = nibble(hex[i]);
        int low = nibble(hex[i + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes.push_back(static_cast<unsigned char>(high * 16 + low));
    }
    return true;
}

std::string formatFloat(float value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text;
}

char const* otherTypeName(ConfigValue const& value)
{
    switch (plist_get_node_type(static_cast<plist_t>(value.node.get())))
    {
    case PLIST_DICT:
        return "<dict>";
    case PLIST_ARRAY:
        return "<array>";
    case PLIST_REAL:
        return "<real>";
    case PLIST_DATE:
        return "<date>";
    default:
        return "<other>";
    }
}

/// The value as `read` prints it without a type.
std::string format(ConfigValue const& value)
{
    switch (value.kind)
    {
    case ConfigValue::Text:
        return value.bytes;
    case ConfigValue::Number:
        return std::to_string(value.number);
    case ConfigValue::Data:
        return toHex(value.bytes);
    case ConfigValue::Other:
        break;
    }
    return otherTypeName(value);
}

/// One line of a whole-domain listing: line breaks and backslashes escaped.
std::string escapeForLine(std::string const& text)
{
    std::string out;
    for (char c : text)
    {
        if (c == '\\')
            out += "\\\\";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else
            out += c;
    }
    return out;
}

/// The value as the getter of `type` would see it; false when it would see the default.
bool formatTyped(ConfigValue const& value, Type type, std::string& out)
{
    switch (type)
    {
    case Type::None:
        out = format(value);
        return true;
    case Type::String:
        out = value.bytes;
        return value.kind == ConfigValue::Text;
    case Type::Int:
        out = std::to_string(value.number);
        return value.kind == ConfigValue::Number;
    case Type::Bool:
        out = value.number != 0 ? "true" : "false";
        return value.kind == ConfigValue::Number;
    case Type::Float:
    {
        if (value.kind != ConfigValue::Data)
            return false;
        auto const* b = reinterpret_cast<unsigned char const*>(value.bytes.data());
        bool oldForm = value.bytes.size() == 4;
        bool newForm = value.bytes.size() == 8 && !b[0] && !b[1] && !b[2] && !b[3];
        if (!oldForm && !newForm)
            return false;
        // Decoded as `ConfigFile::GetFloat` does.
        std::uint32_t bits;
        if (oldForm)
            bits = (std::uint32_t(b[0]) << 24) | (std::uint32_t(b[1]) << 16) |
                   (std::uint32_t(b[2]) << 8) | std::uint32_t(b[3]);
        else
            std::memcpy(&bits, b + 4, sizeof bits);
        float f;
        std::memcpy(&f, &bits, sizeof f);
        out = formatFloat(f);
        return true;
    }
    case Type::Data:
        out = toHex(value.bytes);
        return value.kind == ConfigValue::Data;
    }
    return false;
}

/// The type of a stored value, in the words of the TYPE flags.
char const* typeName(ConfigValue const& value)
{
    switch (value.kind)
    {
    case ConfigValue::Text:
        return "string";
    case ConfigValue::Number:
        return "int (or bool)";
    case ConfigValue::Data:
        return "data (or float)";
    case ConfigValue::Other:
        break;
    }
    return otherTypeName(value);
}

/// Removes every value under the key `name` from both of the user's scopes; true when any was
/// there. Deleting a product's key removes the whole product.
bool removeSubtree(ConfigStore& store, std::string const& name)
{
    std::string prefix = name;
    while (!prefix.empty() && prefix.back() == '/')
        prefix.pop_back();
    if (prefix.empty())
        return false;
    prefix += '/';
    bool removed = false;
    for (ConfigScope scope :
         {Util::detail::ScopeCurrentUserAnyHost, Util::detail::ScopeCurrentUserCurrentHost})
        for (std::string const& held : store.Names(scope))
            if (held.compare(0, prefix.size(), prefix) == 0)
                removed = store.Remove(scope, held) || removed;
    return removed;
}

/// Why a delete found nothing of the user's: nothing at all, or only settings of every user.
void reportNothingToDelete(ConfigStore& store, std::string const& domain, std::string const& path,
                           std::string const& name)
{
    bool system = false;
    for (ConfigScope scope :
         {Util::detail::ScopeAnyUserAnyHost, Util::detail::ScopeAnyUserCurrentHost})
        for (std::string const& held : store.Names(scope))
            system = system || held == name || held.compare(0, name.size() + 1, name + "/") == 0;
    if (system)
        std::fprintf(stderr,
                     "tvdefaults: %s in %s has a value only in the system scope "
                     "(tvdefaults --system delete removes it)\n",
                     path.c_str(), domain.c_str());
    else
        std::fprintf(stderr, "tvdefaults: no value %s in %s\n", path.c_str(), domain.c_str());
}

int readAll(std::string const& domain)
{
    ConfigStore& store = ConfigStore::Get(domain);
    std::set<std::string> names;
    for (int scope = 0; scope < Util::detail::ScopeCount; ++scope)
        for (std::string const& name : store.Names(static_cast<ConfigScope>(scope)))
            names.insert(name);
    for (std::string const& name : names)
    {
        ConfigValue value;
        if (store.Read(name, value))
            std::printf("%s = %s\n", escapeForLine(name).c_str(),
                        escapeForLine(format(value)).c_str());
    }
    return exitSuccess;
}

int readOne(std::string const& domain, std::string const& path, Type type)
{
    ConfigStore& store = ConfigStore::Get(domain);
    std::string name = Util::detail::NormalizeName(path);
    ConfigValue value;
    std::string text;
    if (!store.Read(name, value))
    {
        std::fprintf(stderr, "tvdefaults: no value %s in %s\n", path.c_str(), domain.c_str());
        return exitMissing;
    }
    if (!formatTyped(value, type, text))
    {
        std::fprintf(stderr, "tvdefaults: %s in %s has a value of type %s\n", path.c_str(),
                     domain.c_str(), typeName(value));
        return exitMissing;
    }
    std::printf("%s\n", text.c_str());
    return exitSuccess;
}

bool parseBool(std::string text, bool& value)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    if (text == "true" || text == "yes" || text == "1")
        value = true;
    else if (text == "false" || text == "no" || text == "0")
        value = false;
    else
        return false;
    return true;
}

/// Stores an integer in the narrowest form the store has: 32 bits when it fits, else 64.
bool writeInt(Util::ConfigFile& config, String const& path, std::string const& text)
{
    if (text.empty())
        return false;
    char* end = nullptr;
    errno = 0;
    if (text[0] == '-')
    {
        long long number = std::strtoll(text.c_str(), &end, 10);
        if (errno != 0 || *end != '\0')
            return false;
        if (number >= INT32_MIN)
            config.SetInt(path, static_cast<int>(number));
        else
            config.SetUInt64(path, static_cast<unsigned long long>(number));
        return true;
    }
    unsigned long long number = std::strtoull(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || text[0] == '+' || text[0] == ' ')
        return false;
    if (number <= UINT32_MAX)
        config.SetUInt(path, static_cast<unsigned int>(number));
    else
        config.SetUInt64(path, number);
    return true;
}

/// Writes the domain's changes to disk; on failure says which file and why.
int save(std::string const& domain)
{
    std::string failure;
    if (ConfigStore::Get(domain).Synchronize(&failure))
        return exitSuccess;
    std::fprintf(stderr, "tvdefaults: could not save %s: %s\n", domain.c_str(), failure.c_str());
    return exitMissing;
}

int write(std::string const& domain, std::string const& path, Type type, std::string const& text)
{
    Util::ConfigFile config(toString(domain));
    String name = toString(path);
    switch (type)
    {
    case Type::None:
    case Type::String:
        // The store would otherwise keep an empty string in place of what it cannot hold.
        if (!Util::detail::IsStorableText(text.data(), text.size()))
            return usageError("value is not UTF-8 text without control characters (tab and line "
                              "breaks excepted); store bytes with -data");
        config.SetString(name, toString(text));
        break;
    case Type::Int:
        if (!writeInt(config, name, text))
            return usageError("not an integer: " + text);
        break;
    case Type::Bool:
    {
        bool flag;
        if (!parseBool(text, flag))
            return usageError("not a boolean: " + text);
        config.SetBool(name, flag);
        break;
    }
    case Type::Float:
    {
        char* end = nullptr;
        float f = std::strtof(text.c_str(), &end);
        if (text.empty() || *end != '\0')
            return usageError("not a number: " + text);
        config.SetFloat(name, f);
        break;
    }
    case Type::Data:
    {
        std::vector<unsigned char> bytes;
        if (!fromHex(text, bytes))
            return usageError("not hex bytes: " + text);
        config.SetBinary(name, bytes.data(), bytes.size());
        break;
    }
    }
    return save(domain);
}

int remove(std::string const& domain, std::string const& path)
{
    ConfigStore& store = ConfigStore::Get(domain);
    std::string name = Util::detail::NormalizeName(path);
    // The user's value may sit in either of the user's scopes; delete means gone from both.
    bool removed = store.Remove(Util::detail::ScopeCurrentUserAnyHost, name);
    removed = store.Remove(Util::detail::ScopeCurrentUserCurrentHost, name) || removed;
    removed = removeSubtree(store, name) || removed;
    if (!removed)
    {
        reportNothingToDelete(store, domain, path, name);
        return exitMissing;
    }
    return save(domain);
}

int list(std::string const& domain, std::string const& path, bool keys)
{
    Util::ConfigFile config(toString(domain));
    std::vector<String> names;
    if (keys)
        config.GetKeyNames(names, toString(path));
    else
        config.GetValueNames(names, toString(path));
    for (String const& name : names)
        std::printf("%s\n", name.CStr());
    return exitSuccess;
}

int runCommand(std::vector<std::string> const& args)
{
    if (args.size() == 1 && (args[0] == "--help" || args[0] == "-h"))
    {
        std::fputs(fullUsage, stdout);
        return exitSuccess;
    }
    if (args.size() < 2)
        return usageError();
    std::string const& command = args[0];
    std::string const& domain = args[1];
    if (domain.empty())
        return usageError("empty domain");
    if (!Util::detail::IsStorableText(domain.data(), domain.size()))
        return usageError("domain is not UTF-8 text");
    std::size_t rest = args.size() - 2;
    if (rest > 0 && !Util::detail::IsStorableText(args[2].data(), args[2].size()))
        return usageError("path is not UTF-8 text");

    if (command == "read")
    {
        if (rest == 0)
            return readAll(domain);
        Type type = Type::None;
        if (rest == 2)
        {
            type = parseType(args[3]);
            if (type == Type::None)
                return usageError("unknown type " + args[3]);
        }
        else if (rest != 1)
            return usageError();
        return readOne(domain, args[2], type);
    }
    if (command == "write")
    {
        if (rest == 2)
            return write(domain, args[2], Type::String, args[3]);
        if (rest != 3)
            return usageError();
        Type type = parseType(args[3]);
        if (type == Type::None)
            return usageError("unknown type " + args[3]);
        return write(domain, args[2], type, args[4]);
    }
    if (command == "delete")
        return rest == 1 ? remove(domain, args[2]) : usageError();
    if (command == "keys" || command == "values")
    {
        if (rest > 1)
            return usageError();
        return list(domain, rest == 1 ? args[2] : std::string(), command == "keys");
    }
    return usageError("unknown command " + command);
}

/// Points the store's user scopes at the files of every user, so that reading, writing and
/// deleting (with its locking and atomic replacement) work on them unchanged.
void useSystemScope()
{
    std::string folder = Util::detail::ConfigLocation::FromEnvironment().systemFolder;
    folder.resize(folder.size() - std::strlen("/tavorin/"));
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
}

/// The settings of every user must stay readable by every user: the store keeps a user's own
/// files private, so the folders and files it made are opened up afterwards.
void shareSystemFiles(std::string const& domain)
{
    Util::detail::ConfigLocation const location = Util::detail::ConfigLocation::FromEnvironment();
    ::chmod(location.userFolder.c_str(), 0755);
    ::chmod((location.userFolder + "ByHost").c_str(), 0755);
    for (ConfigScope scope :
         {Util::detail::ScopeCurrentUserAnyHost, Util::detail::ScopeCurrentUserCurrentHost})
        ::chmod(location.FileFor(domain, scope).c_str(), 0644);
}

int run(std::vector<std::string> args)
{
    if (args.size() == 1 && args[0] == "--version")
    {
        std::fputs("tvdefaults " TV_VERSION "\n", stdout);
        return exitSuccess;
    }
    if (args.empty() || args[0] != "--system")
        return runCommand(args);
    args.erase(args.begin());
    bool const changes = !args.empty() && (args[0] == "write" || args[0] == "delete");
    if (changes && ::geteuid() != 0)
    {
        std::fprintf(stderr, "tvdefaults: changing the settings of every user needs root\n");
        return exitMissing;
    }
    useSystemScope();
    int const status = runCommand(args);
    if (changes && args.size() >= 2)
        shareSystemFiles(args[1]);
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    return run(args);
}

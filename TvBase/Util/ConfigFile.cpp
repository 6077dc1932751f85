#include "TvBase/Util/ConfigFile.h"

#include "TvBase/Util/detail/ConfigStore.h"

#include <cstring>
#include <new>
#include <set>
#include <string>

namespace Util
{

using detail::ConfigScope;
using detail::ConfigStore;
using detail::ConfigValue;

namespace
{

/// The text as the store holds it; text it cannot hold becomes empty.
std::string hostText(String const& text)
{
    return detail::StorableText(text.CStr(), text.Length());
}

std::string normalizeCFPrefName(std::string const& name)
{
    return detail::NormalizeName(name);
}

std::string normalizedPath(String const& path)
{
    return normalizeCFPrefName(hostText(path));
}

String toString(std::string const& text)
{
    return String(text.c_str(), static_cast<unsigned int>(text.size()));
}

/// The normalised names of all four scopes, each once, in `String` order.
std::set<String> collectNames(ConfigStore& store)
{
    static ConfigScope const order[] = {
        detail::ScopeCurrentUserCurrentHost, detail::ScopeAnyUserCurrentHost,
        detail::ScopeCurrentUserAnyHost, detail::ScopeAnyUserAnyHost};
    std::set<String> names;
    for (ConfigScope scope : order)
        for (std::string const& name : store.Names(scope))
            names.insert(toString(normalizeCFPrefName(name)));
    return names;
}

/// The requested key path of a listing: normalised, trailing "/" removed.
String listingPath(String const& path)
{
    std::string text = normalizedPath(path);
    while (!text.empty() && text.back() == '/')
        text.pop_back();
    return toString(text);
}

bool readNumber(ConfigStore& store, String const& path, std::int64_t& number)
{
    ConfigValue value;
    if (!store.Read(normalizedPath(path), value) || value.kind != ConfigValue::Number)
        return false;
    number = value.number;
    return true;
}

} // namespace

ConfigFile::ConfigFile(String const& domainName)
    : domain(domainName), store(&ConfigStore::Get(hostText(domainName)))
{
}

ConfigFile::~ConfigFile()
{
    Synchronize();
}

void ConfigFile::GetKeyNames(std::vector<String>& names, String const& path) const
{
    names.clear();
    String requested = listingPath(path).ToLower();
    std::set<String> keys;
    for (String const& name : collectNames(*store))
    {
        checked_value<unsigned int> slash = name.FindRev('/');
        String keyPath = slash ? name.Left(*slash) : String();
        if (!requested.IsEmpty())
        {
            unsigned int n = requested.Length();
            if (keyPath.Length() <= n || keyPath[n] != '/' ||
                keyPath.Left(n).ToLower() != requested)
                continue;
            keyPath = keyPath.Mid(n + 1);
        }
        checked_value<unsigned int> first = keyPath.Find('/');
        if (first)
            keyPath = keyPath.Left(*first);
        if (!keyPath.IsEmpty())
            keys.insert(keyPath);
    }
    names.assign(keys.begin(), keys.end());
}

void ConfigFile::GetValueNames(std::vector<String>& names, String const& path) const
{
    names.clear();
    String requested = listingPath(path).ToLower();
    for (String const& name : collectNames(*store))
    {
        checked_value<unsigned int> slash = name.FindRev('/');
        String keyPath = slash ? name.Left(*slash) : String();
        String valueName = slash ? name.Mid(*slash + 1) : name;
        if (keyPath.ToLower() == requested)
            names.push_back(valueName.IsNull() ? String("") : valueName);
    }
}

String ConfigFile::GetString(String const& path, String const& defaultValue) const
{
    ConfigValue value;
    if (!store->Read(normalizedPath(path), value) || value.kind != ConfigValue::Text)
        return defaultValue;
    return toString(value.bytes);
}

void ConfigFile::SetString(String const& path, String const& value)
{
    store->Write(detail::ScopeCurrentUserAnyHost, normalizedPath(path),
                 ConfigValue::MakeText(hostText(value)));
}

void ConfigFile::SetStringLegacyLocation(String const& path, String const& value)
{
    store->Write(detail::ScopeCurrentUserCurrentHost, normalizedPath(path),
                 ConfigValue::MakeText(hostText(value)));
}

float ConfigFile::GetFloat(String const& path, float defaultValue) const
{
    ConfigValue value;
    if (!store->Read(normalizedPath(path), value) || value.kind != ConfigValue::Data)
        return defaultValue;
    auto const* b = reinterpret_cast<unsigned char const*>(value.bytes.data());
    float result;
    if (value.bytes.size() == 4)
    {
        // The older form: the IEEE single, big-endian.
        std::uint32_t bits = (std::uint32_t(b[0]) << 24) | (std::uint32_t(b[1]) << 16) |
                             (std::uint32_t(b[2]) << 8) | std::uint32_t(b[3]);
        std::memcpy(&result, &bits, sizeof result);
        return result;
    }
    if (value.bytes.size() == 8 && b[0] == 0 && b[1] == 0 && b[2] == 0 && b[3] == 0)
    {
        std::memcpy(&result, b + 4, sizeof result);
        return result;
    }
    return defaultValue;
}

void ConfigFile::SetFloat(String const& path, float value)
{
    // Four zero bytes, then the single in the machine's (little-endian) order.
    std::string bytes(8, '\0');
    std::memcpy(&bytes[4], &value, sizeof value);
    store->Write(detail::ScopeCurrentUserAnyHost, normalizedPath(path),
                 ConfigValue::MakeData(bytes));
}

bool ConfigFile::GetBool(String const& path, bool defaultValue) const
{
    std::int64_t number;
    return readNumber(*store, path, number) ? number != 0 : defaultValue;
}

bool ConfigFile::SetBool(String const& path, bool value)
{
    return SetInt(path, value ? 1 : 0);
}

unsigned int ConfigFile::GetUInt(String const& path, unsigned int defaultValue) const
{
    std::int64_t number;
    return readNumber(*store, path, number) ? static_cast<unsigned int>(number) : defaultValue;
}

bool ConfigFile::SetUInt(String const& path, unsigned int value)
{
    return SetInt(path, static_cast<int>(value));
}

void ConfigFile::SetUIntLegacyLocation(String const& path, unsigned int value)
{
    store->Write(detail::ScopeCurrentUserCurrentHost, normalizedPath(path),
                 ConfigValue::MakeNumber(static_cast<int>(value)));
}

int ConfigFile::GetInt(String const& path, int defaultValue) const
{
    std::int64_t number;
    return readNumber(*store, path, number) ? static_cast<int>(number) : defaultValue;
}

bool ConfigFile::SetInt(String const& path, int value)
{
    store->Write(detail::ScopeCurrentUserAnyHost, normalizedPath(path),
                 ConfigValue::MakeNumber(value));
    return true;
}

unsigned int ConfigFile::GetUInt64(String const& path, unsigned long long defaultValue) const
{
    // Read as 64 bits, handed back as the low 32, the default likewise.
    std::int64_t number;
    if (!readNumber(*store, path, number))
        return static_cast<unsigned int>(defaultValue);
    return static_cast<unsigned int>(static_cast<std::uint64_t>(number));
}

void ConfigFile::SetUInt64(String const& path, unsigned long long value)
{
    store->Write(detail::ScopeCurrentUserAnyHost, normalizedPath(path),
                 ConfigValue::MakeNumber(static_cast<std::int64_t>(value)));
}

bool ConfigFile::GetBinary(String const& path, std::vector<unsigned char>& data) const
{
    data.clear();
    ConfigValue value;
    if (!store->Read(normalizedPath(path), value) || value.kind != ConfigValue::Data)
        return false;
    if (value.bytes.empty() || value.bytes.size() > 1000000)
        return false;
    try
    {
        data.assign(value.bytes.begin(), value.bytes.end());
    }
    catch (std::bad_alloc const&)
    {
        data.clear();
        return false;
    }
    return true;
}

bool ConfigFile::SetBinary(String const& path, unsigned char const* data, unsigned long length)
{
    if (!data && length > 0)
        return false;
    try
    {
        std::string bytes(reinterpret_cast<char const*>(data), length);
        store->Write(detail::ScopeCurrentUserAnyHost, normalizedPath(path),
                     ConfigValue::MakeData(std::move(bytes)));
    }
    catch (std::exception const&)
    {
        return false;
    }
    return true;
}

void ConfigFile::RemoveValue(String const& path)
{
    store->Remove(detail::ScopeCurrentUserAnyHost, normalizedPath(path));
}

void ConfigFile::CopyPropertyFrom(String const& path, ConfigFile const& source)
{
    std::string name = hostText(path);
    ConfigValue value;
    if (!source.store->Read(name, value))
    {
        String("Key %1 not found!").Arg(path); // diagnostic only; dropped
        return;
    }
    store->Write(detail::ScopeCurrentUserAnyHost, name, value);
}

void ConfigFile::Synchronize() const
{
    store->Synchronize();
}

} // namespace Util

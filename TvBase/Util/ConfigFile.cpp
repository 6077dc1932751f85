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

/// Settings never throw: when memory runs out, a read gives its default and a write is dropped.
template <typename Result, typename Body>
Result guarded(Result const& fallback, Body body) noexcept
{
    try
    {
        return body();
    }
    catch (...)
    {
        return fallback;
    }
}

template <typename Body>
void guarded(Body body) noexcept
{
    try
    {
        body();
    }
    catch (...)
    {
    }
}

} // namespace

ConfigFile::ConfigFile(String const& domainName) : domain(domainName), store(nullptr)
{
    guarded([&] { store = &ConfigStore::Get(hostText(domainName)); });
}

ConfigFile::~ConfigFile()
{
    Synchronize();
}

void ConfigFile::GetKeyNames(std::vector<String>& names, String const& path) const
{
    names.clear();
    if (!store)
        return;
    guarded(
        [&]
        {
            String requested = listingPath(path).ToLower();
            std::set<String> keys;
            for (String const& name : collectNames(*store))
            {
                checked_value<unsigned int> slash = name.FindRev('/');
                String keyPath = slash ? name.Left(*slash) : String();
                if (!requested.IsEmpty())
                {
                    // Below the requested key: it, then "/", then at least one more byte.
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
        });
}

void ConfigFile::GetValueNames(std::vector<String>& names, String const& path) const
{
    names.clear();
    if (!store)
        return;
    guarded(
        [&]
        {
            String requested = listingPath(path).ToLower();
            for (String const& name : collectNames(*store))
            {
                checked_value<unsigned int> slash = name.FindRev('/');
                String keyPath = slash ? name.Left(*slash) : String();
                String valueName = slash ? name.Mid(*slash + 1) : name;
                if (keyPath.ToLower() == requested)
                    names.push_back(valueName.IsNull() ? String("") : valueName);
            }
        });
}

bool ConfigFile::read(String const& path, detail::ConfigValue& value) const
{
    return store && guarded(false, [&] { return store->Read(normalizedPath(path), value); });
}

bool ConfigFile::write(int scope, String const& path, detail::ConfigValue const& value)
{
    return store &&
           guarded(false,
                   [&]
                   {
                       store->Write(static_cast<ConfigScope>(scope), normalizedPath(path), value);
                       return true;
                   });
}

String ConfigFile::GetString(String const& path, String const& defaultValue) const
{
    ConfigValue value;
    if (!read(path, value) || value.kind != ConfigValue::Text)
        return defaultValue;
    return guarded(defaultValue, [&] { return toString(value.bytes); });
}

void ConfigFile::SetString(String const& path, String const& value)
{
    guarded(
        [&]
        { write(detail::ScopeCurrentUserAnyHost, path, ConfigValue::MakeText(hostText(value))); });
}

void ConfigFile::SetStringLegacyLocation(String const& path, String const& value)
{
    guarded(
        [&] {
            write(detail::ScopeCurrentUserCurrentHost, path,
                  ConfigValue::MakeText(hostText(value)));
        });
}

float ConfigFile::GetFloat(String const& path, float defaultValue) const
{
    ConfigValue value;
    if (!read(path, value) || value.kind != ConfigValue::Data)
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
    guarded(
        [&]
        {
            std::string bytes(8, '\0');
            std::memcpy(&bytes[4], &value, sizeof value);
            write(detail::ScopeCurrentUserAnyHost, path, ConfigValue::MakeData(bytes));
        });
}

bool ConfigFile::GetBool(String const& path, bool defaultValue) const
{
    ConfigValue value;
    if (!read(path, value) || value.kind != ConfigValue::Number)
        return defaultValue;
    return value.number != 0;
}

bool ConfigFile::SetBool(String const& path, bool value)
{
    return SetInt(path, value ? 1 : 0);
}

unsigned int ConfigFile::GetUInt(String const& path, unsigned int defaultValue) const
{
    return static_cast<unsigned int>(GetInt(path, static_cast<int>(defaultValue)));
}

bool ConfigFile::SetUInt(String const& path, unsigned int value)
{
    return SetInt(path, static_cast<int>(value));
}

void ConfigFile::SetUIntLegacyLocation(String const& path, unsigned int value)
{
    write(detail::ScopeCurrentUserCurrentHost, path,
          ConfigValue::MakeNumber(static_cast<int>(value)));
}

int ConfigFile::GetInt(String const& path, int defaultValue) const
{
    ConfigValue value;
    if (!read(path, value) || value.kind != ConfigValue::Number)
        return defaultValue;
    return static_cast<int>(static_cast<std::uint32_t>(value.number));
}

bool ConfigFile::SetInt(String const& path, int value)
{
    return write(detail::ScopeCurrentUserAnyHost, path, ConfigValue::MakeNumber(value));
}

unsigned int ConfigFile::GetUInt64(String const& path, unsigned long long defaultValue) const
{
    // Read as 64 bits, handed back as the low 32, the default likewise.
    ConfigValue value;
    if (!read(path, value) || value.kind != ConfigValue::Number)
        return static_cast<unsigned int>(defaultValue);
    return static_cast<unsigned int>(static_cast<std::uint64_t>(value.number));
}

void ConfigFile::SetUInt64(String const& path, unsigned long long value)
{
    write(detail::ScopeCurrentUserAnyHost, path,
          ConfigValue::MakeNumber(static_cast<std::int64_t>(value)));
}

bool ConfigFile::GetBinary(String const& path, std::vector<unsigned char>& data) const
{
    data.clear();
    ConfigValue value;
    if (!read(path, value) || value.kind != ConfigValue::Data)
        return false;
    if (value.bytes.empty() || value.bytes.size() > 1000000)
        return false;
    bool copied =
        guarded(false, [&] { return data.assign(value.bytes.begin(), value.bytes.end()), true; });
    if (!copied)
        data.clear();
    return copied;
}

bool ConfigFile::SetBinary(String const& path, unsigned char const* data, unsigned long length)
{
    if (!data && length > 0)
        return false;
    return guarded(false,
                   [&]
                   {
                       std::string bytes(reinterpret_cast<char const*>(data), length);
                       return write(detail::ScopeCurrentUserAnyHost, path,
                                    ConfigValue::MakeData(std::move(bytes)));
                   });
}

void ConfigFile::RemoveValue(String const& path)
{
    if (!store)
        return;
    guarded([&] { store->Remove(detail::ScopeCurrentUserAnyHost, normalizedPath(path)); });
}

void ConfigFile::CopyPropertyFrom(String const& path, ConfigFile const& source)
{
    if (!store || !source.store)
        return;
    guarded(
        [&]
        {
            // The path as given: no normalising on this road.
            std::string name = hostText(path);
            ConfigValue value;
            if (!source.store->Read(name, value))
            {
                String("Key %1 not found!").Arg(path); // diagnostic only; dropped
                return;
            }
            store->Write(detail::ScopeCurrentUserAnyHost, name, value);
        });
}

void ConfigFile::Synchronize() const
{
    if (store)
        guarded([&] { store->Synchronize(); });
}

} // namespace Util

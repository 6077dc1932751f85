#include "Canvas/UI/Palette.h"

namespace UI
{

namespace
{

template <typename T>
checked_value<T> find(std::map<String, T> const& table, String const& key)
{
    auto it = table.find(key);
    if (it == table.end())
        return checked_value<T>();
    return checked_value<T>(it->second);
}

template <typename T>
void keysOf(std::map<String, T> const& table, std::vector<String>& keys)
{
    keys.clear();
    keys.reserve(table.size());
    for (auto const& entry : table)
        keys.push_back(entry.first);
}

template <typename T>
void setOrErase(std::map<String, T>& table, String const& key, checked_value<T> const& value)
{
    if (value)
        table[key] = *value;
    else
        table.erase(key);
}

} // namespace

checked_value<unsigned int> Palette::GetColor(String const& key) const
{
    return find(colors, key);
}

void Palette::GetColorKeys(std::vector<String>& keys) const
{
    keysOf(colors, keys);
}

checked_value<unsigned char> Palette::GetAlpha(String const& key) const
{
    return find(alphas, key);
}

void Palette::GetAlphaKeys(std::vector<String>& keys) const
{
    keysOf(alphas, keys);
}

void Palette::SetBool(String const& key, checked_value<bool> const& value)
{
    setOrErase(bools, key, value);
}

checked_value<bool> Palette::GetBool(String const& key) const
{
    return find(bools, key);
}

void Palette::GetBoolKeys(std::vector<String>& keys) const
{
    keysOf(bools, keys);
}

void Palette::SetInt(String const& key, checked_value<int> const& value)
{
    setOrErase(ints, key, value);
}

checked_value<int> Palette::GetInt(String const& key) const
{
    return find(ints, key);
}

void Palette::GetIntKeys(std::vector<String>& keys) const
{
    keysOf(ints, keys);
}

} // namespace UI

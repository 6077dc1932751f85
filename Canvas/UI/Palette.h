#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <map>
#include <vector>

namespace UI
{

/// The run-time table of named colors, alphas, bools and ints through which a skin changes the
/// look of widgets without code. A key that was never set gives an unset value, and the widget
/// that asked uses its own. Setting a value notifies nobody: the caller runs
/// `UI::Window::NotifyPaletteChanged` on the windows it wants refreshed. Not copyable; the
/// canvas owns one.
class Palette
{
public:
    Palette() = default;
    virtual ~Palette() = default;
    Palette(Palette const&) = delete;
    Palette& operator=(Palette const&) = delete;

    /// Fills in a program's own defaults; the base class has no default table.
    virtual void SetDefaultPalette() {}

    /// Inserts or overwrites; a color can't be erased.
    void SetColor(String const& key, unsigned int color) { colors[key] = color; }
    bool HasColor(String const& key) const { return colors.count(key) != 0; }
    checked_value<unsigned int> GetColor(String const& key) const;
    /// Replaces `keys` with the color keys in `String` order.
    void GetColorKeys(std::vector<String>& keys) const;

    /// Inserts or overwrites; an alpha can't be erased.
    void SetAlpha(String const& key, unsigned char alpha) { alphas[key] = alpha; }
    bool HasAlpha(String const& key) const { return alphas.count(key) != 0; }
    checked_value<unsigned char> GetAlpha(String const& key) const;
    void GetAlphaKeys(std::vector<String>& keys) const;

    /// A set value inserts or overwrites; an unset one erases the key.
    void SetBool(String const& key, checked_value<bool> const& value);
    bool HasBool(String const& key) const { return bools.count(key) != 0; }
    checked_value<bool> GetBool(String const& key) const;
    void GetBoolKeys(std::vector<String>& keys) const;

    /// A set value inserts or overwrites; an unset one erases the key.
    void SetInt(String const& key, checked_value<int> const& value);
    bool HasInt(String const& key) const { return ints.count(key) != 0; }
    checked_value<int> GetInt(String const& key) const;
    void GetIntKeys(std::vector<String>& keys) const;

    /// Whether a custom palette was loaded over the program's defaults.
    bool IsLoaded() const { return loaded; }
    void SetLoaded(bool value) { loaded = value; }

private:
    std::map<String, unsigned int> colors;
    std::map<String, unsigned char> alphas;
    std::map<String, bool> bools;
    std::map<String, int> ints;
    bool loaded = false;
};

/// The color 0xAARRGGBB from four bytes, as pasted palette code writes it.
inline unsigned int MakePixel(unsigned int r, unsigned int g, unsigned int b, unsigned int a)
{
    return ((a & 255u) << 24) | ((r & 255u) << 16) | ((g & 255u) << 8) | (b & 255u);
}

} // namespace UI

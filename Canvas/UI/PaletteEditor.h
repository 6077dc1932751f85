#pragma once

#include "TvBase/Util/String.h"

namespace Util
{
class ConfigFile;
}

namespace UI
{

class Canvas;

/// The designer's palette tool. Its custom-palette operations are static and work without an
/// editor window: a program loads the saved palette at start with them.
///
/// A custom palette lives in the settings as `section` + "/" + kind + key, the kind being
/// "Color." (text "#RRGGBB", with ".AA" when not opaque), "Alpha." (unsigned integer 0 to
/// 255), "Bool." or "Int.", and counts only while the bool at `enableKey` is true.
class PaletteEditor
{
public:
    /// "Palette/CustomPaletteEnable"
    static String const DefaultEnableKey;
    /// "Palette"
    static String const DefaultSection;

    /// `LoadCustomPalette` with the default enable key and section.
    static bool LoadCustomPalette(Canvas* canvas, Util::ConfigFile* config);
    /// False, reading nothing, when the enable key is false. Otherwise puts every value of the
    /// section whose name starts with "Int.", "Bool.", "Alpha." or "Color." (tried in this
    /// order) into the canvas's palette under the rest of the name; other names and unreadable
    /// colors are skipped. True.
    static bool LoadCustomPalette(Canvas* canvas, Util::ConfigFile* config, String const& enableKey,
                                  String const& section);
    /// Sets the enable key, then writes every palette entry (colors, alphas, bools, ints) to the
    /// section.
    static void SaveCustomPalette(Canvas* canvas, Util::ConfigFile* config, String const& enableKey,
                                  String const& section);
    /// Clears the enable key and removes every custom-palette value of the section. The palette
    /// in memory stays as it is.
    static void ClearCustomPalette(Util::ConfigFile* config, String const& enableKey,
                                   String const& section);
};

} // namespace UI

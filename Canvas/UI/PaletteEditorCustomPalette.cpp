#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/ColorConversion.h"
#include "Canvas/UI/PaletteEditor.h"
#include "Canvas/UI/detail/BusyCursor.h"
#include "TvBase/Util/ConfigFile.h"

#include <vector>

namespace UI
{

namespace
{

char const* const IntPrefix = "Int.";
char const* const BoolPrefix = "Bool.";
char const* const AlphaPrefix = "Alpha.";
char const* const ColorPrefix = "Color.";

/// The rest of `name` after `prefix`, or not present when it doesn't start with it.
checked_value<String> afterPrefix(String const& name, char const* prefix)
{
    String p(prefix);
    if (!name.BeginsWith(p))
        return checked_value<String>();
    return checked_value<String>(name.Mid(p.Length()));
}

String valuePath(String const& section, char const* prefix, String const& key)
{
    return section + "/" + prefix + key;
}

} // namespace

String const PaletteEditor::DefaultEnableKey("Palette/CustomPaletteEnable");
String const PaletteEditor::DefaultSection("Palette");

bool PaletteEditor::LoadCustomPalette(Canvas* canvas, Util::ConfigFile* config)
{
    return LoadCustomPalette(canvas, config, DefaultEnableKey, DefaultSection);
}

bool PaletteEditor::LoadCustomPalette(Canvas* canvas, Util::ConfigFile* config,
                                      String const& enableKey, String const& section)
{
    if (!canvas || !config || !config->GetBool(enableKey, false))
        return false;
    detail::BusyCursor busy;
    std::vector<String> names;
    config->GetValueNames(names, section);
    for (String const& name : names)
    {
        String path = section + "/" + name;
        if (checked_value<String> key = afterPrefix(name, IntPrefix))
            canvas->SetPaletteInt(*key, config->GetInt(path, 0));
        else if (checked_value<String> key = afterPrefix(name, BoolPrefix))
            canvas->SetPaletteBool(*key, config->GetBool(path, false));
        else if (checked_value<String> key = afterPrefix(name, AlphaPrefix))
            canvas->SetPaletteAlpha(*key,
                                    static_cast<unsigned char>(config->GetUInt(path, 0) & 255u));
        else if (checked_value<String> key = afterPrefix(name, ColorPrefix))
        {
            checked_value<unsigned int> color = ConvertStringToColor(config->GetString(path));
            if (color)
                canvas->SetPaletteColor(*key, *color);
        }
    }
    return true;
}

void PaletteEditor::SaveCustomPalette(Canvas* canvas, Util::ConfigFile* config,
                                      String const& enableKey, String const& section)
{
    if (!canvas || !config)
        return;
    detail::BusyCursor busy;
    config->SetBool(enableKey, true);
    std::vector<String> keys;
    canvas->GetPaletteColorKeys(keys);
    for (String const& key : keys)
        config->SetString(valuePath(section, ColorPrefix, key),
                          ConvertColorToString(*canvas->GetPaletteColor(key), true));
    canvas->GetPaletteAlphaKeys(keys);
    for (String const& key : keys)
        config->SetUInt(valuePath(section, AlphaPrefix, key), *canvas->GetPaletteAlpha(key));
    canvas->GetPaletteBoolKeys(keys);
    for (String const& key : keys)
        config->SetBool(valuePath(section, BoolPrefix, key), *canvas->GetPaletteBool(key));
    canvas->GetPaletteIntKeys(keys);
    for (String const& key : keys)
        config->SetInt(valuePath(section, IntPrefix, key), *canvas->GetPaletteInt(key));
}

void PaletteEditor::ClearCustomPalette(Util::ConfigFile* config, String const& enableKey,
                                       String const& section)
{
    if (!config)
        return;
    config->SetBool(enableKey, false);
    std::vector<String> names;
    config->GetValueNames(names, section);
    for (String const& name : names)
    {
        if (afterPrefix(name, IntPrefix) || afterPrefix(name, BoolPrefix) ||
            afterPrefix(name, AlphaPrefix) || afterPrefix(name, ColorPrefix))
            config->RemoveValue(section + "/" + name);
    }
}

} // namespace UI

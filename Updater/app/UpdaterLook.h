#pragma once

namespace UI
{

class Canvas;
class SimplePushButton;

/// Colours of the updater's windows, 0xAARRGGBB.
constexpr unsigned int TEXT_COLOR = 0xFFFFFFFFu;
constexpr unsigned int COLOR_TEXT = 0xFF000000u;
constexpr unsigned int COLOR_HEADER = 0xFF000000u;
constexpr unsigned int COLOR_SLIDER = 0xFFD5D5D5u;
constexpr unsigned int COLOR_SLIDER_HANDLE = 0xFF7F7F7Fu;
constexpr unsigned int COLOR_BG = 0xFFCDCDCDu;
constexpr unsigned int COLOR_BUTTON_ON_FILL = 0xFFE6E6E6u;
constexpr unsigned int COLOR_BUTTON_OFF_FILL = 0xFFB3B3B3u;
constexpr unsigned int COLOR_BUTTON_OUTLINE = 0xFF999999u;
constexpr unsigned int COLOR_PANEL_FILL = 0xFFE6E6E6u;

/// Fills font slots 0 to 9 of `canvas` with the updater's Arial fonts: 0 the default text (13
/// points, sharpened), 5 the bold column headers, 8 the underlined "Update" link, and the rest
/// as the windows' layouts may name them. Running it again replaces the fonts.
void SetUpdaterFonts(Canvas* canvas, unsigned int unused = 0);

/// Gives `button` the colours of the palette keys "ButtonOnFillColor", "ButtonOffFillColor",
/// "ButtonOutlineColor" and "ButtonTextColor"; a key the palette lacks leaves its colour.
void ApplyButtonPalette(Canvas* canvas, SimplePushButton* button);

/// The custom palette that the palette editor saved in the toolkit's settings, over the
/// colours the panels set.
void LoadSavedPalette(Canvas* canvas);

} // namespace UI

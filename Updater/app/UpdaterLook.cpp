#include "Updater/app/UpdaterLook.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FontInfo.h"
#include "Canvas/UI/PaletteEditor.h"
#include "Canvas/UI/SimplePushButton.h"

#include <boost/shared_ptr.hpp>

namespace UI
{

namespace
{

struct FontSlot
{
    float points;
    int sharpen;
    bool bold;
    bool italic;
    bool underline;
};

constexpr FontSlot fontSlots[10] = {{13, 1, false, false, false}, {9, 0, false, false, false},
                                    {8, 0, false, false, false},  {7, 0, false, false, false},
                                    {12, 0, false, false, false}, {13, 1, true, false, false},
                                    {21, 1, false, false, false}, {13, 0, false, true, false},
                                    {13, 0, false, false, true},  {13, 0, true, false, false}};

} // namespace

void SetUpdaterFonts(Canvas* canvas, unsigned int)
{
    for (unsigned int slot = 0; slot < 10; ++slot)
    {
        FontInfo info(String("Arial"), fontSlots[slot].points);
        info.sharpen = fontSlots[slot].sharpen;
        info.bold = fontSlots[slot].bold;
        info.italic = fontSlots[slot].italic;
        info.underline = fontSlots[slot].underline;
        canvas->SetFont(slot, boost::shared_ptr<Font>(new Font(canvas, info)));
    }
}

void ApplyButtonPalette(Canvas* canvas, SimplePushButton* button)
{
    if (!canvas || !button)
        return;
    if (checked_value<unsigned int> c = canvas->GetPaletteColor("ButtonOnFillColor"))
        button->SetOnFillColor(*c);
    if (checked_value<unsigned int> c = canvas->GetPaletteColor("ButtonOffFillColor"))
        button->SetOffFillColor(*c);
    if (checked_value<unsigned int> c = canvas->GetPaletteColor("ButtonOutlineColor"))
        button->SetBorderColor(*c);
    if (checked_value<unsigned int> c = canvas->GetPaletteColor("ButtonTextColor"))
        button->SetTextColor(*c);
}

void LoadSavedPalette(Canvas* canvas)
{
    if (canvas)
        PaletteEditor::LoadCustomPalette(canvas, canvas->GetConfigFile());
}

} // namespace UI

#include "Canvas/UI/ListBoxItem.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/ListBox.h"

namespace UI
{

ListBoxItem::ListBoxItem(Frame* frame, Window* parent, ListBox* list, unsigned int row)
    : Window(frame, parent, String("ListBoxItem %1").Arg(row)), list(list), row(row)
{
}

String ListBoxItem::DescribeRow(ListBoxRow const& row)
{
    String text = row.text;
    if (row.intValue)
        text += String(": %1").Arg(*row.intValue);
    if (row.swatchColor)
    {
        unsigned int const c = *row.swatchColor;
        text += String(": 0x%1%2%3")
                    .Arg((c >> 16) & 0xFF, 16, 2u)
                    .Arg((c >> 8) & 0xFF, 16, 2u)
                    .Arg(c & 0xFF, 16, 2u);
        if ((c >> 24) != 0xFF)
            text += String(" (alpha: 0x%1)").Arg(c >> 24, 16, 2u);
    }
    return text;
}

void ListBoxItem::Refresh()
{
    if (row >= list->items.size())
        return;
    ListBoxRow const& data = list->items[row];
    SetToolTipText(data.toolTip);
    if (GetBaseAlpha() != data.baseAlpha)
        SetBaseAlpha(data.baseAlpha);
    // The control is made when the row comes into view or is given one.
    if (static_cast<bool>(data.control) != hasControl)
    {
        delete control;
        control = data.control ? data.control(GetFrame(), this) : nullptr;
        hasControl = static_cast<bool>(data.control);
    }
    if (control)
    {
        int const width = data.controlWidth;
        int const height = std::min(GetHeight(), 16);
        control->SetGeometry(GetWidth() - width - 2, (GetHeight() - height) / 2, width, height);
    }
    Update();
}

void ListBoxItem::Draw(DrawContext* context)
{
    if (row >= list->items.size())
        return;
    ListBoxRow const& data = list->items[row];
    ListBox::Colors const& colors = list->GetColors();
    unsigned char const alpha = GetTotalBaseAlpha();
    Rect const all(0, GetWidth() - 1, 0, GetHeight() - 1);
    bool const selected = data.selected;
    if (selected)
        context->DrawBox(all, DrawContext::Filled, colors.selectionBackground, alpha);
    else if (data.highlight)
        context->DrawBox(all, DrawContext::Filled, colors.highlight, alpha);
    int x = data.leftMargin;
    if (data.icon)
    {
        int const h = data.icon->GetHeight();
        context->BitBlt(data.icon.get(), Rect(0, data.icon->GetWidth() - 1, 0, h - 1),
                        Point(x, (GetHeight() - h) / 2), alpha);
        x += data.icon->GetWidth() + 4;
    }
    if (data.swatchColor)
    {
        int const size = GetHeight() - 6;
        Rect const swatch = Rect::FromXYWH(x, 3, size * 2, size);
        context->DrawBox(swatch, DrawContext::Filled, *data.swatchColor | 0xFF000000u,
                         static_cast<unsigned char>(((*data.swatchColor >> 24) * alpha) / 255));
        context->DrawBox(swatch, DrawContext::Outline, 0xFF404040, alpha);
        x += size * 2 + 4;
    }
    Font* font = data.font ? data.font : GetCanvas()->GetFont(checked_value<unsigned int>());
    unsigned int const textColor = selected        ? colors.selectionText
                                   : IsEnabledTo() ? colors.text
                                                   : 0xFF909090;
    if (font && x < GetWidth() - data.edgeMargin)
        context->DrawText(font, Rect(), Point(x, GetHeight() / 2), DescribeRow(data), textColor,
                          alpha, HAlignLeft, VAlignCenter);
    Window::Draw(context);
}

bool ListBoxItem::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                   TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    reply->SetValue("item", String::Number(static_cast<int>(row)).CStr());
    reply->SetValue("text", list->GetItemText(row).CStr());
    reply->SetValue("isOn", list->IsSelected(row) ? "true" : "false");
    return true;
}

} // namespace UI

#include "Canvas/UI/Edit.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "Canvas/UI/Text.h"

#include <algorithm>
#include <cmath>

namespace UI
{

namespace
{
unsigned int const F2Key = KeyCode::F1 + 1;
}

Edit::Edit(Frame* frame, Window* parent, String const& name, String const& initial, bool multiLine)
    : Window(frame, parent, name), text(initial.IsNull() ? String("") : initial)
{
    SetCursor(Cursor(Cursor::IBeam));
    if (multiLine)
        multiLineText = new MultiText(frame, this, String("Edit MultiText"), text);
    else
        singleLineText = new Text(frame, this, String("Edit Text"), text);
    SetGeometry(0, 0, 100, 20);
    updateVisibleText();
    onSetGeometry();
}

Edit::~Edit() = default;

void Edit::SetText(String const& newText)
{
    String t = newText.IsNull() ? String("") : newText;
    if (IsNumeric())
        t = parseFloatString(t, floatValue);
    if (t == text)
        return;
    text = t;
    updateVisibleText();
    Update();
    if (textAsToolTip)
        SetToolTipText(text);
    signalTextChanged();
}

void Edit::SetFloatValue(float value)
{
    if (IsNumeric())
        value = std::min(std::max(value, minValue), maxValue);
    floatValue = value;
    text = formatFloatValue();
    updateVisibleText();
    Update();
}

void Edit::SetRange(float minimum, float maximum)
{
    minValue = minimum;
    maxValue = maximum;
}

void Edit::SetTextAsToolTip(bool on)
{
    textAsToolTip = on;
    if (on)
        SetToolTipText(text);
}

void Edit::SetEllipsize(bool on)
{
    ellipsize = on;
    updateVisibleText();
}

void Edit::SetJustification(HAlignment j)
{
    justification = j;
    if (multiLineText)
        multiLineText->SetJustification(j);
    onSetGeometry();
    Update();
}

void Edit::SetMargin(int m)
{
    margin = m;
    updateVisibleText();
    onSetGeometry();
}

String Edit::parseFloatString(String const& input, checked_value<float>& value) const
{
    value = checked_value<float>();
    if (input.IsEmpty() || !IsNumeric())
        return input;
    if (checked_value<float> const number = input.ToUserFacingFloat())
    {
        value = std::min(std::max(*number, minValue), maxValue);
        return formatFloat(*value);
    }
    if (hexAllowed)
    {
        String digits;
        if (input.BeginsWith(String("0x"), false))
            digits = input.Mid(2);
        else if (input.BeginsWith(String("$")))
            digits = input.Mid(1);
        if (!digits.IsNull())
        {
            if (checked_value<unsigned int> const hex = digits.ToUInt(16))
            {
                float const clamped =
                    std::min(std::max(static_cast<float>(*hex), minValue), maxValue);
                value = clamped;
                return String("0x%1").Arg(static_cast<unsigned int>(clamped), 16u);
            }
        }
    }
    return input;
}

void Edit::SetNumDecimalPlaces(checked_value<unsigned int> const& places)
{
    decimalPlaces = places;
    if (floatValue && IsNumeric())
    {
        text = formatFloatValue();
        updateVisibleText();
        Update();
    }
}

String Edit::formatFloat(float value) const
{
    return decimalPlaces ? String("%1").Arg(value, *decimalPlaces) : String("%1").Arg(value);
}

String Edit::formatFloatValue() const
{
    return floatValue ? formatFloat(*floatValue) : String("");
}

void Edit::updateVisibleText()
{
    if (multiLineText)
    {
        multiLineText->SetText(text);
        return;
    }
    String shown = text;
    if (ellipsize)
        shown = singleLineText->Ellipsize(text, GetWidth() - 2 * margin, EllipsisEnd);
    singleLineText->SetText(shown);
    onSetGeometry();
}

void Edit::onSetGeometry()
{
    int const width = GetWidth();
    int const height = GetHeight();
    if (multiLineText)
    {
        multiLineText->SetGeometry(margin, margin, width - 2 * margin, height - 2 * margin);
        return;
    }
    if (!singleLineText)
        return;
    int const textWidth = singleLineText->GetWidth();
    int x = margin;
    if (justification == HAlignCenter)
        x = (width - textWidth) / 2;
    else if (justification == HAlignRight)
        x = width - textWidth - margin;
    int const y = (height - singleLineText->GetHeight()) / 2;
    singleLineText->SetGeometry(x, y, textWidth, singleLineText->GetHeight());
}

void Edit::Draw(DrawContext* context)
{
    if (inlineEditing)
        return;
    Window::Draw(context);
}

bool Edit::onMousePress(Point const& p, unsigned int)
{
    if (inlineEditing)
        return true;
    if (Native::PlatformSupportFactory::IsAltPressed())
    {
        if (altResetsToDefault)
            signalAltClicked();
        else if (defaultValue)
        {
            floatValue =
                IsNumeric() ? std::min(std::max(*defaultValue, minValue), maxValue) : *defaultValue;
            text = formatFloatValue();
            updateVisibleText();
            Update();
            signalTextEdited();
        }
        return true;
    }
    focusedByClick = true;
    SetFocus();
    focusedByClick = false;
    executeInlineEdit(p);
    return true;
}

bool Edit::onKeyPress(unsigned int keyCode, unsigned int, bool)
{
    if (keyCode == F2Key || keyCode == KeyCode::Enter)
    {
        // Swallowed even when the field is not editable.
        executeInlineEdit(checked_value<Point>());
        return true;
    }
    return false;
}

void Edit::ExecuteInlineEdit()
{
    executeInlineEdit(checked_value<Point>());
}

void Edit::executeInlineEdit(checked_value<Point> const&)
{
    if (!editable || inlineEditing)
        return;
    signalEditStarted();
    TestAutomationInterface::SendEvent(String("EditText"), "InLineEdit");
    inlineEditing = true;
    Update();

    // The point is the middle of the editor's first line, in frame coordinates; the editor is a
    // fifth wider than the field, so long texts have room, and as tall as a one-line field.
    int const width = static_cast<int>(std::lround(GetWidth() * 1.2));
    Point const global = GetGlobalPos();
    Point const centre(global.x + width / 2,
                       multiLineText ? global.y + 10 : global.y + GetHeight() / 2);
    String edited = text;
    bool const accepted = Native::PlatformSupportFactory::ExecuteInlineEdit(
        GetFrame(), centre, edited, width, inlineCharFilter, false, justification,
        multiLineText ? 0 : GetHeight());
    inlineEditing = false;
    Update();
    if (accepted)
        AcceptEditedText(edited);
}

bool Edit::AcceptEditedText(String const& typed)
{
    String edited = typed.IsNull() ? String("") : typed;
    bool number = true;
    if (IsNumeric())
    {
        // A text that is no number leaves the value unset and stays as typed, for the owner to
        // judge.
        edited = parseFloatString(edited, floatValue);
        number = static_cast<bool>(floatValue);
    }
    for (String const& forbidden : forbiddenStrings)
        if (!forbidden.IsEmpty())
            edited = edited.Replace(forbidden, String(""));
    if (edited != text)
    {
        text = edited;
        updateVisibleText();
        Update();
    }
    if (textAsToolTip)
        SetToolTipText(text);
    signalTextEdited();
    return number;
}

bool Edit::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                            TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    if (IsNumeric())
    {
        reply->SetValue("value", floatValue ? String("%1").Arg(*floatValue).CStr() : "");
        reply->SetValue("min", String("%1").Arg(minValue).CStr());
        reply->SetValue("max", String("%1").Arg(maxValue).CStr());
    }
    reply->SetValue("isEditable", editable ? "true" : "false");
    return true;
}

unsigned int Edit::getCharacterFromPoint(Point const& p) const
{
    if (!singleLineText)
        return 0;
    Rect const& r = singleLineText->GetGeometry();
    return singleLineText->getCharacterFromPoint(Point(p.x - r.left, p.y - r.top));
}

} // namespace UI

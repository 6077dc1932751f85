#include "Canvas/UI/ParamControl.h"

#include "Canvas/TestAutomation/RPCServerInterface.h"
#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/DrawContext.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/KeyCode.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "TvBase/Controller/FloatParamMemory.h"
#include "TvBase/Util/Clipboard.h"

#include <agg_conv_transform.h>
#include <agg_renderer_scanline.h>
#include <agg_trans_affine.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace UI
{

namespace
{
unsigned int const F2Key = KeyCode::F1 + 1;
unsigned int const FocusColor = 0xFF3A7BD5u;
} // namespace

ParamControl::ParamControl(Frame* frame, Window* parent, String const& name, int positionCount)
    : Window(frame, parent, name), ParamView<float>(this, true)
{
    init(positionCount);
    SetOwnedController(std::unique_ptr<Controller::FloatParam>(
        new Controller::FloatParamMemory(0.0f, value_range<float>(0.0f, 1.0f))));
}

ParamControl::ParamControl(Frame* frame, Window* parent, String const& name,
                           Controller::FloatParam* param)
    : Window(frame, parent, name), ParamView<float>(this, false)
{
    init(100);
    SetController(param);
}

ParamControl::ParamControl(Frame* frame, Window* parent, String const& name, String const& keyPath)
    : Window(frame, parent, name), ParamView<float>(this, false)
{
    init(100);
    SetControllerFromID(keyPath);
}

ParamControl::~ParamControl()
{
    if (dragging)
        releaseController();
}

void ParamControl::init(int positionCount)
{
    positionRange = value_range<int>(0, positionCount > 0 ? positionCount : 1);
    CreateProperty("Label", String(""));
    GetPropertyChangedSignal("Label")->Connect(nullptr, [this]() { onValueShown(); });
}

// ---- model

void ParamControl::SetPositionRange(value_range<int> const& range)
{
    positionRange = range;
    syncPosition();
}

void ParamControl::SetScaleType(SliderScaleType type)
{
    scaleType = type;
    syncPosition();
}

void ParamControl::SetMidpointPercent(float percent)
{
    midpointPercent = percent;
    syncPosition();
}

void ParamControl::SetOverrideValueRange(checked_value<value_range<float>> const& range)
{
    overrideValueRange = range;
    syncPosition();
}

value_range<float> ParamControl::GetValueRange() const
{
    if (overrideValueRange)
        return *overrideValueRange;
    return controller ? controller->GetRange() : value_range<float>(0.0f, 1.0f);
}

float ParamControl::GetValue() const
{
    return controller ? controller->get() : 0.0f;
}

void ParamControl::SetValue(float value)
{
    if (controller)
        controller->set(value);
}

float ParamControl::PositionToValue(int pos) const
{
    return ScaleSliderToValue(scaleType, pos, midpointPercent, positionRange, GetValueRange());
}

int ParamControl::ValueToPosition(float value) const
{
    return ScaleValueToSlider(scaleType, value, midpointPercent, positionRange, GetValueRange());
}

int ParamControl::clampPosition(int pos) const
{
    int const lo = std::min(positionRange.minimum, positionRange.maximum);
    int const hi = std::max(positionRange.minimum, positionRange.maximum);
    return pos < lo ? lo : (pos > hi ? hi : pos);
}

void ParamControl::syncPosition()
{
    position = controller ? ValueToPosition(controller->get()) : positionRange.minimum;
    onValueShown();
    Update();
}

void ParamControl::onControllerValueChanged(float)
{
    syncPosition();
}

void ParamControl::onRebindController()
{
    syncPosition();
}

// ---- text

void ParamControl::SetLabel(String const& label)
{
    SetProperty<String>("Label", label);
}

String ParamControl::GetLabel() const
{
    checked_value<String> label = GetProperty<String>("Label");
    return label ? *label : String("");
}

void ParamControl::SetNumDecimalPlaces(int places)
{
    decimalPlaces = places < 0 ? 0 : places;
    onValueShown();
    Update();
}

void ParamControl::SetShowPlusSign(bool on)
{
    showPlusSign = on;
    onValueShown();
    Update();
}

void ParamControl::SetUnits(String const& text)
{
    units = text;
    onValueShown();
    Update();
}

String ParamControl::GetUnits() const
{
    if (units)
        return *units;
    return controller ? controller->GetUnit() : String("");
}

String ParamControl::formatValue(float value) const
{
    if (controller && controller->IsNegInfMin() && value <= GetValueRange().minimum)
        return String("-inf");
    String text = String("%1").Arg(value, static_cast<unsigned int>(decimalPlaces));
    if (showPlusSign && value > 0.0f)
        text = String("+") + text;
    return text;
}

String ParamControl::valueToCopyString() const
{
    // The fewest decimals that read back as the same value: "0.5", not "0.500000"; values too
    // small or too large for that in nine decimals get nine significant digits.
    float const value = GetValue();
    char text[64];
    for (int decimals = 0; decimals <= 9; ++decimals)
    {
        std::snprintf(text, sizeof text, "%.*f", decimals, static_cast<double>(value));
        if (std::strtof(text, nullptr) == value)
            return String(text);
    }
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return String(text);
}

checked_value<float> ParamControl::stringToValue(String const& text) const
{
    return text.ToUserFacingFloat();
}

bool ParamControl::CopyValue() const
{
    if (!controller)
        return false;
    return Util::Clipboard::SetContent(nullptr, checked_value<unsigned int>(),
                                       std::vector<unsigned char>(), valueToCopyString());
}

bool ParamControl::PasteValue()
{
    String const text = Util::Clipboard::GetString(nullptr, 0);
    return !text.IsNull() && handleUserEdit(text);
}

// ---- user changes

bool ParamControl::setUserValue(float value)
{
    if (!controller)
        return false;
    float const before = controller->get();
    controller->SetWithGesture(value);
    return controller->get() != before;
}

bool ParamControl::setUserPosition(int pos)
{
    pos = clampPosition(pos);
    if (!controller || (pos == position && PositionToValue(pos) == controller->get()))
        return false;
    bool const changed = setUserValue(PositionToValue(pos));
    // The parameter may hold the value already (a taper flat between two positions): the
    // control still shows where the user put it.
    position = pos;
    onValueShown();
    Update();
    return changed;
}

bool ParamControl::handleUserEdit(String const& text)
{
    checked_value<float> const value = stringToValue(text);
    if (!value || !controller)
        return false;
    setUserValue(*value);
    postUndoEvent();
    return true;
}

void ParamControl::handleUserReset()
{
    if (!controller)
        return;
    setUserValue(controller->GetDefault());
    signalReset();
    postUndoEvent();
}

void ParamControl::postUndoEvent()
{
    String const label = GetLabel();
    signalUndoEvent(String("%1: %2%3")
                        .Arg(label.IsEmpty() ? GetName() : label)
                        .Arg(formatValue(GetValue()))
                        .Arg(GetUnits()));
}

void ParamControl::beginDrag()
{
    dragging = true;
    GetFrame()->SetMouseCapture(this);
    SetFocus();
    grabController();
}

void ParamControl::endDrag()
{
    if (!dragging)
        return;
    dragging = false;
    if (GetFrame()->GetMouseCapture() == this)
        GetFrame()->ReleaseMouseCapture();
    releaseController();
    postUndoEvent();
}

bool ParamControl::isDragging() const
{
    return dragging;
}

Rect ParamControl::editRect() const
{
    return Rect(0, GetWidth() - 1, 0, GetHeight() - 1);
}

void ParamControl::slotEditDialog()
{
    if (!controller || !GetFrame())
        return;
    Rect const r = editRect();
    Point const global = GetGlobalPos();
    int const width = std::max(60, r.Width());
    Point const centre(global.x + r.left + width / 2, global.y + r.top + r.Height() / 2);
    String text = formatValue(GetValue());
    if (text == "-inf")
        text = String("%1").Arg(GetValue());
    std::vector<char> const filter = {'0', '1', '2', '3', '4', '5', '6', '7',
                                      '8', '9', '.', '-', '+', 'e', 'E', ' '};
    if (Native::PlatformSupportFactory::ExecuteInlineEdit(GetFrame(), centre, text, width, filter,
                                                          false, 1))
        handleUserEdit(text);
}

// ---- input

bool ParamControl::onKeyPress(unsigned int keyCode, unsigned int flags, bool)
{
    if (!IsEnabledTo() || !controller)
        return false;
    if ((flags & (FlagControl | FlagCommand)) && (keyCode == 'C' || keyCode == 'V'))
    {
        if (keyCode == 'C')
            CopyValue();
        else
            PasteValue();
        return true;
    }
    int const span = std::abs(positionRange.maximum - positionRange.minimum);
    int const page = std::max(1, span / 10);
    // Up and right always raise the value, whichever way the positions run.
    int const up = positionRange.maximum >= positionRange.minimum ? 1 : -1;
    switch (keyCode)
    {
    case KeyCode::UpArrow:
    case KeyCode::RightArrow:
        setUserPosition(position + up);
        break;
    case KeyCode::DownArrow:
    case KeyCode::LeftArrow:
        setUserPosition(position - up);
        break;
    case KeyCode::PageUp:
        setUserPosition(position + up * page);
        break;
    case KeyCode::PageDown:
        setUserPosition(position - up * page);
        break;
    case KeyCode::Home:
        setUserPosition(positionRange.minimum);
        break;
    case KeyCode::End:
        setUserPosition(positionRange.maximum);
        break;
    case KeyCode::Enter:
    case KeyCode::Return:
    case F2Key:
        slotEditDialog();
        return true;
    default:
        return false;
    }
    postUndoEvent();
    return true;
}

bool ParamControl::onMouseWheel(Point const&, int delta, unsigned int)
{
    if (!IsEnabledTo() || !controller)
        return false;
    // Whole notches move at once; parts of one (from smooth wheels) add up.
    wheelRemainder += delta / 120.0f;
    int const notches = static_cast<int>(wheelRemainder);
    wheelRemainder -= static_cast<float>(notches);
    if (notches != 0)
    {
        int const up = positionRange.maximum >= positionRange.minimum ? 1 : -1;
        setUserPosition(position + up * notches);
    }
    return true;
}

bool ParamControl::onMouseDoubleClick(Point const&, unsigned int)
{
    if (!IsEnabledTo())
        return false;
    endDrag();
    slotEditDialog();
    return true;
}

bool ParamControl::onMouseRightPress(Point const& p, unsigned int)
{
    if (!IsEnabledTo() || !controller || !GetFrame() || !GetFrame()->GetHostWindow())
        return false;
    endDrag();
    SetFocus();
    String const pasted = Util::Clipboard::GetString(nullptr, 0);
    bool const canPaste = !pasted.IsNull() && stringToValue(pasted).present;
    Native::PopupMenu menu;
    menu.AddItem(MenuCopy, "Copy Value");
    menu.AddItem(MenuPaste, "Paste Value", canPaste);
    menu.AddSeparator();
    menu.AddItem(MenuEdit, "Edit Value...");
    menu.AddItem(MenuReset, "Reset to Default", GetValue() != controller->GetDefault());
    Point const screen = GetFrame()->GetHostWindow()->GetScreenPos() + GetGlobalPos() + p;
    slotMenuItemSelected(menu.Show(screen));
    return true;
}

void ParamControl::slotMenuItemSelected(int id)
{
    switch (id)
    {
    case MenuCopy:
        CopyValue();
        break;
    case MenuPaste:
        PasteValue();
        break;
    case MenuEdit:
        slotEditDialog();
        break;
    case MenuReset:
        handleUserReset();
        break;
    default:
        break;
    }
}

bool ParamControl::ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface*,
                                    TestAutomation::RPCReplyInterface* reply)
{
    if (request != "GetInfo" || !reply)
        return false;
    value_range<float> const range = GetValueRange();
    reply->SetValue("value", String("%1").Arg(GetValue()).CStr());
    reply->SetValue("min", String("%1").Arg(range.minimum).CStr());
    reply->SetValue("max", String("%1").Arg(range.maximum).CStr());
    if (controller)
        reply->SetValue("default", String("%1").Arg(controller->GetDefault()).CStr());
    reply->SetValue("position", String("%1").Arg(position).CStr());
    reply->SetValue("label", GetLabel().CStr());
    reply->SetValue("text", GetReadoutText().CStr());
    reply->SetValue("unit", GetUnits().CStr());
    reply->SetValue("role", GetAccessibilityRole().CStr());
    return true;
}

// ---- drawing

void ParamControl::drawFocusRing(DrawContext* context, Rect const& r) const
{
    if (IsFocused())
        context->DrawRoundedBoxOutline(r, 3, 2, FocusColor, GetEffectiveAlpha());
}

void ParamControl::fillPath(AGGInlineRenderer& renderer, agg::path_storage& path,
                            unsigned int color, unsigned char alpha)
{
    if (!renderer.IsValid())
        return;
    Point const t = renderer.GetTranslation();
    agg::trans_affine shift = agg::trans_affine_translation(t.x, t.y);
    agg::conv_transform<agg::path_storage> moved(path, shift);
    renderer.GetRasterizer().reset();
    renderer.GetRasterizer().add_path(moved);
    unsigned int const a = ((color >> 24) * alpha) / 255;
    renderer.GetSolidRenderer().color(
        agg::rgba8((color >> 16) & 0xFF, (color >> 8) & 0xFF, color & 0xFF, a));
    agg::render_scanlines(renderer.GetRasterizer(), renderer.GetScanline(),
                          renderer.GetSolidRenderer());
}

} // namespace UI

#include "TvBase/Controller/EnumToBool.h"

namespace Controller
{

EnumToBool::EnumToBool(EnumParam* source, unsigned int trueValue,
                       checked_value<unsigned int> falseValue)
    : source(source), trueValue(trueValue), falseValue(falseValue)
{
    // Every change of the source is a change of this view for its listeners, even when the
    // on/off result stays the same: a radio group repaints all its buttons from one signal.
    if (source)
        source->valueChanged.Connect(&Param<bool>::emitChanged, static_cast<Param<bool>*>(this));
}

void EnumToBool::set(bool const& on)
{
    if (!source)
        return;
    if (on)
        source->SetWithGesture(trueValue);
    else if (falseValue.IsPresent())
        source->SetWithGesture(falseValue.Get());
}

bool EnumToBool::get() const
{
    return source && source->get() == trueValue;
}

bool EnumToBool::GetDefault() const
{
    return source && source->GetDefault() == trueValue;
}

void EnumToBool::grab()
{
    if (!source)
        return;
    source->SetGrabbed(true);
    source->grab();
    grabHandle.reset(new GrabbedParamHandle<unsigned int>(source));
}

void EnumToBool::release()
{
    grabHandle.reset();
}

} // namespace Controller

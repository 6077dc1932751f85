#pragma once

#include "TvBase/Controller/BoolParam.h"
#include "TvBase/Controller/EnumParam.h"

#include <boost/shared_ptr.hpp>

namespace Controller
{

/// An on/off view of one value of an enumeration, as a radio button or a check box sees it:
/// on while the source holds `trueValue`. Turning it on sets the source to `trueValue`; turning
/// it off sets `falseValue` when there is one and otherwise does nothing, so a radio-like view
/// can only be turned on. The view emits `valueChanged` at every change of the source, even when
/// its own on/off result stays the same. The source is not owned and must outlive the view.
class EnumToBool : public BoolParam
{
public:
    EnumToBool(EnumParam* source, unsigned int trueValue,
               checked_value<unsigned int> falseValue = checked_value<unsigned int>());

    /// Writes to the source inside a gesture unless the source has one open.
    void set(bool const& on) override;
    /// True while the source holds `trueValue`.
    bool get() const override;
    /// True when the source's default is `trueValue`.
    bool GetDefault() const override;

    /// Opens a gesture on the source: sets its grabbed flag and calls its `grab`.
    void grab() override;
    /// Closes the gesture opened by `grab`: the source's `release`, and its flag cleared.
    /// Nothing happens when no gesture was opened here.
    void release() override;

    EnumParam* GetSource() const { return source; }

private:
    EnumParam* source;
    unsigned int trueValue;
    checked_value<unsigned int> falseValue;
    boost::shared_ptr<GrabbedParamHandle<unsigned int>> grabHandle;
};

} // namespace Controller

#pragma once

#include "Canvas/UI/Rect.h"

#include <boost/shared_ptr.hpp>

/// The host's color space; opaque here, and may be null where the host has none.
struct CGColorSpace;

namespace UI
{
namespace Native
{
class DIBSection;

/// Copies `rect` of `section` to the native window `nativeHandle` at `destination`, shifted by
/// `nativeWindowOffset`, leaving out `nativeClipExclude`. This is the one way pixels leave a
/// draw context; the platform layer's `PlatformSupportFactory::DrawDIBSection` has this form.
using DrawDIBSectionFunction = void (*)(boost::shared_ptr<DIBSection> const& section,
                                        void* nativeHandle, CGColorSpace* colorSpace,
                                        UI::Point const& nativeWindowOffset, UI::Rect const& rect,
                                        UI::Point const& destination,
                                        UI::Rect const& nativeClipExclude);

/// Installs the host's presenter, which `UI::MemoryDrawContext::NativeDraw` calls. The drawing
/// layer sits below the host layer, so the host plugs itself in at start-up, on the main thread,
/// before the first paint. Null (the default) makes `NativeDraw` present nothing.
void SetDrawDIBSectionFunction(DrawDIBSectionFunction function);
DrawDIBSectionFunction GetDrawDIBSectionFunction();

} // namespace Native
} // namespace UI

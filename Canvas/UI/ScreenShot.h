#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

namespace UI
{
class DIBits;
class Frame;

/// The part `rect` (frame coordinates, cut to the bitmap) of what the frame last painted, as
/// opaque bits; null when the frame has no memory bitmap or nothing is left of the rectangle.
boost::shared_ptr<UI::DIBits> ScreenShotFromRect(UI::Frame* frame, UI::Rect const& rect);

/// Asks the user where to save a screenshot of `frame` (the folder and name of the last one
/// offered, kept in the "com.tavorin" settings "LastScreenShotFolder" and
/// "LastScreenShotFilename"), confirms overwriting an existing file, writes the PNG and stores
/// both settings. False when cancelled, refused, or the file can't be written.
bool ScreenShotToFile(UI::Frame* frame);

/// Puts a screenshot of `frame` on the clipboard; false when the host can't.
bool ScreenShotToClipboard(UI::Frame* frame);

/// Writes `bits` to `path` as an optimised PNG (".png" is added when the name lacks it), with
/// alpha when the bits have it. `progress` and `context` follow `UI::PNG::WritePngFile`, as does
/// `optimise`. False when the bits are empty or the file can't be written.
bool ScreenShotFromDIBitsToFile(boost::shared_ptr<UI::DIBits> const& bits, FilePath const& path,
                                bool (*progress)(void*, float), void* context, bool optimise);

/// The color shown at `screenPos`: from the bitmap of the program's own frame when one of its
/// windows lies there, else from the installed screenshot host, else from the desktop itself
/// (`UI::Native::ReadDesktopColor`); not present where none can read it.
checked_value<unsigned int> ScreenShotColorAtScreenPos(UI::Point const& screenPos);

} // namespace UI

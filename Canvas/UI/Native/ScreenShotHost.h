#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

namespace UI
{
class DIBits;

namespace Native
{

/// The host services that screenshots need beyond the frame's own bitmap: the save dialog, a
/// yes/no question, an image on the clipboard and a pixel of the screen. The host layer installs
/// one with `SetScreenShotHost`; without one the operations that need it do nothing.
class ScreenShotHost
{
public:
    virtual ~ScreenShotHost() = default;

    /// Asks for a file to save to; not present when the user cancels. `folder` and `filename`
    /// preselect; `filterName` ("Screenshots (*.png)") describes `filterPattern` ("*.png").
    virtual checked_value<FilePath> AskSaveFile(String const& title, String const& folder,
                                                String const& filename, String const& filterName,
                                                String const& filterPattern,
                                                String const& extension) = 0;
    /// Asks `question` under `caption`; true for yes.
    virtual bool AskYesNo(String const& question, String const& caption) = 0;
    /// Puts the image on the clipboard; false when the host can't.
    virtual bool SetClipboardImage(UI::DIBits const& bits) = 0;
    /// The color 0xAARRGGBB shown at `screenPos`; not present where it can't be read.
    virtual checked_value<unsigned int> GetScreenColor(UI::Point const& screenPos) = 0;
};

/// Installs the host's services (not owned; null removes them).
void SetScreenShotHost(ScreenShotHost* host);
ScreenShotHost* GetScreenShotHost();

} // namespace Native
} // namespace UI

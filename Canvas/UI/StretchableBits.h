#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

namespace UI
{
class DIBits;

/// A skin image stretched by its nine patches: the four corners keep their size, the top and
/// bottom edges stretch across, the left and right edges stretch down, the middle both ways.
/// The source comes from the shared PNG cache; the stretched copy is the object's own.
class StretchableBits
{
public:
    /// Loads `name` through `UI::Media::GetPNGBits` (cached, no gamma). When the edges fit the
    /// image (left + right within its width, top + bottom within its height) the object starts
    /// at the image's own size; otherwise, and when the image is missing, it has no size.
    StretchableBits(String const& name, int left, int right, int top, int bottom);
    StretchableBits(StretchableBits const&) = delete;
    StretchableBits& operator=(StretchableBits const&) = delete;

    /// Stretches to `width` by `height`; nothing happens when the size is unchanged. Sizes below
    /// the edges overlap the parts in the order corners, edges, middle, later over earlier.
    void Resize(int width, int height);
    /// `Resize` keeping the current height (0 when there is no size yet).
    void SetWidth(int width);

    /// The stretched bits; null when the image is missing.
    UI::DIBits* GetBits() const { return resized.get(); }
    boost::shared_ptr<UI::DIBits> const& GetSharedBits() const { return resized; }
    /// (0, 0) to the current size; the unset rectangle without a size.
    UI::Rect GetRect() const;
    checked_value<UI::Size> const& GetSize() const { return size; }
    int GetWidth() const { return size.present ? size.value.width : 0; }
    int GetHeight() const { return size.present ? size.value.height : 0; }
    /// The source image's size; (0, 0) when it is missing.
    UI::Size GetOriginalSize() const;
    String const& GetName() const { return name; }

    /// Decodes the source again at `gamma` and stretches it anew at the current size.
    void ApplyGammaCorrection(float gamma);
    /// Tints the stretched bits (see `UI::DIBits::ApplyColorOverlay`); a later stretch starts
    /// from the untinted source again.
    void ApplyColorOverlay(unsigned int const& color, bool useAlpha);

private:
    void updateResizedBits(int width, int height);

    boost::shared_ptr<UI::DIBits> source;
    boost::shared_ptr<UI::DIBits> resized;
    String name;
    int left;
    int right;
    int top;
    int bottom;
    bool edgesFit = false;
    checked_value<UI::Size> size;
};

} // namespace UI

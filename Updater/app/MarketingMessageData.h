#pragma once

#include "TvBase/Util/String.h"

#include <boost/shared_ptr.hpp>

namespace UI
{
class DIBits;
}

namespace Updater
{

/// What the marketing worker scraped: the banner's picture and where a click on it leads.
/// `width` and `height` are kept as the page states them and never used: the banner takes its
/// size from the bitmap.
struct MarketingMessageData
{
    /// The address the banner opens.
    String link;
    /// The tool tip; may be empty.
    String altText;
    /// The "height" attribute, or 0.
    int height = 0;
    /// The "width" attribute, or 0.
    int width = 0;
    /// The decoded picture; never null in a record the worker hands out.
    boost::shared_ptr<UI::DIBits> image;
};

} // namespace Updater

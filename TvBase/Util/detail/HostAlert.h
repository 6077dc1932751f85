#pragma once

#include "TvBase/Util/String.h"

namespace Util
{
namespace detail
{

/// Shows `text` in a modal host alert titled `title` and waits until the user closes it. When
/// no alert can be shown (no display), the text goes to the standard error stream instead.
void ShowHostAlert(String const& title, String const& text);

} // namespace detail
} // namespace Util

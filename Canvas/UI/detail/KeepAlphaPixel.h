#pragma once

namespace UI
{
namespace detail
{

/// The alpha-keeping composite of one pixel: `s` over `d`, neither premultiplied; the result's
/// alpha is the union of both coverages. Source alpha 255 takes `s`, 0 keeps `d`.
unsigned int KeepAlphaPixel(unsigned int s, unsigned int d);

} // namespace detail
} // namespace UI

#pragma once

#include "TvBase/Util/checked_value.h"

namespace UI
{

/// The taper that turns a control's position into a parameter value.
enum SliderScaleType
{
    ScaleLinear = 0,
    ScaleLog = 1,
    ScaleRatioLinear = 2,
    ScaleRatioLog = 3,
    ScaleSqrt = 4,
    ScaleCbrt = 5,
    ScaleQrrt = 6,
    ScaleMirrorLog = 7
};

// Every taper first clamps the position into `positions`; an empty position range (minimum
// equal to maximum) gives the low end of `values`. Both ends of every taper are exact: the
// bottom gives `values.minimum` and the top `values.maximum`. Each comes with `unsigned int`
// and `int` positions, which differ in nothing else.

/// Straight from low to high.
float LinearSliderToValue(unsigned int position, value_range<unsigned int> const& positions,
                          value_range<float> const& values);
float LinearSliderToValue(int position, value_range<int> const& positions,
                          value_range<float> const& values);
/// Even steps of log10 between the ends. A range that is not all positive is shifted by
/// `(high - low) / 10 - low` first, so that 0 and negative ranges taper too.
float LogSliderToValue(unsigned int position, value_range<unsigned int> const& positions,
                       value_range<float> const& values);
float LogSliderToValue(int position, value_range<int> const& positions,
                       value_range<float> const& values);
/// A ratio (a gain): 1.0 exactly at `midpointPercent` of the positions (rounded half away from
/// zero), straight up to high above it, and below it the reciprocal runs straight from 1/low to
/// 1. A low end of 0 or below has no reciprocal: there the lower half runs straight to 1.
float RatioLinearSliderToValue(unsigned int position, float midpointPercent,
                               value_range<unsigned int> const& positions,
                               value_range<float> const& values);
float RatioLinearSliderToValue(int position, float midpointPercent,
                               value_range<int> const& positions, value_range<float> const& values);
/// As the ratio-linear taper with log steps in both halves.
float RatioLogSliderToValue(unsigned int position, float midpointPercent,
                            value_range<unsigned int> const& positions,
                            value_range<float> const& values);
float RatioLogSliderToValue(int position, float midpointPercent, value_range<int> const& positions,
                            value_range<float> const& values);
/// Straight between the signed square roots of the ends, squared back with the sign kept.
float SqrtSliderToValue(unsigned int position, value_range<unsigned int> const& positions,
                        value_range<float> const& values);
float SqrtSliderToValue(int position, value_range<int> const& positions,
                        value_range<float> const& values);
/// Straight between the cube roots (power 0.33333334) of the ends, cubed back.
float CbrtSliderToValue(unsigned int position, value_range<unsigned int> const& positions,
                        value_range<float> const& values);
float CbrtSliderToValue(int position, value_range<int> const& positions,
                        value_range<float> const& values);
/// Straight between the signed fourth roots of the ends, raised to the fourth power back, so
/// that it never gives a negative value inside the range.
float QrrtSliderToValue(unsigned int position, value_range<unsigned int> const& positions,
                        value_range<float> const& values);
float QrrtSliderToValue(int position, value_range<int> const& positions,
                        value_range<float> const& values);
/// A log curve mirrored across the range: the middle position gives the middle value, and each
/// half runs outwards from it by the log taper, so that the middle of a bipolar range (a pan, a
/// boost or cut) has the finest steps.
float MirrorLogSliderToValue(unsigned int position, value_range<unsigned int> const& positions,
                             value_range<float> const& values);
float MirrorLogSliderToValue(int position, value_range<int> const& positions,
                             value_range<float> const& values);

/// The taper `type` (an unknown one is linear); `midpointPercent` serves the ratio tapers.
float ScaleSliderToValue(SliderScaleType type, unsigned int position, float midpointPercent,
                         value_range<unsigned int> const& positions,
                         value_range<float> const& values);
float ScaleSliderToValue(SliderScaleType type, int position, float midpointPercent,
                         value_range<int> const& positions, value_range<float> const& values);

/// The inverse of `ScaleSliderToValue`: the position whose value lies nearest `value`, found by
/// a search of the same taper (tapers are monotonic). NaN gives the bottom position.
int ScaleValueToSlider(SliderScaleType type, float value, float midpointPercent,
                       value_range<int> const& positions, value_range<float> const& values);

} // namespace UI

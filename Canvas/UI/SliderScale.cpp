#include "Canvas/UI/SliderScale.h"

#include <cmath>

namespace UI
{

namespace
{

/// The position's fraction of its range after clamping; unset for an empty range.
template <typename T>
checked_value<double> fraction(T position, value_range<T> const& positions)
{
    if (positions.minimum == positions.maximum)
        return {};
    double const lo = static_cast<double>(positions.minimum);
    double const hi = static_cast<double>(positions.maximum);
    double p = static_cast<double>(position);
    // A reversed range counts from its minimum all the same.
    if (lo < hi)
        p = p < lo ? lo : (p > hi ? hi : p);
    else
        p = p > lo ? lo : (p < hi ? hi : p);
    return (p - lo) / (hi - lo);
}

double linear(double p, double low, double high)
{
    if (p <= 0.0)
        return low;
    if (p >= 1.0)
        return high;
    return low + (high - low) * p;
}

double safeLog10(double x)
{
    // Below this the logarithm is taken as a very large negative number, so that a range
    // touching 0 still has a bottom.
    return std::fabs(x) < 1e-36 ? -1e35 : std::log10(std::fabs(x));
}

double logTaper(double p, double low, double high)
{
    if (p <= 0.0)
        return low;
    if (p >= 1.0)
        return high;
    double x1 = low;
    double x2 = high;
    if (!(low > 0.0))
    {
        double const offset = (high - low) / 10.0 - low;
        x1 = low + offset;
        x2 = high + offset;
    }
    if (x1 == x2)
        return low;
    double const l1 = safeLog10(x1);
    double const e = l1 + (safeLog10(x2) - l1) * p;
    return low + (high - low) * (std::pow(10.0, e) - x1) / (x2 - x1);
}

double signedRoot(double x, double r)
{
    return x < 0.0 ? -std::pow(-x, r) : std::pow(x, r);
}

enum Root
{
    Square,
    Cube,
    Fourth
};

double rootTaper(double p, double low, double high, Root root)
{
    static double const powers[] = {0.5, static_cast<double>(0.33333334f), 0.25};
    double const r = powers[root];
    double const sl = signedRoot(low, r);
    double const t = sl + (signedRoot(high, r) - sl) * p;
    switch (root)
    {
    case Square:
        // The square keeps the sign of the root, so a negative range stays negative.
        if (p <= 0.0)
            return low;
        if (p >= 1.0)
            return high;
        return t < 0.0 ? -(t * t) : t * t;
    case Cube:
        return t * t * t;
    case Fourth:
        // Exact at an end only where the end could come back from its fourth root.
        if (p <= 0.0 && low >= 0.0)
            return low;
        if (p >= 1.0 && high >= 0.0)
            return high;
        return t * t * t * t;
    }
    return t;
}

template <typename T>
double ratioTaper(T position, float midpointPercent, value_range<T> const& positions,
                  value_range<float> const& values, bool log)
{
    double const lo = static_cast<double>(positions.minimum);
    double const hi = static_cast<double>(positions.maximum);
    checked_value<double> const p = fraction(position, positions);
    if (!p)
        return values.minimum;
    double const span = hi - lo;
    double const mid = lo + std::round(span * static_cast<double>(midpointPercent) / 100.0);
    double const at = lo + *p * span;
    double const low = values.minimum;
    double const high = values.maximum;
    if (at == mid)
        return 1.0;
    if ((at - mid) * span > 0.0)
    {
        double const q = (at - mid) / (hi - mid);
        return log ? logTaper(q, 1.0, high) : linear(q, 1.0, high);
    }
    double const q = (at - lo) / (mid - lo);
    if (!(low > 0.0))
        return log ? logTaper(q, low, 1.0) : linear(q, low, 1.0);
    if (q <= 0.0)
        return low;
    double const reciprocal = log ? logTaper(q, 1.0 / low, 1.0) : linear(q, 1.0 / low, 1.0);
    return 1.0 / reciprocal;
}

double mirrorLogTaper(double p, double low, double high)
{
    if (p <= 0.0)
        return low;
    if (p >= 1.0)
        return high;
    double const centre = (low + high) / 2.0;
    if (p == 0.5)
        return centre;
    double const u = 2.0 * p - 1.0;
    double const away = logTaper(std::fabs(u), centre, high) - centre;
    return u > 0.0 ? centre + away : centre - away;
}

template <typename T>
float scale(SliderScaleType type, T position, float midpointPercent,
            value_range<T> const& positions, value_range<float> const& values)
{
    if (type == ScaleRatioLinear || type == ScaleRatioLog)
        return static_cast<float>(
            ratioTaper(position, midpointPercent, positions, values, type == ScaleRatioLog));
    checked_value<double> const p = fraction(position, positions);
    if (!p)
        return values.minimum;
    double const low = values.minimum;
    double const high = values.maximum;
    switch (type)
    {
    case ScaleLog:
        return static_cast<float>(logTaper(*p, low, high));
    case ScaleSqrt:
        return static_cast<float>(rootTaper(*p, low, high, Square));
    case ScaleCbrt:
        return static_cast<float>(rootTaper(*p, low, high, Cube));
    case ScaleQrrt:
        return static_cast<float>(rootTaper(*p, low, high, Fourth));
    case ScaleMirrorLog:
        return static_cast<float>(mirrorLogTaper(*p, low, high));
    default:
        return static_cast<float>(linear(*p, low, high));
    }
}

} // namespace

#define TV_TAPER(Name, Type)                                                                       \
    float Name(unsigned int position, value_range<unsigned int> const& positions,                  \
               value_range<float> const& values)                                                   \
    {                                                                                              \
        return scale(Type, position, 50.0f, positions, values);                                    \
    }                                                                                              \
    float Name(int position, value_range<int> const& positions, value_range<float> const& values)  \
    {                                                                                              \
        return scale(Type, position, 50.0f, positions, values);                                    \
    }

TV_TAPER(LinearSliderToValue, ScaleLinear)
TV_TAPER(LogSliderToValue, ScaleLog)
TV_TAPER(SqrtSliderToValue, ScaleSqrt)
TV_TAPER(CbrtSliderToValue, ScaleCbrt)
TV_TAPER(QrrtSliderToValue, ScaleQrrt)
TV_TAPER(MirrorLogSliderToValue, ScaleMirrorLog)
#undef TV_TAPER

float RatioLinearSliderToValue(unsigned int position, float midpointPercent,
                               value_range<unsigned int> const& positions,
                               value_range<float> const& values)
{
    return scale(ScaleRatioLinear, position, midpointPercent, positions, values);
}

float RatioLinearSliderToValue(int position, float midpointPercent,
                               value_range<int> const& positions, value_range<float> const& values)
{
    return scale(ScaleRatioLinear, position, midpointPercent, positions, values);
}

float RatioLogSliderToValue(unsigned int position, float midpointPercent,
                            value_range<unsigned int> const& positions,
                            value_range<float> const& values)
{
    return scale(ScaleRatioLog, position, midpointPercent, positions, values);
}

float RatioLogSliderToValue(int position, float midpointPercent, value_range<int> const& positions,
                            value_range<float> const& values)
{
    return scale(ScaleRatioLog, position, midpointPercent, positions, values);
}

float ScaleSliderToValue(SliderScaleType type, unsigned int position, float midpointPercent,
                         value_range<unsigned int> const& positions,
                         value_range<float> const& values)
{
    return scale(type, position, midpointPercent, positions, values);
}

float ScaleSliderToValue(SliderScaleType type, int position, float midpointPercent,
                         value_range<int> const& positions, value_range<float> const& values)
{
    return scale(type, position, midpointPercent, positions, values);
}

int ScaleValueToSlider(SliderScaleType type, float value, float midpointPercent,
                       value_range<int> const& positions, value_range<float> const& values)
{
    int lo = positions.minimum < positions.maximum ? positions.minimum : positions.maximum;
    int hi = positions.minimum < positions.maximum ? positions.maximum : positions.minimum;
    if (value != value || lo == hi)
        return positions.minimum;
    auto at = [&](int position)
    { return scale(type, position, midpointPercent, positions, values); };
    bool const rising = at(lo) <= at(hi);
    // The first position whose value has reached `value` in the taper's direction.
    int first = lo;
    int last = hi;
    while (first < last)
    {
        int const middle = first + (last - first) / 2;
        float const v = at(middle);
        if (rising ? v < value : v > value)
            first = middle + 1;
        else
            last = middle;
    }
    if (first > lo && std::fabs(at(first - 1) - value) <= std::fabs(at(first) - value))
        return first - 1;
    return first;
}

} // namespace UI

// The tapers from position to value: ends, middles, ranges through and below zero, clamping,
// an empty position range, both position types, and the search that inverts them.

#include "Canvas/UI/SliderScale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace
{

using UI::SliderScaleType;

struct Case
{
    SliderScaleType type;
    int position;
    int first, last;
    float low, high;
    double expected;
    /// 0 asks for the exact float.
    double tolerance;
};

double const Root11 = std::sqrt(11.0);

// clang-format off
Case const Cases[] = {
    // Linear: ends, middle, clamping, reversed values, empty position range.
    {UI::ScaleLinear, 0, 0, 100, -10.0f, 10.0f, -10.0, 0},
    {UI::ScaleLinear, 50, 0, 100, -10.0f, 10.0f, 0.0, 0},
    {UI::ScaleLinear, 100, 0, 100, -10.0f, 10.0f, 10.0, 0},
    {UI::ScaleLinear, 25, 0, 100, 0.0f, 8.0f, 2.0, 0},
    {UI::ScaleLinear, -7, 0, 100, -10.0f, 10.0f, -10.0, 0},
    {UI::ScaleLinear, 170, 0, 100, -10.0f, 10.0f, 10.0, 0},
    {UI::ScaleLinear, 5, 5, 5, 3.0f, 9.0f, 3.0, 0},
    {UI::ScaleLinear, 10, 0, 20, 10.0f, 0.0f, 5.0, 0},
    // Log: a positive range in decades; low 0 and a negative range through the offset.
    {UI::ScaleLog, 1, 0, 3, 1.0f, 1000.0f, 10.0, 1e-4},
    {UI::ScaleLog, 2, 0, 3, 1.0f, 1000.0f, 100.0, 1e-3},
    {UI::ScaleLog, 0, 0, 3, 1.0f, 1000.0f, 1.0, 0},
    {UI::ScaleLog, 3, 0, 3, 1.0f, 1000.0f, 1000.0, 0},
    {UI::ScaleLog, 0, 0, 100, 0.0f, 10.0f, 0.0, 0},
    {UI::ScaleLog, 50, 0, 100, 0.0f, 10.0f, Root11 - 1.0, 1e-5},
    {UI::ScaleLog, 100, 0, 100, 0.0f, 10.0f, 10.0, 0},
    {UI::ScaleLog, 50, 0, 100, -20.0f, -10.0f, -20.0 + (Root11 - 1.0), 1e-5},
    {UI::ScaleLog, -3, 0, 100, -20.0f, -10.0f, -20.0, 0},
    {UI::ScaleLog, 4, 4, 4, 2.0f, 9.0f, 2.0, 0},
    {UI::ScaleLog, 50, 0, 100, 5.0f, 5.0f, 5.0, 0},
    // Ratio linear: 1 exactly at the midpoint, reciprocal below it.
    {UI::ScaleRatioLinear, 50, 0, 100, 0.25f, 4.0f, 1.0, 0},
    {UI::ScaleRatioLinear, 75, 0, 100, 0.25f, 4.0f, 2.5, 0},
    {UI::ScaleRatioLinear, 100, 0, 100, 0.25f, 4.0f, 4.0, 0},
    {UI::ScaleRatioLinear, 25, 0, 100, 0.25f, 4.0f, 0.4, 1e-6},
    {UI::ScaleRatioLinear, 0, 0, 100, 0.25f, 4.0f, 0.25, 0},
    {UI::ScaleRatioLinear, 2, 0, 3, 0.5f, 3.0f, 1.0, 0},   // 1.5 rounds away from zero to 2
    {UI::ScaleRatioLinear, 1, 0, 3, 0.5f, 3.0f, 1.0 / 1.5, 1e-6},
    {UI::ScaleRatioLinear, 25, 0, 100, 0.0f, 3.0f, 0.5, 0}, // no reciprocal of 0: straight
    // Ratio log.
    {UI::ScaleRatioLog, 50, 0, 100, 0.1f, 10.0f, 1.0, 0},
    {UI::ScaleRatioLog, 75, 0, 100, 0.1f, 10.0f, std::sqrt(10.0), 1e-5},
    {UI::ScaleRatioLog, 25, 0, 100, 0.1f, 10.0f, 1.0 / std::sqrt(10.0), 1e-6},
    {UI::ScaleRatioLog, 0, 0, 100, 0.1f, 10.0f, 0.1, 0},
    {UI::ScaleRatioLog, 100, 0, 100, 0.1f, 10.0f, 10.0, 0},
    // Roots: raised back by their power; the square keeps the sign, the fourth power cannot.
    {UI::ScaleSqrt, 50, 0, 100, 0.0f, 100.0f, 25.0, 0},
    {UI::ScaleSqrt, 50, 0, 100, -100.0f, 0.0f, -25.0, 0},
    {UI::ScaleSqrt, 50, 0, 100, -100.0f, 100.0f, 0.0, 0},
    {UI::ScaleSqrt, 0, 0, 100, -100.0f, 100.0f, -100.0, 0},
    {UI::ScaleCbrt, 50, 0, 100, -8.0f, 8.0f, 0.0, 0},
    {UI::ScaleCbrt, 50, 0, 100, 0.0f, 8.0f, 1.0, 1e-6},
    {UI::ScaleCbrt, 100, 0, 100, 0.0f, 8.0f, 8.0, 1e-5},
    {UI::ScaleQrrt, 50, 0, 100, 0.0f, 16.0f, 1.0, 0},
    {UI::ScaleQrrt, 100, 0, 100, 0.0f, 16.0f, 16.0, 0},
    {UI::ScaleQrrt, 0, 0, 100, -16.0f, -1.0f, 16.0, 1e-5},
    {UI::ScaleQrrt, 100, 0, 100, -16.0f, -1.0f, 1.0, 1e-6},
    // Mirror log: the middle value in the middle, ends exact.
    {UI::ScaleMirrorLog, 50, 0, 100, -24.0f, 24.0f, 0.0, 0},
    {UI::ScaleMirrorLog, 0, 0, 100, -24.0f, 24.0f, -24.0, 0},
    {UI::ScaleMirrorLog, 100, 0, 100, -24.0f, 24.0f, 24.0, 0},
    {UI::ScaleMirrorLog, 75, 0, 100, -24.0f, 24.0f, 24.0 * (std::sqrt(11.0) - 1.0) / 10.0, 1e-5},
};
// clang-format on

TEST(SliderScale, TapersGiveTheirValues)
{
    for (Case const& c : Cases)
    {
        value_range<float> const values(c.low, c.high);
        float const v = UI::ScaleSliderToValue(c.type, c.position, 50.0f,
                                               value_range<int>(c.first, c.last), values);
        if (c.tolerance == 0)
            EXPECT_EQ(static_cast<float>(c.expected), v)
                << "type " << c.type << " position " << c.position;
        else
            EXPECT_NEAR(c.expected, v, c.tolerance * std::max(1.0, std::fabs(c.expected)))
                << "type " << c.type << " position " << c.position;
        // The unsigned form agrees wherever the positions are not negative.
        if (c.position >= 0 && c.first >= 0)
        {
            float const u = UI::ScaleSliderToValue(
                c.type, static_cast<unsigned int>(c.position), 50.0f,
                value_range<unsigned int>(unsigned(c.first), unsigned(c.last)), values);
            EXPECT_EQ(v, u) << "type " << c.type << " position " << c.position;
        }
    }
}

TEST(SliderScale, NamedTapersAreTheScaleTypes)
{
    value_range<int> const positions(0, 64);
    value_range<unsigned int> const upositions(0, 64);
    value_range<float> const values(0.5f, 20.0f);
    for (int p = 0; p <= 64; p += 8)
    {
        unsigned int const u = static_cast<unsigned int>(p);
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleLinear, p, 50.0f, positions, values),
                  UI::LinearSliderToValue(u, upositions, values));
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleLog, p, 50.0f, positions, values),
                  UI::LogSliderToValue(p, positions, values));
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleRatioLinear, p, 25.0f, positions, values),
                  UI::RatioLinearSliderToValue(u, 25.0f, upositions, values));
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleRatioLog, p, 25.0f, positions, values),
                  UI::RatioLogSliderToValue(p, 25.0f, positions, values));
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleSqrt, p, 50.0f, positions, values),
                  UI::SqrtSliderToValue(p, positions, values));
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleCbrt, p, 50.0f, positions, values),
                  UI::CbrtSliderToValue(u, upositions, values));
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleQrrt, p, 50.0f, positions, values),
                  UI::QrrtSliderToValue(p, positions, values));
        EXPECT_EQ(UI::ScaleSliderToValue(UI::ScaleMirrorLog, p, 50.0f, positions, values),
                  UI::MirrorLogSliderToValue(u, upositions, values));
    }
}

TEST(SliderScale, TheSearchInvertsEveryTaperWithinOnePosition)
{
    struct Range
    {
        SliderScaleType type;
        float low, high;
    };
    Range const ranges[] = {
        {UI::ScaleLinear, -10.0f, 10.0f},    {UI::ScaleLog, 20.0f, 20000.0f},
        {UI::ScaleLog, 0.0f, 1.0f},          {UI::ScaleLog, -60.0f, 12.0f},
        {UI::ScaleRatioLinear, 0.25f, 4.0f}, {UI::ScaleRatioLog, 0.01f, 100.0f},
        {UI::ScaleSqrt, 0.0f, 100.0f},       {UI::ScaleCbrt, -27.0f, 27.0f},
        {UI::ScaleQrrt, 0.0f, 256.0f},       {UI::ScaleMirrorLog, -1.0f, 1.0f},
        {UI::ScaleLinear, 10.0f, -10.0f},
    };
    value_range<int> const positions(0, 200);
    for (Range const& r : ranges)
        for (int p = 0; p <= 200; ++p)
        {
            value_range<float> const values(r.low, r.high);
            float const v = UI::ScaleSliderToValue(r.type, p, 50.0f, positions, values);
            int const back = UI::ScaleValueToSlider(r.type, v, 50.0f, positions, values);
            EXPECT_LE(std::abs(back - p), 1) << "type " << r.type << " position " << p;
        }
    // Outside the range the search stops at the ends; NaN gives the bottom.
    value_range<float> const values(0.0f, 1.0f);
    EXPECT_EQ(200, UI::ScaleValueToSlider(UI::ScaleLinear, 5.0f, 50.0f, positions, values));
    EXPECT_EQ(0, UI::ScaleValueToSlider(UI::ScaleLinear, -5.0f, 50.0f, positions, values));
    EXPECT_EQ(0, UI::ScaleValueToSlider(UI::ScaleLog, std::nanf(""), 50.0f, positions, values));
    EXPECT_EQ(7,
              UI::ScaleValueToSlider(UI::ScaleLinear, 0.5f, 50.0f, value_range<int>(7, 7), values));
}

} // namespace

#include "Canvas/UI/SVG/SVG.h"

#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/SVG/Exception.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>

namespace
{

unsigned int const White = 0xFFFFFFFFu;

std::unique_ptr<UI::SVG::SVG> parse(std::string const& body)
{
    std::string const text = "<svg xmlns=\"http://www.w3.org/2000/svg\">" + body + "</svg>";
    return std::unique_ptr<UI::SVG::SVG>(new UI::SVG::SVG(
        reinterpret_cast<unsigned char const*>(text.data()), unsigned(text.size())));
}

// Renders at the icon's own coordinates onto white bits of `size`.
boost::shared_ptr<UI::DIBits> render(UI::SVG::SVG& svg, int w = 20, int h = 20)
{
    boost::shared_ptr<UI::DIBits> bits =
        UI::CreateDIBits(UI::Size(w, h), checked_value<unsigned int>(White));
    UI::AGGInlineRenderer renderer(bits, "Test Renderer");
    EXPECT_TRUE(renderer.IsValid());
    svg.Draw(&renderer);
    return bits;
}

unsigned int at(boost::shared_ptr<UI::DIBits> const& bits, int x, int y)
{
    return bits->GetPixels()[y * bits->GetStride() + x];
}

std::string errorOf(std::string const& body)
{
    return parse(body)->GetError().CStr();
}

} // namespace

TEST(SvgShapes, RectFillsWholePixelsExactly)
{
    auto svg = parse("<rect x='2' y='3' width='5' height='4' fill='#ff0000'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    EXPECT_EQ(svg->path_count(), 1u);
    auto bits = render(*svg);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
        {
            bool const inside = x >= 2 && x < 7 && y >= 3 && y < 7;
            ASSERT_EQ(at(bits, x, y), inside ? 0xFFFF0000u : White) << x << "," << y;
        }
    EXPECT_EQ(svg->GetMinX(), 2.0);
    EXPECT_EQ(svg->GetMinY(), 3.0);
    EXPECT_EQ(svg->GetMaxX(), 7.0);
    EXPECT_EQ(svg->GetMaxY(), 7.0);
}

TEST(SvgShapes, RectOfSizeZeroDrawsNothingAndIsNoError)
{
    auto svg = parse("<rect x='1' y='1' width='0' height='5' fill='red'/>"
                     "<rect x='4' y='4' width='2' height='2' fill='blue'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    EXPECT_EQ(svg->path_count(), 1u);
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 1, 2), White);
    EXPECT_EQ(at(bits, 4, 4), 0xFF0000FFu);
}

TEST(SvgShapes, PolygonPolylineAndLine)
{
    auto svg = parse("<polygon points='0,0 10,0 10,10 0,10' fill='lime'/>"
                     "<polyline points='12 0 19 0 19 7' fill='none' stroke='blue' "
                     "stroke-width='2'/>"
                     "<line x1='0' y1='15' x2='20' y2='15' stroke='black' stroke-width='2'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    EXPECT_EQ(svg->path_count(), 3u);
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 5, 5), 0xFF00FF00u);
    EXPECT_EQ(at(bits, 15, 0), 0xFF0000FFu); // the stroke straddles y = 0
    EXPECT_EQ(at(bits, 15, 4), White);       // an open polyline with fill none
    EXPECT_EQ(at(bits, 10, 14), 0xFF000000u);
    EXPECT_EQ(at(bits, 10, 15), 0xFF000000u);
    EXPECT_EQ(at(bits, 10, 17), White);
}

TEST(SvgShapes, PathCommandsAbsoluteAndRelativeReachTheSamePoints)
{
    // The same 8 by 8 square, once absolute, once relative, once by H and V.
    for (char const* d : {"M 2 2 L 10 2 L 10 10 L 2 10 Z", "m 2 2 l 8 0 l 0 8 l -8 0 z",
                          "M2,2H10V10H2z", "m 2 2 h 8 v 8 h -8 z", "M 2 2 10 2 10 10 2 10 z"})
    {
        auto svg = parse(std::string("<path fill='#00f' d='") + d + "'/>");
        EXPECT_TRUE(svg->GetError().IsNull()) << d;
        auto bits = render(*svg);
        EXPECT_EQ(at(bits, 2, 2), 0xFF0000FFu) << d;
        EXPECT_EQ(at(bits, 9, 9), 0xFF0000FFu) << d;
        EXPECT_EQ(at(bits, 10, 10), White) << d;
        EXPECT_EQ(at(bits, 1, 5), White) << d;
    }
}

TEST(SvgShapes, RelativeMoveAfterCloseStartsFromTheOutlineStart)
{
    // After "z" the pen is back at (2, 2): the second square lies at (12, 2), not (10, 0).
    auto svg = parse("<path fill='black' d='m 2 2 h 4 v 4 h -4 z m 10 0 h 4 v 4 h -4 z'/>");
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 13, 3), 0xFF000000u);
    EXPECT_EQ(at(bits, 11, 1), White);
}

TEST(SvgShapes, InnerOutlinesCutHolesWhicheverWayTheyRun)
{
    for (char const* inner : {"M 5 5 L 15 5 L 15 15 L 5 15 Z", "M 5 5 L 5 15 L 15 15 L 15 5 Z"})
    {
        auto svg = parse(std::string("<path fill='black' d='M 0 0 L 20 0 L 20 20 L 0 20 Z ") +
                         inner + "'/>");
        auto bits = render(*svg);
        EXPECT_EQ(at(bits, 2, 2), 0xFF000000u);
        EXPECT_EQ(at(bits, 10, 10), White) << inner;
    }
}

TEST(SvgShapes, CurvesPassThroughTheirEndsAndBulgeTowardsTheirControls)
{
    // A cubic and a quadratic arch over a filled base, and their smooth continuations.
    auto svg =
        parse("<path fill='black' d='M 0 10 C 0 0 10 0 10 10 S 20 20 20 10 Z'/>"
              "<path fill='red' transform='translate(0 20)' d='M 0 0 Q 5 -20 10 0 T 20 0 Z'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    auto bits = render(*svg, 20, 30);
    EXPECT_EQ(at(bits, 5, 5), 0xFF000000u);   // under the arch of the cubic
    EXPECT_EQ(at(bits, 1, 1), White);         // outside its corner
    EXPECT_EQ(at(bits, 15, 14), 0xFF000000u); // the smooth curve dips the other way
    EXPECT_EQ(at(bits, 5, 17), 0xFFFF0000u);  // quadratic arch over y = 20
    EXPECT_EQ(at(bits, 15, 23), 0xFFFF0000u); // its smooth twin hangs below
}

TEST(SvgAttributes, GroupsPassTheirLookToChildrenAndRestoreIt)
{
    auto svg = parse("<g fill='navy'><rect x='0' y='0' width='5' height='5'/>"
                     "<g style='fill: #808080; fill-opacity: 0.5'>"
                     "<rect x='5' y='0' width='5' height='5'/></g>"
                     "<rect x='10' y='0' width='5' height='5'/></g>"
                     "<rect x='15' y='0' width='5' height='5'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 2, 2), 0xFF000080u);
    unsigned int const half = at(bits, 7, 2);
    EXPECT_NEAR(int(half & 0xFF), 0xC0, 1); // grey 0x80 at half over white
    EXPECT_EQ(at(bits, 12, 2), 0xFF000080u);
    EXPECT_EQ(at(bits, 17, 2), 0xFF000000u); // outside the group: the default black
}

TEST(SvgAttributes, StrokeStyleAndColorForms)
{
    auto svg = parse("<rect x='4' y='4' width='10' height='10' fill='none' stroke='#0f0' "
                     "stroke-width='2' stroke-linejoin='miter' stroke-linecap='square'/>");
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 3, 8), 0xFF00FF00u);
    EXPECT_EQ(at(bits, 8, 8), White);
    EXPECT_EQ(at(bits, 3, 3), 0xFF00FF00u); // the miter fills the corner

    auto bevel = parse("<rect x='4' y='4' width='10' height='10' fill='none' "
                       "style='stroke:rgb;stroke:gold;stroke-width:4;stroke-linejoin:bevel'/>");
    // "rgb" is not a color name.
    EXPECT_EQ(std::string(bevel->GetError().CStr()), "parse_color: Invalid color name 'rgb'");

    auto gold = parse("<rect x='4' y='4' width='10' height='10' fill='none' "
                      "style='stroke:gold;stroke-width:4;stroke-linejoin:bevel'/>");
    auto goldBits = render(*gold);
    EXPECT_EQ(at(goldBits, 4, 8), 0xFFFFD700u);
    EXPECT_EQ(at(goldBits, 2, 2), White); // bevelled: the outer corner stays open
}

TEST(SvgAttributes, TransformsApplyInTheOrderGiven)
{
    auto svg = parse("<rect width='2' height='2' fill='red' transform='translate(10,4) scale(2)'/>"
                     "<rect width='2' height='2' fill='blue' transform='scale(2) translate(1 8)'/>"
                     "<rect width='2' height='2' fill='lime' "
                     "transform='matrix(1 0 0 1 16 16)'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 10, 4), 0xFFFF0000u);
    EXPECT_EQ(at(bits, 13, 7), 0xFFFF0000u);
    EXPECT_EQ(at(bits, 14, 8), White);
    EXPECT_EQ(at(bits, 2, 16), 0xFF0000FFu);
    EXPECT_EQ(at(bits, 5, 19), 0xFF0000FFu);
    EXPECT_EQ(at(bits, 17, 17), 0xFF00FF00u);

    // A square turned into a diamond: its centre is inked, its old corner barely.
    auto diamond = parse("<rect x='-3' y='-3' width='6' height='6' fill='black' "
                         "transform='translate(10 10) rotate(45)'/>");
    auto diamondBits = render(*diamond);
    EXPECT_EQ(at(diamondBits, 10, 10), 0xFF000000u);
    EXPECT_EQ(at(diamondBits, 9, 7), 0xFF000000u);
    EXPECT_GT(at(diamondBits, 7, 7) & 0xFF, 0xC0u);
}

TEST(SvgAttributes, RotateAboutAPointAndSkews)
{
    auto svg = parse("<rect x='10' y='2' width='4' height='2' fill='black' "
                     "transform='rotate(90 10 2)'/>");
    auto bits = render(*svg);
    // Turned a quarter about its corner: it now hangs down-left of (10, 2).
    EXPECT_EQ(at(bits, 8, 4), 0xFF000000u);
    EXPECT_EQ(at(bits, 12, 3), White);

    auto skew = parse("<rect x='0' y='0' width='4' height='10' fill='black' "
                      "transform='skewX(45)'/>");
    auto skewBits = render(*skew);
    EXPECT_EQ(at(skewBits, 10, 8), 0xFF000000u);
    EXPECT_EQ(at(skewBits, 1, 8), White);
}

TEST(SvgDraw, FitsTheDestinationThroughADrawContext)
{
    UI::MemoryDrawContext context("Icon Test");
    context.Begin(UI::Size(40, 40));
    context.DrawBox(UI::Rect(0, 39, 0, 39), UI::DrawContext::Filled, White, 255);
    context.SetTranslation(UI::Point(10, 10));
    auto svg = parse("<rect x='100' y='100' width='10' height='10' fill='red'/>");
    svg->SetDestinationRect(UI::Rect(0, 19, 0, 19));
    svg->Draw(&context);
    boost::shared_ptr<UI::DIBits> bits = context.GetBits();
    ASSERT_TRUE(bits);
    // The 10 by 10 square fills the 20 by 20 destination, moved by the translation.
    EXPECT_EQ(at(bits, 10, 10) & 0xFFFFFF, 0xFF0000u);
    EXPECT_EQ(at(bits, 29, 29) & 0xFFFFFF, 0xFF0000u);
    EXPECT_EQ(at(bits, 9, 9) & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(at(bits, 30, 30) & 0xFFFFFF, 0xFFFFFFu);

    // The clip holds.
    context.SetClipRect(UI::Rect(0, 19, 0, 39));
    auto blue = parse("<rect x='0' y='0' width='10' height='10' fill='blue'/>");
    blue->SetDestinationRect(UI::Rect(0, 19, 0, 19));
    blue->Draw(&context);
    bits = context.GetBits();
    EXPECT_EQ(at(bits, 15, 15) & 0xFFFFFF, 0x0000FFu);
    EXPECT_EQ(at(bits, 25, 15) & 0xFFFFFF, 0xFF0000u);
}

TEST(SvgDraw, OwnTransformScalesAndRotatesAboutTheCentre)
{
    auto svg = parse("<rect x='4' y='8' width='12' height='4' fill='black'/>");
    svg->SetRotation(90);
    auto bits = render(*svg);
    // A horizontal bar turned upright about its centre (10, 10).
    EXPECT_EQ(at(bits, 10, 5), 0xFF000000u);
    EXPECT_EQ(at(bits, 5, 10), White);

    svg->SetRotation(0);
    svg->SetScale(0.5, 0.5);
    svg->SetOffset(3, 0);
    bits = render(*svg);
    // Halved about the centre to 7..13 by 9..11, then moved right by 3.
    EXPECT_EQ(at(bits, 12, 9), 0xFF000000u);
    EXPECT_EQ(at(bits, 15, 10), 0xFF000000u);
    EXPECT_EQ(at(bits, 9, 9), White);
    EXPECT_EQ(at(bits, 16, 9), White);
    EXPECT_EQ(at(bits, 12, 11), White);
}

TEST(SvgErrors, EveryWrittenMessage)
{
    EXPECT_EQ(errorOf("<path d='M 0 0 L 1 1'><path d='M 1 1 L 2 2'/></path>"),
              "start_element: Nested path");
    EXPECT_EQ(errorOf("<rect width='-2' height='3'/>"), "parse_rect: Invalid width: -2.000000");
    EXPECT_EQ(errorOf("<rect width='2' height='-3.5'/>"), "parse_rect: Invalid height: -3.500000");
    EXPECT_EQ(errorOf("<polygon points='1'/>"), "parse_poly: Too few coordinates");
    EXPECT_EQ(errorOf("<polyline points=''/>"), "parse_poly: Too few coordinates");
    EXPECT_EQ(errorOf("<polyline points='1 2 3'/>"), "parse_poly: Odd number of coordinates");
    EXPECT_EQ(errorOf("<rect width='1' height='1' transform='matrix(1 0 0 1 0)'/>"),
              "parse_matrix: Invalid number of arguments");
    EXPECT_EQ(errorOf("<rect width='1' height='1' transform='rotate(1 2)'/>"),
              "parse_rotate: Invalid number of arguments");
    EXPECT_EQ(errorOf("<rect width='1' height='1' transform='translate 1 2'/>"),
              "parse_transform_args: Invalid syntax");
    EXPECT_EQ(errorOf("<rect width='1' height='1' transform='scale(1 2'/>"),
              "parse_transform_args: Invalid syntax");
    EXPECT_EQ(errorOf("<rect width='1' height='1' transform='scale(1 2 3)'/>"),
              "parse_transform_args: Too many arguments");
    EXPECT_EQ(errorOf("<rect width='1' height='1' fill='blurple'/>"),
              "parse_color: Invalid color name 'blurple'");

    agg::svg::path_renderer empty;
    try
    {
        empty.fill(agg::rgba8(1, 2, 3));
        FAIL() << "no exception";
    }
    catch (agg::svg::exception const& e)
    {
        EXPECT_STREQ(e.msg(), "cur_attr : Attribute stack is empty");
    }
}

TEST(SvgErrors, WhatWasReadBeforeTheErrorIsKept)
{
    auto svg = parse("<rect x='0' y='0' width='4' height='4' fill='red'/>"
                     "<polygon points='1 2 3' fill='blue'/>"
                     "<rect x='10' y='10' width='4' height='4' fill='lime'/>");
    EXPECT_EQ(std::string(svg->GetError().CStr()), "parse_poly: Odd number of coordinates");
    EXPECT_EQ(svg->path_count(), 1u);
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 1, 1), 0xFFFF0000u);
    EXPECT_EQ(at(bits, 11, 11), White);
}

TEST(SvgErrors, BadPathDataAndBrokenXmlAreErrorsNotCrashes)
{
    struct Case
    {
        char const* d;
        bool error;
    };
    for (Case const& c :
         {Case{"M 1", true}, Case{"M 1 2 X 3", true}, Case{"5 5", true}, Case{"M 1 2 z 3", true},
          Case{"C 1 2 3 4 5", true}, Case{"M .. 2", true}, Case{"M 1 2 L", true},
          // A line with no move starts at the origin; a number too large to
          // hold reads as 0.
          Case{"L 1 2", false}, Case{"M 1e999 2 L 3 4", false}})
    {
        auto svg = parse(std::string("<path d='") + c.d + "'/>");
        EXPECT_EQ(!svg->GetError().IsEmpty(), c.error) << c.d << ": " << svg->GetError().CStr();
        render(*svg);
    }
    char const broken[] = "<svg><rect width='1' height='1'></svg";
    UI::SVG::SVG svg(reinterpret_cast<unsigned char const*>(broken), sizeof broken - 1);
    EXPECT_FALSE(svg.GetError().IsEmpty());
    UI::SVG::SVG missing(String("/nonexistent/icon.svg"));
    EXPECT_FALSE(missing.GetError().IsEmpty());
    EXPECT_EQ(missing.path_count(), 0u);
}

TEST(SvgErrors, HugeNumbersDrawWithoutOverflow)
{
    // Coordinates, transforms and stroke widths far past any pixel are held back before they
    // reach the rasterizer's integer cells.
    auto svg = parse("<line x1='0' y1='10' x2='222222225' y2='10' stroke='blue' "
                     "stroke-width='2'/>"
                     "<rect width='1' height='1' transform='matrix(1e300 0 0 1e300 0 0) "
                     "scale(1e300)'/>"
                     "<polyline points='0 0 10 10 0 20' fill='none' stroke='red' "
                     "stroke-width='1e300' stroke-linejoin='round' stroke-miterlimit='1e300'/>"
                     "<path d='M 0 0 C 1e200 -1e200 -1e200 1e200 5 5' stroke='black'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    auto bits = render(*svg);
    EXPECT_NE(at(bits, 5, 10), White);
}

TEST(SvgText, TitleIsReadAndOtherElementsAreIgnored)
{
    auto svg = parse("<title>Folder</title><desc>ignored</desc><circle r='5'/>"
                     "<defs><linearGradient id='a'/></defs>"
                     "<rect width='1' height='1'/>");
    EXPECT_TRUE(svg->GetError().IsNull());
    EXPECT_EQ(std::string(svg->GetTitle().CStr()), "Folder");
    EXPECT_EQ(svg->path_count(), 1u);
}

TEST(SvgFiles, ReadsAFileFromDisk)
{
    TestSupport::TempFolder folder("tv-svg");
    std::string const file =
        folder.Write("icon.svg", "<?xml version='1.0'?>\n<svg><g fill='#123456'>"
                                 "<rect x='1' y='1' width='3' height='3'/></g></svg>\n");
    UI::SVG::SVG svg{String(file.c_str())};
    EXPECT_TRUE(svg.GetError().IsNull());
    EXPECT_EQ(std::string(svg.GetPath().CStr()), file);
    auto bits = render(svg, 6, 6);
    EXPECT_EQ(at(bits, 2, 2), 0xFF123456u);
}

TEST(SvgFiles, ThemeIconsInsideTheSubsetParseAndDraw)
{
    char const* const icons[] = {
        "/usr/share/icons/Adwaita/scalable/places/folder-symbolic.svg",
        "/usr/share/icons/Adwaita/scalable/places/user-home-symbolic.svg",
    };
    int found = 0;
    for (char const* path : icons)
    {
        if (!std::ifstream(path))
            continue;
        ++found;
        UI::SVG::SVG svg{String(path)};
        EXPECT_TRUE(svg.GetError().IsNull()) << path << ": " << svg.GetError().CStr();
        EXPECT_GT(svg.path_count(), 0u) << path;
        EXPECT_GT(svg.GetMaxX(), svg.GetMinX());
        svg.SetDestinationRect(UI::Rect(0, 23, 0, 23));
        boost::shared_ptr<UI::DIBits> bits =
            UI::CreateDIBits(UI::Size(24, 24), checked_value<unsigned int>(White));
        UI::AGGInlineRenderer renderer(bits, "Icon");
        svg.Draw(&renderer);
        int inked = 0;
        for (int i = 0; i < 24 * 24; ++i)
            inked += bits->GetPixels()[i] != White;
        EXPECT_GT(inked, 40) << path;
        EXPECT_LT(inked, 24 * 24) << path;
    }
    if (found == 0)
        GTEST_SKIP() << "no theme icons on this machine";
}

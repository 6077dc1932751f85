#include "Canvas/UI/SVG/SVG.h"

#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/SVG/Exception.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <vector>

namespace
{

unsigned int const White = 0xFFFFFFFFu;
unsigned int const Black = 0xFF000000u;
unsigned int const Red = 0xFFFF0000u;
unsigned int const Blue = 0xFF0000FFu;
unsigned int const Lime = 0xFF00FF00u;
// An unfilled 10 by 10 square, open for its stroke attributes.
std::string const square = "<rect x='4' y='4' width='10' height='10' fill='none' ";

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

struct Probe
{
    int x, y;
    unsigned int color;
};

/// An icon body drawn onto white bits of `height` (20 wide), with exact pixels to find.
struct PixelCase
{
    std::string body;
    int paths; // -1: not counted
    std::vector<Probe> probes;
    int height = 20;
};

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
            ASSERT_EQ(at(bits, x, y), inside ? Red : White) << x << "," << y;
        }
    EXPECT_EQ(svg->GetMinX(), 2.0);
    EXPECT_EQ(svg->GetMinY(), 3.0);
    EXPECT_EQ(svg->GetMaxX(), 7.0);
    EXPECT_EQ(svg->GetMaxY(), 7.0);
}

TEST(SvgShapes, ShapesPathsAttributesAndTransformsInkTheirPixels)
{
    std::string const groups =
        "<g fill='navy'><rect x='0' y='0' width='5' height='5'/>"
        "<g style='fill: #808080; fill-opacity: 0.5'><rect x='5' y='0' width='5' height='5'/></g>"
        "<rect x='10' y='0' width='5' height='5'/></g><rect x='15' y='0' width='5' height='5'/>";
    PixelCase const cases[] = {
        // A rect of size zero draws nothing and is no error.
        {"<rect x='1' y='1' width='0' height='5' fill='red'/>"
         "<rect x='4' y='4' width='2' height='2' fill='blue'/>",
         1,
         {{1, 2, White}, {4, 4, Blue}}},
        // Polygon, polyline (its stroke straddles y = 0; open with fill none) and line.
        {"<polygon points='0,0 10,0 10,10 0,10' fill='lime'/>"
         "<polyline points='12 0 19 0 19 7' fill='none' stroke='blue' stroke-width='2'/>"
         "<line x1='0' y1='15' x2='20' y2='15' stroke='black' stroke-width='2'/>",
         3,
         {{5, 5, Lime},
          {15, 0, Blue},
          {15, 4, White},
          {10, 14, Black},
          {10, 15, Black},
          {10, 17, White}}},
        // The same 8 by 8 square, absolute, relative, by H and V, and by implicit lines.
        {"<path fill='#00f' d='M 2 2 L 10 2 L 10 10 L 2 10 Z'/>",
         1,
         {{2, 2, Blue}, {9, 9, Blue}, {10, 10, White}, {1, 5, White}}},
        {"<path fill='#00f' d='m 2 2 l 8 0 l 0 8 l -8 0 z'/>",
         1,
         {{2, 2, Blue}, {9, 9, Blue}, {10, 10, White}, {1, 5, White}}},
        {"<path fill='#00f' d='M2,2H10V10H2z'/>",
         1,
         {{2, 2, Blue}, {9, 9, Blue}, {10, 10, White}, {1, 5, White}}},
        {"<path fill='#00f' d='m 2 2 h 8 v 8 h -8 z'/>",
         1,
         {{2, 2, Blue}, {9, 9, Blue}, {10, 10, White}, {1, 5, White}}},
        {"<path fill='#00f' d='M 2 2 10 2 10 10 2 10 z'/>",
         1,
         {{2, 2, Blue}, {9, 9, Blue}, {10, 10, White}, {1, 5, White}}},
        // After "z" the pen is back at (2, 2): the second square lies at (12, 2), not (10, 0).
        {"<path fill='black' d='m 2 2 h 4 v 4 h -4 z m 10 0 h 4 v 4 h -4 z'/>",
         -1,
         {{13, 3, Black}, {11, 1, White}}},
        // Inner outlines cut holes whichever way they run.
        {"<path fill='black' d='M 0 0 L 20 0 L 20 20 L 0 20 Z M 5 5 L 15 5 L 15 15 L 5 15 Z'/>",
         -1,
         {{2, 2, Black}, {10, 10, White}}},
        {"<path fill='black' d='M 0 0 L 20 0 L 20 20 L 0 20 Z M 5 5 L 5 15 L 15 15 L 15 5 Z'/>",
         -1,
         {{2, 2, Black}, {10, 10, White}}},
        // A cubic and a quadratic arch over a filled base bulge towards their controls; their
        // smooth continuations dip the other way.
        {"<path fill='black' d='M 0 10 C 0 0 10 0 10 10 S 20 20 20 10 Z'/>"
         "<path fill='red' transform='translate(0 20)' d='M 0 0 Q 5 -20 10 0 T 20 0 Z'/>",
         -1,
         {{5, 5, Black}, {1, 1, White}, {15, 14, Black}, {5, 17, Red}, {15, 23, Red}},
         30},
        // Groups pass their look to children and restore it; outside, the default black.
        {groups, -1, {{2, 2, 0xFF000080u}, {12, 2, 0xFF000080u}, {17, 2, Black}}},
        // A square cap and miter join fill the corner.
        {(square + "stroke='#0f0' stroke-width='2' stroke-linejoin='miter' "
                   "stroke-linecap='square'/>"),
         -1,
         {{3, 8, Lime}, {8, 8, White}, {3, 3, Lime}}},
        // Bevelled: the outer corner stays open.
        {(square + "style='stroke:gold;stroke-width:4;stroke-linejoin:bevel'/>"),
         -1,
         {{4, 8, 0xFFFFD700u}, {2, 2, White}}},
        // Transforms apply in the order given.
        {"<rect width='2' height='2' fill='red' transform='translate(10,4) scale(2)'/>"
         "<rect width='2' height='2' fill='blue' transform='scale(2) translate(1 8)'/>"
         "<rect width='2' height='2' fill='lime' transform='matrix(1 0 0 1 16 16)'/>",
         -1,
         {{10, 4, Red},
          {13, 7, Red},
          {14, 8, White},
          {2, 16, Blue},
          {5, 19, Blue},
          {17, 17, Lime}}},
        // Turned a quarter about its corner: it now hangs down-left of (10, 2).
        {"<rect x='10' y='2' width='4' height='2' fill='black' transform='rotate(90 10 2)'/>",
         -1,
         {{8, 4, Black}, {12, 3, White}}},
        {"<rect x='0' y='0' width='4' height='10' fill='black' transform='skewX(45)'/>",
         -1,
         {{10, 8, Black}, {1, 8, White}}},
    };
    for (PixelCase const& c : cases)
    {
        SCOPED_TRACE(c.body);
        auto svg = parse(c.body);
        EXPECT_TRUE(svg->GetError().IsNull()) << svg->GetError().CStr();
        if (c.paths >= 0)
        {
            EXPECT_EQ(svg->path_count(), unsigned(c.paths));
        }
        auto bits = render(*svg, 20, c.height);
        for (Probe const& p : c.probes)
            EXPECT_EQ(at(bits, p.x, p.y), p.color) << p.x << "," << p.y;
    }

    // Coordinates, transforms and stroke widths far past any pixel are held back before they
    // reach the rasterizer's integer cells.
    auto huge =
        parse("<line x1='0' y1='10' x2='222222225' y2='10' stroke='blue' stroke-width='2'/>"
              "<rect width='1' height='1' transform='matrix(1e300 0 0 1e300 0 0) scale(1e300)'/>"
              "<polyline points='0 0 10 10 0 20' fill='none' stroke='red' stroke-width='1e300' "
              "stroke-linejoin='round' stroke-miterlimit='1e300'/>"
              "<path d='M 0 0 C 1e200 -1e200 -1e200 1e200 5 5' stroke='black'/>");
    EXPECT_TRUE(huge->GetError().IsNull());
    EXPECT_NE(at(render(*huge), 5, 10), White);

    // The inner group's grey 0x80 at half opacity over white, and a diamond's old corner
    // barely inked.
    EXPECT_NEAR(int(at(render(*parse(groups)), 7, 2) & 0xFF), 0xC0, 1);
    auto diamond = parse("<rect x='-3' y='-3' width='6' height='6' fill='black' "
                         "transform='translate(10 10) rotate(45)'/>");
    auto diamondBits = render(*diamond);
    EXPECT_EQ(at(diamondBits, 10, 10), Black);
    EXPECT_EQ(at(diamondBits, 9, 7), Black);
    EXPECT_GT(at(diamondBits, 7, 7) & 0xFF, 0xC0u);
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
    EXPECT_EQ(at(bits, 10, 5), Black);
    EXPECT_EQ(at(bits, 5, 10), White);

    svg->SetRotation(0);
    svg->SetScale(0.5, 0.5);
    svg->SetOffset(3, 0);
    bits = render(*svg);
    // Halved about the centre to 7..13 by 9..11, then moved right by 3.
    for (Probe const& p : {Probe{12, 9, Black}, Probe{15, 10, Black}, Probe{9, 9, White},
                           Probe{16, 9, White}, Probe{12, 11, White}})
        EXPECT_EQ(at(bits, p.x, p.y), p.color) << p.x << "," << p.y;
}

TEST(SvgErrors, EveryWrittenMessageAndBadInputIsNoCrash)
{
    std::string const unit = "<rect width='1' height='1' ";
    std::pair<std::string, char const*> const messages[] = {
        {"<path d='M 0 0 L 1 1'><path d='M 1 1 L 2 2'/></path>", "start_element: Nested path"},
        {"<rect width='-2' height='3'/>", "parse_rect: Invalid width: -2.000000"},
        {"<rect width='2' height='-3.5'/>", "parse_rect: Invalid height: -3.500000"},
        {"<polygon points='1'/>", "parse_poly: Too few coordinates"},
        {"<polyline points=''/>", "parse_poly: Too few coordinates"},
        {"<polyline points='1 2 3'/>", "parse_poly: Odd number of coordinates"},
        {unit + "transform='matrix(1 0 0 1 0)'/>", "parse_matrix: Invalid number of arguments"},
        {unit + "transform='rotate(1 2)'/>", "parse_rotate: Invalid number of arguments"},
        {unit + "transform='translate 1 2'/>", "parse_transform_args: Invalid syntax"},
        {unit + "transform='scale(1 2'/>", "parse_transform_args: Invalid syntax"},
        {unit + "transform='scale(1 2 3)'/>", "parse_transform_args: Too many arguments"},
        {unit + "fill='blurple'/>", "parse_color: Invalid color name 'blurple'"},
        // "rgb" is not a color name.
        {square + "style='stroke:rgb;stroke:gold;stroke-width:4;stroke-linejoin:bevel'/>",
         "parse_color: Invalid color name 'rgb'"},
    };
    for (auto const& m : messages)
        EXPECT_EQ(std::string(parse(m.first)->GetError().CStr()), m.second) << m.first;

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

    // Bad path data is an error drawn without a crash; a line with no move starts at the
    // origin, and a number too large to hold reads as 0.
    for (auto const& c : {std::make_pair("M 1", true),
                          {"M 1 2 X 3", true},
                          {"5 5", true},
                          {"M 1 2 z 3", true},
                          {"C 1 2 3 4 5", true},
                          {"M .. 2", true},
                          {"M 1 2 L", true},
                          {"L 1 2", false},
                          {"M 1e999 2 L 3 4", false}})
    {
        auto svg = parse(std::string("<path d='") + c.first + "'/>");
        EXPECT_EQ(!svg->GetError().IsEmpty(), c.second)
            << c.first << ": " << svg->GetError().CStr();
        render(*svg);
    }
    char const broken[] = "<svg><rect width='1' height='1'></svg";
    UI::SVG::SVG svg(reinterpret_cast<unsigned char const*>(broken), sizeof broken - 1);
    EXPECT_FALSE(svg.GetError().IsEmpty());
    UI::SVG::SVG missing(String("/nonexistent/icon.svg"));
    EXPECT_FALSE(missing.GetError().IsEmpty());
    EXPECT_EQ(missing.path_count(), 0u);
}

TEST(SvgErrors, WhatWasReadBeforeTheErrorIsKept)
{
    auto svg = parse("<rect x='0' y='0' width='4' height='4' fill='red'/>"
                     "<polygon points='1 2 3' fill='blue'/>"
                     "<rect x='10' y='10' width='4' height='4' fill='lime'/>");
    EXPECT_EQ(std::string(svg->GetError().CStr()), "parse_poly: Odd number of coordinates");
    EXPECT_EQ(svg->path_count(), 1u);
    auto bits = render(*svg);
    EXPECT_EQ(at(bits, 1, 1), Red);
    EXPECT_EQ(at(bits, 11, 11), White);
}

TEST(SvgFiles, TitleFilesAndThemeIcons)
{
    // The title is read and other elements are ignored.
    auto titled = parse("<title>Folder</title><desc>ignored</desc><circle r='5'/>"
                        "<defs><linearGradient id='a'/></defs><rect width='1' height='1'/>");
    EXPECT_TRUE(titled->GetError().IsNull());
    EXPECT_EQ(std::string(titled->GetTitle().CStr()), "Folder");
    EXPECT_EQ(titled->path_count(), 1u);

    TestSupport::TempFolder folder("tv-svg");
    std::string const file =
        folder.Write("icon.svg", "<?xml version='1.0'?>\n<svg><g fill='#123456'>"
                                 "<rect x='1' y='1' width='3' height='3'/></g></svg>\n");
    UI::SVG::SVG svg{String(file.c_str())};
    EXPECT_TRUE(svg.GetError().IsNull());
    EXPECT_EQ(std::string(svg.GetPath().CStr()), file);
    EXPECT_EQ(at(render(svg, 6, 6), 2, 2), 0xFF123456u);

    // Theme icons inside the subset parse and draw, where the machine has them.
    for (char const* path : {"/usr/share/icons/Adwaita/scalable/places/folder-symbolic.svg",
                             "/usr/share/icons/Adwaita/scalable/places/user-home-symbolic.svg"})
    {
        if (!std::ifstream(path))
            continue;
        UI::SVG::SVG icon{String(path)};
        EXPECT_TRUE(icon.GetError().IsNull()) << path << ": " << icon.GetError().CStr();
        EXPECT_GT(icon.path_count(), 0u) << path;
        EXPECT_GT(icon.GetMaxX(), icon.GetMinX());
        icon.SetDestinationRect(UI::Rect(0, 23, 0, 23));
        auto bits = render(icon, 24, 24);
        int inked = 0;
        for (int i = 0; i < 24 * 24; ++i)
            inked += bits->GetPixels()[i] != White;
        EXPECT_GT(inked, 40) << path;
        EXPECT_LT(inked, 24 * 24) << path;
    }
}

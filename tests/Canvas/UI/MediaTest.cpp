#include "Canvas/UI/Media.h"

#include "Canvas/UI/DIBits.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/ResourceManager.h"
#include "tests/Canvas/UI/support/PngTestSupport.h"
#include "tests/support/TempFolder.h"

#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include <cmath>

using TestSupport::MakePng;
using TestSupport::PngSample;

namespace
{

boost::shared_ptr<UI::DIBits> decode(std::string const& file, float gamma = 0.0f)
{
    return UI::Media::GetPNGBits(unsigned(file.size()),
                                 reinterpret_cast<unsigned char const*>(file.data()), gamma);
}

unsigned int pixel(UI::DIBits const& bits, int x, int y)
{
    return bits.GetPixels()[y * bits.GetStride() + x];
}

int channelsOf(int colorType)
{
    return colorType == PNG_COLOR_TYPE_GRAY || colorType == PNG_COLOR_TYPE_PALETTE ? 1
           : colorType == PNG_COLOR_TYPE_GRAY_ALPHA                                ? 2
           : colorType == PNG_COLOR_TYPE_RGB                                       ? 3
                                                                                   : 4;
}

// A sample of `depth` bits as the decoder shows it at 8 bits: small depths are widened to the
// full range, 16 bits keep their high byte.
unsigned int to8(unsigned int v, int depth)
{
    if (depth == 16)
        return v >> 8;
    if (depth < 8)
        return v * 255 / ((1u << depth) - 1);
    return v;
}

// Samples that run through the whole range of the depth and differ from pixel to pixel.
PngSample gradient(int colorType, int depth, unsigned int width, unsigned int height)
{
    PngSample sample;
    sample.width = width;
    sample.height = height;
    sample.colorType = colorType;
    sample.bitDepth = depth;
    unsigned int const max = (1u << depth) - 1;
    unsigned int const count = width * height * channelsOf(colorType);
    for (unsigned int i = 0; i < count; ++i)
        sample.samples.push_back(colorType == PNG_COLOR_TYPE_PALETTE
                                     ? (i * 7) % (1u << std::min(depth, 8))
                                     : (i * 2654435761u) % (max + 1));
    return sample;
}

// The reference: the pixel the decoder must give for pixel `p` of `sample`.
unsigned int expectedPixel(PngSample const& sample, unsigned int p)
{
    int const c = channelsOf(sample.colorType);
    auto s = [&](int k) { return to8(sample.samples[p * c + k], sample.bitDepth); };
    switch (sample.colorType)
    {
    case PNG_COLOR_TYPE_GRAY:
    {
        unsigned int const alpha = sample.greyKey && sample.samples[p] == sample.key ? 0u : 255u;
        return alpha << 24 | s(0) << 16 | s(0) << 8 | s(0);
    }
    case PNG_COLOR_TYPE_GRAY_ALPHA:
        return s(1) << 24 | s(0) << 16 | s(0) << 8 | s(0);
    case PNG_COLOR_TYPE_RGB:
        return 0xFF000000u | s(0) << 16 | s(1) << 8 | s(2);
    case PNG_COLOR_TYPE_RGB_ALPHA:
        return s(3) << 24 | s(0) << 16 | s(1) << 8 | s(2);
    default:
    {
        unsigned int const index = sample.samples[p];
        png_color const& color = sample.palette[index];
        unsigned int const alpha =
            index < sample.paletteAlpha.size() ? sample.paletteAlpha[index] : 255u;
        return alpha << 24 | unsigned(color.red) << 16 | unsigned(color.green) << 8 | color.blue;
    }
    }
}

void expectDecodesAsReference(PngSample const& sample, bool expectAlpha)
{
    boost::shared_ptr<UI::DIBits> bits = decode(MakePng(sample));
    ASSERT_TRUE(bits) << "type " << sample.colorType << " depth " << sample.bitDepth;
    ASSERT_EQ(bits->GetWidth(), int(sample.width));
    ASSERT_EQ(bits->GetHeight(), int(sample.height));
    EXPECT_EQ(bits->GetStride(), int(sample.width));
    EXPECT_EQ(bits->HasAlpha(), expectAlpha)
        << "type " << sample.colorType << " depth " << sample.bitDepth;
    for (unsigned int y = 0; y < sample.height; ++y)
        for (unsigned int x = 0; x < sample.width; ++x)
            ASSERT_EQ(pixel(*bits, x, y), expectedPixel(sample, y * sample.width + x))
                << "type " << sample.colorType << " depth " << sample.bitDepth << " at " << x << ","
                << y;
}

std::vector<png_color> rainbow(unsigned int count)
{
    std::vector<png_color> colors;
    for (unsigned int i = 0; i < count; ++i)
        colors.push_back(png_color{png_byte(i * 37), png_byte(255 - i * 11), png_byte(i * 5 + 3)});
    return colors;
}

} // namespace

TEST(PngDecoding, EveryColorTypeAndDepthDecodesAsTheReference)
{
    // Grey fills three channels opaque; palettes give their colors.
    struct Case
    {
        int type;
        std::vector<int> depths;
        unsigned int width, height;
        bool alpha;
    } const cases[] = {
        {PNG_COLOR_TYPE_GRAY, {1, 2, 4, 8, 16}, 7, 5, false},
        {PNG_COLOR_TYPE_GRAY_ALPHA, {8, 16}, 6, 4, true},
        {PNG_COLOR_TYPE_PALETTE, {1, 2, 4, 8}, 9, 4, false},
        {PNG_COLOR_TYPE_RGB, {8, 16}, 5, 6, false},
        {PNG_COLOR_TYPE_RGB_ALPHA, {8, 16}, 5, 6, true},
    };
    for (Case const& c : cases)
        for (int depth : c.depths)
        {
            PngSample sample = gradient(c.type, depth, c.width, c.height);
            if (c.type == PNG_COLOR_TYPE_PALETTE)
                sample.palette = rainbow(1u << depth);
            expectDecodesAsReference(sample, c.alpha);
        }

    // A grey with a transparent key gets alpha.
    PngSample keyed = gradient(PNG_COLOR_TYPE_GRAY, 8, 5, 3);
    keyed.greyKey = true;
    keyed.key = keyed.samples[4];
    expectDecodesAsReference(keyed, true);

    // Palette transparency gives alpha per entry; with fewer entries than colors the rest stay
    // opaque.
    PngSample clear = gradient(PNG_COLOR_TYPE_PALETTE, 8, 8, 8);
    clear.palette = rainbow(256);
    for (int i = 0; i < 10; ++i)
        clear.paletteAlpha.push_back(png_byte(i * 25));
    expectDecodesAsReference(clear, true);

    // Interlaced images decode like plain ones.
    PngSample interlaced = gradient(PNG_COLOR_TYPE_RGB_ALPHA, 8, 13, 11);
    interlaced.interlaced = true;
    expectDecodesAsReference(interlaced, true);

    // Opaque RGBA and grey-alpha have no alpha.
    PngSample rgba = gradient(PNG_COLOR_TYPE_RGB_ALPHA, 8, 4, 4);
    for (std::size_t i = 3; i < rgba.samples.size(); i += 4)
        rgba.samples[i] = 255;
    expectDecodesAsReference(rgba, false);
    PngSample grey = gradient(PNG_COLOR_TYPE_GRAY_ALPHA, 16, 4, 4);
    for (std::size_t i = 1; i < grey.samples.size(); i += 2)
        grey.samples[i] = 0xFFFF;
    expectDecodesAsReference(grey, false);
}

TEST(PngDecoding, BrokenBodiesGiveNoImage)
{
    std::string const good = MakePng(gradient(PNG_COLOR_TYPE_RGB, 8, 32, 32));
    ASSERT_TRUE(decode(good));
    std::size_t const idat = TestSupport::FindChunk(good, "IDAT");
    ASSERT_NE(idat, std::string::npos);

    // Damaged image data behind a correct checksum: the inflate stream itself is wrong.
    std::string broken = good;
    for (std::size_t i = idat + 10; i < idat + 30; ++i)
        broken[i] = char(broken[i] ^ 0x5A);
    TestSupport::FixChunkCrc(broken, idat);
    EXPECT_FALSE(decode(broken));

    // The same damage with the stale checksum.
    std::string badCrc = good;
    badCrc[idat + 12] = char(badCrc[idat + 12] ^ 1);
    EXPECT_FALSE(decode(badCrc));

    // Not a PNG at all, an empty block, a null pointer.
    EXPECT_FALSE(decode("GIF89a not a png at all"));
    EXPECT_FALSE(decode(""));
    EXPECT_FALSE(UI::Media::GetPNGBits(100, nullptr, 0.0f));
}

TEST(PngDecoding, EveryTruncationGivesNoImage)
{
    std::string const good = MakePng(gradient(PNG_COLOR_TYPE_RGB_ALPHA, 8, 16, 16));
    std::size_t const iend = TestSupport::FindChunk(good, "IEND");
    ASSERT_NE(iend, std::string::npos);
    // Everything up to the end of the image data is needed; only the trailer may go missing.
    for (std::size_t length = 0; length < iend; ++length)
        ASSERT_FALSE(decode(good.substr(0, length))) << "length " << length;
    EXPECT_TRUE(decode(good));
}

TEST(PngDecoding, HeadersClaimingHugeImagesAreRefused)
{
    PngSample sample = gradient(PNG_COLOR_TYPE_RGB, 8, 4, 4);
    std::string file = MakePng(sample);
    std::size_t const ihdr = TestSupport::FindChunk(file, "IHDR");
    auto setSize = [&](unsigned int w, unsigned int h)
    {
        std::string f = file;
        for (int i = 0; i < 4; ++i)
        {
            f[ihdr + 8 + i] = char(w >> (24 - 8 * i));
            f[ihdr + 12 + i] = char(h >> (24 - 8 * i));
        }
        TestSupport::FixChunkCrc(f, ihdr);
        return f;
    };
    EXPECT_FALSE(decode(setSize(16385, 4)));
    EXPECT_FALSE(decode(setSize(4, 100000)));
    // Within the limits, but far more pixels than a few bytes of deflate can carry.
    EXPECT_FALSE(decode(setSize(16000, 16000)));
    EXPECT_TRUE(decode(setSize(4, 4)));
}

TEST(GammaTable, MapsTheRangeOntoExponentsFromDarkToBright)
{
    auto const& range = UI::Media::GAMMA_CORRECTION_RANGE;
    ASSERT_LT(range.minimum, range.maximum);
    auto reference = [](double exponent, int i)
    { return int(std::round(std::pow(i / 255.0, exponent) * 255.0)); };
    std::array<unsigned char, 256> const dark = UI::Media::MakeGammaTable(range.minimum);
    std::array<unsigned char, 256> const bright = UI::Media::MakeGammaTable(range.maximum);
    std::array<unsigned char, 256> const middle =
        UI::Media::MakeGammaTable((range.minimum + range.maximum) / 2);
    for (int i = 0; i < 256; ++i)
    {
        EXPECT_EQ(dark[i], reference(1.4, i)) << i;
        EXPECT_EQ(bright[i], reference(0.6, i)) << i;
        EXPECT_EQ(middle[i], i) << "exponent 1 keeps every value";
        EXPECT_LE(dark[i], middle[i]);
        EXPECT_GE(bright[i], middle[i]);
    }
    EXPECT_EQ(dark[0], 0);
    EXPECT_EQ(dark[255], 255);
    EXPECT_EQ(dark[128], 97); // round(pow(128 / 255, 1.4) * 255)
}

TEST(GammaTable, DecodingBakesItIntoColorsAndLeavesAlpha)
{
    PngSample sample = gradient(PNG_COLOR_TYPE_RGB_ALPHA, 8, 8, 8);
    std::string const file = MakePng(sample);
    boost::shared_ptr<UI::DIBits> plain = decode(file, 0.0f);
    boost::shared_ptr<UI::DIBits> dark = decode(file, UI::Media::GAMMA_CORRECTION_RANGE.minimum);
    boost::shared_ptr<UI::DIBits> dim = decode(file, 0.2f);
    ASSERT_TRUE(plain && dark && dim);
    std::array<unsigned char, 256> const table =
        UI::Media::MakeGammaTable(UI::Media::GAMMA_CORRECTION_RANGE.minimum);
    std::array<unsigned char, 256> const dimTable = UI::Media::MakeGammaTable(0.2f);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
        {
            unsigned int const p = pixel(*plain, x, y);
            auto through = [p](std::array<unsigned char, 256> const& t)
            {
                return (p & 0xFF000000u) | unsigned(t[p >> 16 & 0xFF]) << 16 |
                       unsigned(t[p >> 8 & 0xFF]) << 8 | t[p & 0xFF];
            };
            EXPECT_EQ(pixel(*dim, x, y), through(dimTable));
            EXPECT_EQ(pixel(*dark, x, y), through(table));
        }
}

namespace
{

// Resources come from an override folder of real files, as a designer's would.
class PngCache : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Util::ResourceManager::Get().SetOverridePath(FolderPath(String(folder.Path().c_str())));
    }
    void TearDown() override
    {
        Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    }

    TestSupport::TempFolder folder{"tv-media"};
};

} // namespace

TEST_F(PngCache, SharesDecodesByNameAndGammaWhileSomeoneHoldsThem)
{
    folder.Write("button.png", MakePng(gradient(PNG_COLOR_TYPE_RGB, 8, 6, 6)));
    boost::shared_ptr<UI::DIBits> first = UI::Media::GetPNGBits("button.png", true, 0.0f);
    ASSERT_TRUE(first);
    EXPECT_EQ(UI::Media::GetPNGBits("button.png", true, 0.0f), first);
    // Without the cache every request decodes anew.
    boost::shared_ptr<UI::DIBits> own = UI::Media::GetPNGBits("button.png", false, 0.0f);
    ASSERT_TRUE(own);
    EXPECT_NE(own, first);
    EXPECT_EQ(pixel(*own, 3, 2), pixel(*first, 3, 2));

    // The cache holds only a weak reference: once the last holder lets go, the bits are freed
    // and the next request decodes again.
    boost::weak_ptr<UI::DIBits> watch = first;
    first.reset();
    EXPECT_TRUE(watch.expired());
    boost::shared_ptr<UI::DIBits> again = UI::Media::GetPNGBits("button.png", true, 0.0f);
    ASSERT_TRUE(again);
    EXPECT_EQ(UI::Media::GetPNGBits("button.png", true, 0.0f), again);

    // Another gamma replaces the entry; old holders keep theirs.
    PngSample sample = gradient(PNG_COLOR_TYPE_RGB, 8, 4, 4);
    folder.Write("knob.png", MakePng(sample));
    boost::shared_ptr<UI::DIBits> plain = UI::Media::GetPNGBits("knob.png", true, 0.0f);
    boost::shared_ptr<UI::DIBits> dark = UI::Media::GetPNGBits("knob.png", true, 0.1f);
    ASSERT_TRUE(plain && dark);
    EXPECT_NE(plain, dark);
    EXPECT_EQ(UI::Media::GetPNGBits("knob.png", true, 0.1f), dark);
    // The plain entry was replaced: asking for it again decodes anew, the old holder is intact.
    boost::shared_ptr<UI::DIBits> plainAgain = UI::Media::GetPNGBits("knob.png", true, 0.0f);
    EXPECT_NE(plainAgain, plain);
    EXPECT_EQ(pixel(*plain, 1, 1), expectedPixel(sample, 5));
    EXPECT_EQ(pixel(*plainAgain, 1, 1), expectedPixel(sample, 5));

    // Bits put in the cache are served without a file.
    boost::shared_ptr<UI::DIBits> made =
        UI::CreateDIBits(UI::Size(2, 2), checked_value<unsigned int>(0xFF123456u));
    UI::Media::CachePNGBits("made-up.png", made, 0.0f);
    EXPECT_EQ(UI::Media::GetPNGBits("made-up.png", true, 0.0f), made);
    // Another gamma isn't in the cache, and there is no file to decode.
    EXPECT_FALSE(UI::Media::GetPNGBits("made-up.png", true, 0.3f));

    // Missing and damaged resources give nothing.
    EXPECT_FALSE(UI::Media::GetPNGBits("no-such-image.png", true, 0.0f));
    folder.Write("broken.png", MakePng(gradient(PNG_COLOR_TYPE_RGB, 8, 4, 4)).substr(0, 40));
    EXPECT_FALSE(UI::Media::GetPNGBits("broken.png", true, 0.0f));
    EXPECT_FALSE(UI::Media::GetPNGBits("broken.png", false, 0.0f));
}

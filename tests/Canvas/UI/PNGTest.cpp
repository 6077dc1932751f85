#include "Canvas/UI/PNG.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Media.h"
#include "tests/Canvas/UI/support/PngTestSupport.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cmath>

using UI::PNG::Bitmap;

namespace
{

// A bitmap whose samples (and alpha) differ everywhere, with fractions for the 16-bit path.
Bitmap manyColors(int w, int h, bool withAlpha)
{
    Bitmap bitmap;
    bitmap.Allocate(unsigned(w), unsigned(h), withAlpha);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
        {
            bitmap.red[y][x] = float((x * 13 + y * 7) % 256) + 0.25f;
            bitmap.green[y][x] = float((x * 3 + y * 29) % 256);
            bitmap.blue[y][x] = float((x * y * 5) % 256) + 0.5f;
            if (withAlpha)
                bitmap.alpha[y][x] = float((x * 31 + y) % 256) + 0.75f;
        }
    return bitmap;
}

// Four colors in stripes: a palette image.
Bitmap fewColors(int w, int h, bool withAlpha)
{
    float const colors[4][4] = {
        {255, 0, 0, 255}, {0, 128, 0, 128}, {0, 0, 255, 0}, {10, 20, 30, 255}};
    Bitmap bitmap;
    bitmap.Allocate(unsigned(w), unsigned(h), withAlpha);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
        {
            float const* c = colors[(x / 3 + y) % 4];
            bitmap.red[y][x] = c[0], bitmap.green[y][x] = c[1], bitmap.blue[y][x] = c[2];
            if (withAlpha)
                bitmap.alpha[y][x] = c[3];
        }
    return bitmap;
}

// The writer's 8-bit sample: rounded by rint (halves to even), then held to 0..255.
unsigned int rounded(float v)
{
    double const r = std::rint(v);
    return r < 0.0 ? 0u : r > 255.0 ? 255u : unsigned(r);
}

class PngFiles : public ::testing::Test
{
protected:
    std::string path(char const* name) const { return folder.Path() + "/" + name; }
    std::string read(char const* name) const { return TestSupport::ReadFile(path(name)); }

    TestSupport::TempFolder folder{"tv-png"};
};

// Reads with the skin decoder, which keeps alpha, and compares every pixel with the bitmap.
void expectSameAt8Bits(std::string const& file, Bitmap const& bitmap, bool withAlpha)
{
    boost::shared_ptr<UI::DIBits> bits = UI::Media::GetPNGBits(
        unsigned(file.size()), reinterpret_cast<unsigned char const*>(file.data()), 0.0f);
    ASSERT_TRUE(bits);
    ASSERT_EQ(bits->GetWidth(), bitmap.GetWidth());
    ASSERT_EQ(bits->GetHeight(), bitmap.GetHeight());
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
        {
            unsigned int const a = withAlpha ? rounded(bitmap.alpha[y][x]) : 255u;
            unsigned int const expected = a << 24 | rounded(bitmap.red[y][x]) << 16 |
                                          rounded(bitmap.green[y][x]) << 8 |
                                          rounded(bitmap.blue[y][x]);
            ASSERT_EQ(bits->GetPixels()[y * bits->GetStride() + x], expected) << x << "," << y;
        }
}

} // namespace

TEST(PngBitmap, AllocatesZeroedPlanesWithRowPointers)
{
    Bitmap bitmap(5, 3);
    EXPECT_EQ(bitmap.GetWidth(), 5);
    EXPECT_EQ(bitmap.GetHeight(), 3);
    EXPECT_TRUE(bitmap.HasAlpha());
    ASSERT_EQ(bitmap.red.size(), 3u);
    EXPECT_EQ(bitmap.red[1] - bitmap.red[0], 5);
    EXPECT_EQ(bitmap.alpha[2][4], 0.0f);
    bitmap.green[2][4] = 7.0f;

    bitmap.Allocate(2, 2, false);
    EXPECT_FALSE(bitmap.HasAlpha());
    EXPECT_EQ(bitmap.green[1][1], 0.0f);
    // Moving keeps the row pointers valid.
    Bitmap moved = std::move(bitmap);
    moved.blue[1][1] = 3.0f;
    EXPECT_EQ(moved.blue[1][1], 3.0f);

    Bitmap empty(0, 4);
    EXPECT_EQ(empty.GetWidth(), 0);
    EXPECT_TRUE(empty.red.empty());
}

TEST_F(PngFiles, EightBitRoundTripsKeepEverySampleRounded)
{
    for (bool withAlpha : {false, true})
    {
        Bitmap const many = manyColors(37, 23, withAlpha);
        ASSERT_TRUE(UI::PNG::WritePngFile(path("many.png").c_str(), many, withAlpha, false,
                                          UI::PNG::PngComprParams(), nullptr, nullptr, false));
        expectSameAt8Bits(read("many.png"), many, withAlpha);

        // The codec's own decoder: red, green and blue, alpha dropped.
        std::string const file = read("many.png");
        Bitmap back;
        ASSERT_EQ(UI::PNG::DecodePngImage(reinterpret_cast<unsigned char const*>(file.data()),
                                          unsigned(file.size()), back),
                  0);
        EXPECT_FALSE(back.HasAlpha());
        for (int y = 0; y < 23; ++y)
            for (int x = 0; x < 37; ++x)
            {
                ASSERT_EQ(back.red[y][x], float(rounded(many.red[y][x])));
                ASSERT_EQ(back.green[y][x], float(rounded(many.green[y][x])));
                ASSERT_EQ(back.blue[y][x], float(rounded(many.blue[y][x])));
            }
    }
}

TEST_F(PngFiles, FewColorsAreWrittenAsAPaletteThatReadsTheSame)
{
    for (bool withAlpha : {false, true})
    {
        Bitmap const few = fewColors(40, 20, withAlpha);
        ASSERT_TRUE(UI::PNG::WritePngFile(path("few.png").c_str(), few, withAlpha, false,
                                          UI::PNG::PngComprParams(), nullptr, nullptr, false));
        std::string const file = read("few.png");
        EXPECT_NE(TestSupport::FindChunk(file, "PLTE"), std::string::npos);
        EXPECT_EQ(TestSupport::FindChunk(file, "tRNS") != std::string::npos, withAlpha);
        expectSameAt8Bits(file, few, withAlpha);
    }
}

TEST_F(PngFiles, SixteenBitsKeepTheFractions)
{
    for (bool withAlpha : {false, true})
    {
        Bitmap const many = manyColors(9, 7, withAlpha);
        ASSERT_TRUE(UI::PNG::WritePngFile(path("deep.png").c_str(), many, withAlpha, true,
                                          UI::PNG::PngComprParams(), nullptr, nullptr, false));
        int depth = 0, type = 0;
        std::vector<unsigned int> const samples =
            TestSupport::ReadRawSamples(read("deep.png"), &depth, &type);
        EXPECT_EQ(depth, 16);
        EXPECT_EQ(type, withAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB);
        std::size_t const channels = withAlpha ? 4 : 3;
        ASSERT_EQ(samples.size(), 9u * 7u * channels);
        for (int y = 0; y < 7; ++y)
            for (int x = 0; x < 9; ++x)
            {
                std::size_t const at = (std::size_t(y) * 9 + x) * channels;
                EXPECT_EQ(samples[at], unsigned(std::rint(many.red[y][x] * 257.0)));
                EXPECT_EQ(samples[at + 1], unsigned(std::rint(many.green[y][x] * 257.0)));
                EXPECT_EQ(samples[at + 2], unsigned(std::rint(many.blue[y][x] * 257.0)));
                if (withAlpha)
                {
                    EXPECT_EQ(samples[at + 3], unsigned(std::rint(many.alpha[y][x] * 257.0)));
                }
            }
        // Read back through the 8-bit decoder: the high byte of each sample.
        std::string const file = read("deep.png");
        Bitmap back;
        ASSERT_EQ(UI::PNG::DecodePngImage(reinterpret_cast<unsigned char const*>(file.data()),
                                          unsigned(file.size()), back),
                  0);
        EXPECT_EQ(back.red[3][4], float(samples[(3 * 9 + 4) * channels] >> 8));
    }
}

TEST_F(PngFiles, SamplesOutsideTheRangeAreClamped)
{
    Bitmap bitmap;
    bitmap.Allocate(2, 1, false);
    bitmap.red[0][0] = -20.0f, bitmap.green[0][0] = 300.0f, bitmap.blue[0][0] = 254.6f;
    bitmap.red[0][1] = 1.0f, bitmap.green[0][1] = 2.0f, bitmap.blue[0][1] = 3.0f;
    ASSERT_TRUE(UI::PNG::WritePngFile(path("clamp.png").c_str(), bitmap, false, false,
                                      UI::PNG::PngComprParams(), nullptr, nullptr, false));
    std::string const file = read("clamp.png");
    boost::shared_ptr<UI::DIBits> bits = UI::Media::GetPNGBits(
        unsigned(file.size()), reinterpret_cast<unsigned char const*>(file.data()), 0.0f);
    ASSERT_TRUE(bits);
    EXPECT_EQ(bits->GetPixels()[0], 0xFF00FFFFu);
    EXPECT_EQ(bits->GetPixels()[1], 0xFF010203u);
}

namespace
{
struct ProgressLog
{
    std::vector<float> steps;
    int stopAfter = -1;
};

bool recordProgress(void* context, float fraction)
{
    ProgressLog* log = static_cast<ProgressLog*>(context);
    log->steps.push_back(fraction);
    return log->stopAfter < 0 || int(log->steps.size()) < log->stopAfter;
}
} // namespace

TEST_F(PngFiles, OptimisingFindsAFileNoLargerWithTheSamePixels)
{
    Bitmap const many = manyColors(120, 80, false);
    UI::PNG::PngComprParams weak;
    weak.level = 1;
    weak.strategy = 2; // Huffman only: easy to beat
    ASSERT_TRUE(UI::PNG::WritePngFile(path("plain.png").c_str(), many, false, false, weak, nullptr,
                                      nullptr, false));
    ProgressLog log;
    ASSERT_TRUE(UI::PNG::WritePngFile(path("small.png").c_str(), many, false, false, weak,
                                      &recordProgress, &log, true));
    EXPECT_LE(read("small.png").size(), read("plain.png").size());
    expectSameAt8Bits(read("small.png"), many, false);

    ASSERT_GE(log.steps.size(), 3u);
    for (std::size_t i = 1; i < log.steps.size(); ++i)
        EXPECT_GE(log.steps[i], log.steps[i - 1]);
    EXPECT_EQ(log.steps.back(), 1.0f);
}

TEST_F(PngFiles, StoppingTheSearchStillWritesAGoodFile)
{
    Bitmap const many = manyColors(30, 30, true);
    ProgressLog log;
    log.stopAfter = 2;
    ASSERT_TRUE(UI::PNG::WritePngFile(path("stopped.png").c_str(), many, true, false,
                                      UI::PNG::PngComprParams(), &recordProgress, &log, true));
    EXPECT_EQ(log.steps.size(), 3u); // two tries, then the final write
    expectSameAt8Bits(read("stopped.png"), many, true);
}

TEST_F(PngFiles, WritingFailsCleanly)
{
    Bitmap const many = manyColors(4, 4, false);
    EXPECT_FALSE(UI::PNG::WritePngFile((folder.Path() + "/no/such/folder/x.png").c_str(), many,
                                       false, false, UI::PNG::PngComprParams(), nullptr, nullptr,
                                       true));
    EXPECT_FALSE(UI::PNG::WritePngFile(path("empty.png").c_str(), Bitmap(), false, false,
                                       UI::PNG::PngComprParams(), nullptr, nullptr, false));
    // Settings libpng refuses end the write with false rather than the process.
    UI::PNG::PngComprParams bad;
    bad.windowBits = 99;
    bad.memoryLevel = 42;
    EXPECT_FALSE(UI::PNG::WritePngFile(path("bad.png").c_str(), many, false, false, bad, nullptr,
                                       nullptr, false));
}

TEST(PngDecodeImage, RefusesWhatIsNotAWholePng)
{
    Bitmap bitmap;
    unsigned char const junk[] = "definitely not a png file";
    EXPECT_EQ(UI::PNG::DecodePngImage(junk, sizeof junk, bitmap), 2);
    EXPECT_EQ(UI::PNG::DecodePngImage(nullptr, 0, bitmap), 2);

    TestSupport::PngSample sample;
    sample.width = 8, sample.height = 8, sample.colorType = PNG_COLOR_TYPE_GRAY,
    sample.bitDepth = 4;
    for (int i = 0; i < 64; ++i)
        sample.samples.push_back(unsigned(i % 16));
    std::string const file = TestSupport::MakePng(sample);
    EXPECT_EQ(UI::PNG::DecodePngImage(reinterpret_cast<unsigned char const*>(file.data()),
                                      unsigned(file.size() - 20), bitmap),
              2);
    ASSERT_EQ(UI::PNG::DecodePngImage(reinterpret_cast<unsigned char const*>(file.data()),
                                      unsigned(file.size()), bitmap),
              0);
    // Grey fills all three planes, widened to 8 bits.
    EXPECT_EQ(bitmap.red[0][3], 51.0f);
    EXPECT_EQ(bitmap.green[0][3], 51.0f);
    EXPECT_EQ(bitmap.blue[0][15 % 8], 7.0f * 17.0f);
}

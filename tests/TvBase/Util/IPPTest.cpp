#include "TvBase/Util/IPP.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

TEST(IPPBlocks, WorkInElementsRoundSaturateAndAlign)
{
    std::vector<int> source = {1, 2, 3, 4, 5};
    std::vector<int> destination(5, 0);
    IPP::Copy(3u, source.data(), destination.data());
    EXPECT_EQ(std::vector<int>({1, 2, 3, 0, 0}), destination);

    // Overlapping blocks move like memmove, in both directions.
    IPP::Move(4u, source.data(), source.data() + 1);
    EXPECT_EQ(std::vector<int>({1, 1, 2, 3, 4}), source);
    IPP::Move(4u, source.data() + 1, source.data());
    EXPECT_EQ(std::vector<int>({1, 2, 3, 4, 4}), source);

    std::vector<double> values(4, 1.5);
    IPP::Set(3u, -2.25, values.data() + 1);
    EXPECT_EQ(std::vector<double>({1.5, -2.25, -2.25, -2.25}), values);
    IPP::Zero(2u, values.data());
    EXPECT_EQ(std::vector<double>({0.0, 0.0, -2.25, -2.25}), values);

    // A count of zero touches nothing, even through null pointers.
    IPP::Copy(0u, static_cast<short const*>(nullptr), static_cast<short*>(nullptr));
    IPP::Zero(0u, static_cast<float*>(nullptr));
    { // Convert rounds and saturates.
        float const floats[] = {1.4f,     1.5f,      -1.5f,
                                40000.0f, -40000.0f, std::numeric_limits<float>::quiet_NaN()};
        short shorts[6];
        IPP::Convert(6u, floats, shorts);
        EXPECT_EQ(1, shorts[0]);
        EXPECT_EQ(2, shorts[1]);
        EXPECT_EQ(-2, shorts[2]);
        EXPECT_EQ(32767, shorts[3]);
        EXPECT_EQ(-32768, shorts[4]);
        EXPECT_EQ(0, shorts[5]);

        int const ints[] = {-5, 300, 77};
        unsigned char bytes[3];
        IPP::Convert(3u, ints, bytes);
        EXPECT_EQ(0, bytes[0]);
        EXPECT_EQ(255, bytes[1]);
        EXPECT_EQ(77, bytes[2]);

        unsigned int const big[] = {0xFFFFFFFFu};
        int clamped[1];
        IPP::Convert(1u, big, clamped);
        EXPECT_EQ(std::numeric_limits<int>::max(), clamped[0]);

        short const small[] = {-3, 12};
        double widened[2];
        IPP::Convert(2u, small, widened);
        EXPECT_EQ(-3.0, widened[0]);
        EXPECT_EQ(12.0, widened[1]);
    }
    { // Blocks are aligned and never null.
        float* const floats = IPP::Malloc_Float(33);
        unsigned char* const bytes = IPP::Malloc_Byte(0);
        short* const shorts = IPP::Malloc_Int16(7);
        double* const doubles = IPP::Malloc_Double(3);
        ASSERT_NE(nullptr, floats);
        ASSERT_NE(nullptr, bytes);
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(floats) % 64);
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(shorts) % 64);
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(doubles) % 64);
        IPP::Set(33u, 0.5f, floats);
        EXPECT_EQ(0.5f, floats[32]);
        IPP::Free(floats);
        IPP::Free(bytes);
        IPP::Free(shorts);
        IPP::Free(doubles);
        IPP::Free(nullptr);
        EXPECT_EQ(0, IPP::GetIppInitStatus());
        EXPECT_TRUE(IPP::DidIppInitSucceed());
    }
}

TEST(IPPImages, OperateInsideTheRectangleOnly)
{
    // Two rows of three pixels, rows four pixels apart: the fourth column is padding.
    std::vector<unsigned int> image(8, 0xDEADBEEFu);
    IPP::ImageSet(0x80402010u, image.data(), 16, 3, 2);
    EXPECT_EQ(std::vector<unsigned int>({0x80402010u, 0x80402010u, 0x80402010u, 0xDEADBEEFu,
                                         0x80402010u, 0x80402010u, 0x80402010u, 0xDEADBEEFu}),
              image);

    IPP::ImageAddConstant_InPlace(0x90010203u, image.data(), 16, 2, 1);
    EXPECT_EQ(0xFF412213u, image[0]);
    EXPECT_EQ(0xFF412213u, image[1]);
    EXPECT_EQ(0x80402010u, image[2]);
    EXPECT_EQ(0x80402010u, image[4]);

    std::vector<unsigned int> faded = {0xFFFF8000u, 0x80402001u};
    IPP::ImagePreMultiplyAlphaConstant_InPlace(128, faded.data(), 8, 2, 1);
    // 255 * 128 / 255 = 128; 128 * 128 / 255 = 64.25 -> 64; 64 -> 32.1 -> 32; 1 -> 0.5 -> 1.
    EXPECT_EQ(0x80804000u, faded[0]);
    EXPECT_EQ(0x40201001u, faded[1]);

    IPP::ImagePreMultiplyAlphaConstant_InPlace(0, faded.data(), 8, 0, 1);
    IPP::ImageSet(0, nullptr, 0, 4, 4);
    EXPECT_EQ(0x80804000u, faded[0]);
}

#include "TvBase/Util/SimpleRandGenerator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <ctime>
#include <vector>

TEST(SimpleRandGenerator, GivesTheWellKnownSeries)
{
    Util::SimpleRandGenerator random(checked_value<unsigned int>(1));
    std::vector<unsigned int> series;
    for (int i = 0; i < 10; ++i)
        series.push_back(random.GetNext());
    EXPECT_EQ(std::vector<unsigned int>(
                  {41, 18467, 6334, 26500, 19169, 15724, 11478, 29358, 26962, 24464}),
              series);
    EXPECT_EQ(1u, random.GetSeed());
    { // Matches the32 bit formula over a long run.
        // The wide state only adds high bits, which never reach the output.
        for (unsigned int seed : {0u, 12345u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        {
            Util::SimpleRandGenerator random{checked_value<unsigned int>(seed)};
            std::uint32_t reference = seed;
            for (int i = 0; i < 100000; ++i)
            {
                reference = reference * 214013u + 2531011u;
                unsigned int const expected = (reference >> 16) & 0x7FFF;
                unsigned int const got = random.GetNext();
                ASSERT_EQ(expected, got) << "seed " << seed << " step " << i;
            }
        }
    }
    { // Floats are the same series scaled by one over32767.
        std::uint32_t const bits = 0x38000100u;
        float scale;
        std::memcpy(&scale, &bits, sizeof scale);
        EXPECT_FLOAT_EQ(1.0f / 32767.0f, scale);

        Util::SimpleRandGenerator integers(checked_value<unsigned int>(99));
        Util::SimpleRandGenerator floats(checked_value<unsigned int>(99));
        for (int i = 0; i < 1000; ++i)
        {
            float const value = floats.GetNextFloat();
            EXPECT_EQ(static_cast<float>(integers.GetNext()) * scale, value);
            EXPECT_GE(value, 0.0f);
            EXPECT_LE(value, 1.0001f);
        }
    }
    { // Reseeding repeats and no seed takes the time.
        Util::SimpleRandGenerator random(checked_value<unsigned int>(5));
        unsigned int const first = random.GetNext();
        random.GetNext();
        random.Seed(checked_value<unsigned int>(5));
        EXPECT_EQ(first, random.GetNext());

        std::time_t const before = std::time(nullptr);
        Util::SimpleRandGenerator timed;
        std::time_t const after = std::time(nullptr);
        EXPECT_GE(timed.GetSeed(), static_cast<unsigned int>(before));
        EXPECT_LE(timed.GetSeed(), static_cast<unsigned int>(after));
    }
}

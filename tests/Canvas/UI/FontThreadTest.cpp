#include "Canvas/UI/Font.h"
#include "Canvas/UI/FreeTypeFont.h"
#include "tests/Canvas/UI/support/FontTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace FontTest;

// Workers may measure while the UI thread draws: all of it goes through the FreeType lock.
TEST(FontThreads, MeasuringAndDrawingFromSeveralThreadsAgree)
{
    char const* const texts[] = {"Checking for updates", "AVATAR", "0123456789", "Wolf",
                                 "\xC3\x84rger",         "k:+-"};
    UI::FreeTypeFont shared(nullptr, FileInfo(LiberationSans, 13.0f, 2, 1));
    std::vector<unsigned int> expectedWidths;
    for (char const* text : texts)
        expectedWidths.push_back(shared.GetStringWidth(text));
    Picture expected(120, 24, 0xFFFFFFFF);
    {
        UI::FreeTypeFont font(nullptr, FileInfo(LiberationSerif, 15.0f, 1, 1));
        DrawInto(font, expected, UI::Point(2, 2), "Drawn", 0xFF000000);
    }

    std::atomic<int> failures(0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(
            [&, t]
            {
                UI::FreeTypeFont own(nullptr, FileInfo(LiberationSerif, 15.0f, 1, 1));
                for (int round = 0; round < 40; ++round)
                {
                    for (size_t i = 0; i < expectedWidths.size(); ++i)
                        if (shared.GetStringWidth(texts[i]) != expectedWidths[i])
                            ++failures;
                    Picture picture(120, 24, 0xFFFFFFFF);
                    if (t % 2)
                    {
                        DrawInto(own, picture, UI::Point(2, 2), "Drawn", 0xFF000000);
                        if (picture.pixels != expected.pixels)
                            ++failures;
                    }
                    else
                        DrawInto(shared, picture, UI::Point(2, 2), texts[round % 6], 0xFF000000);
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(0, failures.load());
}

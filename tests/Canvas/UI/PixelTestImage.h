#pragma once

#include <cstddef>
#include <random>
#include <vector>

/// A plain pixel buffer for tests, with a guard band around it that no blit may touch.
struct PixelTestImage
{
    static constexpr int kGuard = 64;
    static constexpr unsigned int kGuardValue = 0xDEADBEEF;

    PixelTestImage(int w, int h, int s, unsigned int fill)
        : width(w), height(h), stride(s),
          storage(static_cast<std::size_t>(s) * h + 2 * kGuard, kGuardValue)
    {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < s; ++x)
                at(x, y) = fill;
    }

    unsigned int* bits() { return storage.data() + kGuard; }
    unsigned int& at(int x, int y) { return bits()[static_cast<std::size_t>(y) * stride + x]; }

    bool GuardsIntact() const
    {
        for (int i = 0; i < kGuard; ++i)
            if (storage[i] != kGuardValue || storage[storage.size() - 1 - i] != kGuardValue)
                return false;
        return true;
    }

    /// Random pixels; about a quarter fully transparent and a quarter opaque, so that every
    /// branch of the blits is taken.
    void Randomize(std::mt19937& random)
    {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < stride; ++x)
            {
                unsigned int const color = random() & 0xFFFFFF;
                unsigned int alpha = random() & 255;
                switch (random() % 4)
                {
                case 0:
                    alpha = 0;
                    break;
                case 1:
                    alpha = 255;
                    break;
                default:
                    break;
                }
                at(x, y) = (alpha << 24) | color;
            }
    }

    int width;
    int height;
    int stride;
    std::vector<unsigned int> storage;
};

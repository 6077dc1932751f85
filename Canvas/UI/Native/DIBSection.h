#pragma once

#include "Canvas/UI/Rect.h"

#include <boost/shared_ptr.hpp>

namespace UI
{
class DIBits;

namespace Native
{

/// The 32-bit target bitmap of a draw context: pixels 0xAARRGGBB, not premultiplied, rows
/// `GetStride()` pixels apart. The stride is the width rounded up to a multiple of 16 pixels so
/// that every row starts on a 16-pixel boundary; the padding pixels belong to the bitmap too.
class DIBSection
{
public:
    /// An empty section: size (0, 0), no bits, stride 0.
    DIBSection();
    /// Allocates `size`, all pixels zero (transparent black). A negative width or height leaves
    /// the bits null and the stride 0.
    explicit DIBSection(UI::Size const& size);
    ~DIBSection();
    DIBSection(DIBSection const&) = delete;
    DIBSection& operator=(DIBSection const&) = delete;

    UI::Size const& GetSize() const { return size; }
    int GetWidth() const { return size.width; }
    int GetHeight() const { return size.height; }
    /// Row distance in pixels; 0 when there are no bits.
    int GetStride() const { return stride; }
    /// Null when the section could not be made (negative size or out of memory).
    unsigned int* GetPixels() { return bits; }
    unsigned int const* GetPixels() const { return bits; }

    /// A copy of the size and of all stride-by-height pixels; the copy keeps the padded stride
    /// and has no alpha. Null when the section has no bits.
    boost::shared_ptr<UI::DIBits> GetBits() const;
    /// A new section of the same size with the same pixels.
    boost::shared_ptr<DIBSection> CopyContext() const;

private:
    void init(UI::Size const& newSize);

    UI::Size size;
    unsigned int* bits = nullptr; // from calloc, freed by the destructor
    int stride = 0;
};

} // namespace Native
} // namespace UI

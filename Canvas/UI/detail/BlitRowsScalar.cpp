// The scalar reference of the blit inner loops: the written arithmetic, pixel by pixel.

#include "Canvas/UI/detail/BlitRows.h"
#include "Canvas/UI/detail/PixelMath.h"

namespace UI
{
namespace detail
{
namespace
{

void blendPixelAlphaRow(unsigned int const* src, unsigned int* dst, int count)
{
    for (int x = 0; x < count; ++x)
        dst[x] = ComposePixel(src[x], dst[x], src[x] >> 24);
}

void blendScaledRow(unsigned int const* src, unsigned int* dst, int count, unsigned int alpha)
{
    for (int x = 0; x < count; ++x)
        dst[x] = ComposePixel(src[x], dst[x], ScaledWeight(src[x], alpha));
}

void curveRow(unsigned int const* src, unsigned int* dst, int count)
{
    for (int x = 0; x < count; ++x)
        dst[x] = CurvePixel(src[x], dst[x]);
}

void solidBoxRow(unsigned int* dst, int count, unsigned int keep, unsigned int add)
{
    for (int x = 0; x < count; ++x)
        dst[x] = SolidBoxPixel(dst[x], keep, add);
}

void fillRow(unsigned int* dst, int count, unsigned int color)
{
    for (int x = 0; x < count; ++x)
        dst[x] = color;
}

void scaleRow(unsigned int const* src, int srcStride, int rows, ScaleSpans spans, int count,
              unsigned int* dst)
{
    for (int x = 0; x < count; ++x)
        dst[x] = AveragePixels(src + spans.start[x], srcStride, rows, spans.count[x]);
}

} // namespace

BlitRowKernels const& GetScalarBlitRowKernels()
{
    static BlitRowKernels const kernels = {blendPixelAlphaRow, blendScaledRow, curveRow,
                                           solidBoxRow,        fillRow,        scaleRow};
    return kernels;
}

bool IsSimdLevelAvailable(SimdLevel level)
{
    switch (level)
    {
    case SimdLevel::Scalar:
    case SimdLevel::Sse2:
        return true; // the x86-64 baseline
    case SimdLevel::Avx2:
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2");
    }
    return false;
}

BlitRowKernels const& GetBlitRowKernels(SimdLevel level)
{
    switch (level)
    {
    case SimdLevel::Sse2:
        return GetSse2BlitRowKernels();
    case SimdLevel::Avx2:
        return GetAvx2BlitRowKernels();
    case SimdLevel::Scalar:
        break;
    }
    return GetScalarBlitRowKernels();
}

BlitRowKernels const& GetBlitRowKernels()
{
    static BlitRowKernels const& best =
        IsSimdLevelAvailable(SimdLevel::Avx2) ? GetAvx2BlitRowKernels() : GetSse2BlitRowKernels();
    return best;
}

} // namespace detail
} // namespace UI

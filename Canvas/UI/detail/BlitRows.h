#pragma once

// The inner loops of the blits, one row at a time, in three builds: the scalar reference, SSE2
// and AVX2. All three give bit-identical results; the tests hold the vector paths to the scalar
// one. The blits pick the best path the processor has, once.

namespace UI
{
namespace detail
{

/// Column spans of one resampled row: destination pixel j averages `count[j]` source columns
/// from `start[j]`.
struct ScaleSpans
{
    int const* start;
    int const* count;
};

struct BlitRowKernels
{
    /// Per-pixel source alpha: 255 copies the source pixel, 0 keeps, others blend.
    void (*blendPixelAlpha)(unsigned int const* src, unsigned int* dst, int count);
    /// Source alpha scaled by `alpha` (below 255), then as above.
    void (*blendScaled)(unsigned int const* src, unsigned int* dst, int count, unsigned int alpha);
    /// The coverage-keeping curve blend at alpha 255.
    void (*curve)(unsigned int const* src, unsigned int* dst, int count);
    /// Translucent solid box row: keep factor and the premixed color to add.
    void (*solidBox)(unsigned int* dst, int count, unsigned int keep, unsigned int add);
    /// Plain fill.
    void (*fill)(unsigned int* dst, int count, unsigned int color);
    /// One resampled row: `rows` source rows from `src` (`srcStride` apart) by the spans.
    void (*scaleRow)(unsigned int const* src, int srcStride, int rows, ScaleSpans spans, int count,
                     unsigned int* dst);
};

enum class SimdLevel
{
    Scalar,
    Sse2,
    Avx2,
};

/// Whether this processor can run `level`.
bool IsSimdLevelAvailable(SimdLevel level);
/// The kernels of `level`; the caller checks availability first.
BlitRowKernels const& GetBlitRowKernels(SimdLevel level);
/// The best kernels available, chosen at first use.
BlitRowKernels const& GetBlitRowKernels();

BlitRowKernels const& GetScalarBlitRowKernels();
BlitRowKernels const& GetSse2BlitRowKernels();
BlitRowKernels const& GetAvx2BlitRowKernels();

} // namespace detail
} // namespace UI

// The AVX2 build of the blit rows. This file alone is compiled for AVX2; it runs only where the
// processor says it can (see GetBlitRowKernels).

#include "Canvas/UI/detail/BlitRows.h"
#include "Canvas/UI/detail/PixelMath.h"

#include <immintrin.h>

#include <cstdint>

namespace UI
{
namespace detail
{
namespace
{

struct Avx2
{
    using I = __m256i;
    using F = __m256;
    static constexpr int lanes = 8;

    static I loadu(unsigned int const* p)
    {
        return _mm256_loadu_si256(reinterpret_cast<I const*>(p));
    }
    static I load(unsigned int const* p)
    {
        return _mm256_load_si256(reinterpret_cast<I const*>(p));
    }
    static void store(unsigned int* p, I v) { _mm256_store_si256(reinterpret_cast<I*>(p), v); }
    static I zero() { return _mm256_setzero_si256(); }
    static I set1(unsigned int v) { return _mm256_set1_epi32(static_cast<int>(v)); }
    static I set1x16(short v) { return _mm256_set1_epi16(v); }
    static F set1ps(float v) { return _mm256_set1_ps(v); }
    static I and_(I a, I b) { return _mm256_and_si256(a, b); }
    static I or_(I a, I b) { return _mm256_or_si256(a, b); }
    static I xor_(I a, I b) { return _mm256_xor_si256(a, b); }
    /// ~a & b.
    static I andnot(I a, I b) { return _mm256_andnot_si256(a, b); }
    static I cmpeq32(I a, I b) { return _mm256_cmpeq_epi32(a, b); }
    static I cmpgt32(I a, I b) { return _mm256_cmpgt_epi32(a, b); }
    template <int N>
    static I srli32(I v)
    {
        return _mm256_srli_epi32(v, N);
    }
    template <int N>
    static I slli32(I v)
    {
        return _mm256_slli_epi32(v, N);
    }
    template <int N>
    static I srli16(I v)
    {
        return _mm256_srli_epi16(v, N);
    }
    // Unpacks and packs work within each 128-bit half; used in pairs they keep pixel order.
    static I unpacklo8(I a, I b) { return _mm256_unpacklo_epi8(a, b); }
    static I unpackhi8(I a, I b) { return _mm256_unpackhi_epi8(a, b); }
    static I unpacklo32(I a, I b) { return _mm256_unpacklo_epi32(a, b); }
    static I unpackhi32(I a, I b) { return _mm256_unpackhi_epi32(a, b); }
    static I packus16(I a, I b) { return _mm256_packus_epi16(a, b); }
    static I mullo16(I a, I b) { return _mm256_mullo_epi16(a, b); }
    static I mulhiu16(I a, I b) { return _mm256_mulhi_epu16(a, b); }
    static I add16(I a, I b) { return _mm256_add_epi16(a, b); }
    static I sub16(I a, I b) { return _mm256_sub_epi16(a, b); }
    template <int N>
    static I slli16(I v)
    {
        return _mm256_slli_epi16(v, N);
    }
    /// Weights in the low byte of each 32-bit lane, spread by byte shuffles over the four 16-bit
    /// channel lanes of the low and high pixel pairs of each half.
    static void spreadWeights(I w32, I& lo, I& hi)
    {
        I const toLo = _mm256_setr_epi8(0, -1, 0, -1, 0, -1, 0, -1, 4, -1, 4, -1, 4, -1, 4, -1, 0,
                                        -1, 0, -1, 0, -1, 0, -1, 4, -1, 4, -1, 4, -1, 4, -1);
        I const toHi = _mm256_setr_epi8(8, -1, 8, -1, 8, -1, 8, -1, 12, -1, 12, -1, 12, -1, 12, -1,
                                        8, -1, 8, -1, 8, -1, 8, -1, 12, -1, 12, -1, 12, -1, 12, -1);
        lo = _mm256_shuffle_epi8(w32, toLo);
        hi = _mm256_shuffle_epi8(w32, toHi);
    }
    static I select(I mask, I a, I b) { return _mm256_blendv_epi8(b, a, mask); }
    static I addsu8(I a, I b) { return _mm256_adds_epu8(a, b); }
    static I maxu8(I a, I b) { return _mm256_max_epu8(a, b); }
    static bool allSet(I mask) { return _mm256_movemask_epi8(mask) == -1; }
    /// No bit of `bits` is set in any lane of `v`.
    static bool noBitsOf(I v, I bits) { return _mm256_testz_si256(v, bits) != 0; }
    /// Every bit of `bits` is set in every lane of `v`.
    static bool allBitsOf(I v, I bits) { return _mm256_testc_si256(v, bits) != 0; }
    static F cvtepi32(I v) { return _mm256_cvtepi32_ps(v); }
    static I cvtps(F v) { return _mm256_cvtps_epi32(v); }
    static F mulps(F a, F b) { return _mm256_mul_ps(a, b); }
};

#include "Canvas/UI/detail/BlitRowsSimd.inl"

} // namespace

BlitRowKernels const& GetAvx2BlitRowKernels()
{
    return kernelsT<Avx2>();
}

} // namespace detail
} // namespace UI

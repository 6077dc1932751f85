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
    static I packus16(I a, I b) { return _mm256_packus_epi16(a, b); }
    static I mullo16(I a, I b) { return _mm256_mullo_epi16(a, b); }
    static I mulhiu16(I a, I b) { return _mm256_mulhi_epu16(a, b); }
    /// Weights are kept in every byte of their 32-bit lane: from the low byte of each lane...
    static I weights(I w32)
    {
        I const lowByte = _mm256_setr_epi8(0, 0, 0, 0, 4, 4, 4, 4, 8, 8, 8, 8, 12, 12, 12, 12, 0, 0,
                                           0, 0, 4, 4, 4, 4, 8, 8, 8, 8, 12, 12, 12, 12);
        return _mm256_shuffle_epi8(w32, lowByte);
    }
    /// ...or straight from the alpha byte of the source pixels.
    static I sourceAlphaWeights(I s)
    {
        I const alphaByte =
            _mm256_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15, 3, 3, 3, 3, 7,
                             7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
        return _mm256_shuffle_epi8(s, alphaByte);
    }
    /// `blended` where the weight is 1 to 254; the source pixel where it is 255, the destination
    /// pixel where it is 0. With the weight in every byte, those two lanes are the ones equal to
    /// their own sign (-1 or 0), and the top bit of each byte tells them apart.
    static I takeEnds(I s, I d, I w, I blended)
    {
        I const ends = _mm256_cmpeq_epi32(w, _mm256_srai_epi32(w, 31));
        return _mm256_blendv_epi8(blended, _mm256_blendv_epi8(d, s, w), ends);
    }
    /// The blend kernel, each channel by one multiply-add of a byte pair: the source and the
    /// destination byte side by side, made signed by flipping their top bit, against w and
    /// 255 - w. The sum (s - 128) * w + (d - 128) * (255 - w) stays within -32640..32385, so it
    /// never saturates, and plus 32768 it is s * w + d * (255 - w) + 128 exactly. Adding 32768
    /// only flips the top bit of the byte kept, so one xor at the end does it for all channels
    /// and sets the alpha byte to 255 as well.
    static I blend(I s, I d, I w)
    {
        I const highBytes = _mm256_set1_epi32(static_cast<int>(0xFF00FF00u));
        I const signBits = _mm256_set1_epi32(static_cast<int>(0x80808080u));
        I const pairWeights = _mm256_xor_si256(w, highBytes); // w, 255 - w, w, 255 - w
        // Bytes s0 d0 s2 d2 (blue, red) and s1 d1 s3 d3 (green, alpha) of each pixel.
        I const blueRed = _mm256_xor_si256(select(highBytes, _mm256_slli_epi16(d, 8), s), signBits);
        I const greenAlpha =
            _mm256_xor_si256(select(highBytes, d, _mm256_srli_epi16(s, 8)), signBits);
        I const br = _mm256_maddubs_epi16(pairWeights, blueRed);
        I const ga = _mm256_maddubs_epi16(pairWeights, greenAlpha);
        // Blue and red from the high bytes of their sums, green from its sum's high byte where it
        // already stands, alpha 0 until the xor.
        I const greenByte = _mm256_set1_epi32(0x0000FF00);
        I const merged = select(greenByte, ga, _mm256_srli_epi16(br, 8));
        return _mm256_xor_si256(merged, _mm256_set1_epi32(static_cast<int>(0xFF808080u)));
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

// The SSE2 build of the blit rows: the x86-64 baseline.

#include "Canvas/UI/detail/BlitRows.h"
#include "Canvas/UI/detail/PixelMath.h"

#include <emmintrin.h>

#include <cstdint>

namespace UI
{
namespace detail
{
namespace
{

struct Sse2
{
    using I = __m128i;
    using F = __m128;
    static constexpr int lanes = 4;

    static I loadu(unsigned int const* p) { return _mm_loadu_si128(reinterpret_cast<I const*>(p)); }
    static I load(unsigned int const* p) { return _mm_load_si128(reinterpret_cast<I const*>(p)); }
    static void store(unsigned int* p, I v) { _mm_store_si128(reinterpret_cast<I*>(p), v); }
    static I zero() { return _mm_setzero_si128(); }
    static I set1(unsigned int v) { return _mm_set1_epi32(static_cast<int>(v)); }
    static I set1x16(short v) { return _mm_set1_epi16(v); }
    static F set1ps(float v) { return _mm_set1_ps(v); }
    static I and_(I a, I b) { return _mm_and_si128(a, b); }
    static I or_(I a, I b) { return _mm_or_si128(a, b); }
    /// ~a & b.
    static I andnot(I a, I b) { return _mm_andnot_si128(a, b); }
    static I cmpeq32(I a, I b) { return _mm_cmpeq_epi32(a, b); }
    static I cmpgt32(I a, I b) { return _mm_cmpgt_epi32(a, b); }
    template <int N>
    static I srli32(I v)
    {
        return _mm_srli_epi32(v, N);
    }
    template <int N>
    static I slli32(I v)
    {
        return _mm_slli_epi32(v, N);
    }
    template <int N>
    static I srli16(I v)
    {
        return _mm_srli_epi16(v, N);
    }
    static I unpacklo8(I a, I b) { return _mm_unpacklo_epi8(a, b); }
    static I unpackhi8(I a, I b) { return _mm_unpackhi_epi8(a, b); }
    static I packus16(I a, I b) { return _mm_packus_epi16(a, b); }
    static I mullo16(I a, I b) { return _mm_mullo_epi16(a, b); }
    static I mulhiu16(I a, I b) { return _mm_mulhi_epu16(a, b); }
    /// Weights are kept as they come, in the low byte of each 32-bit lane.
    static I weights(I w32) { return w32; }
    static I sourceAlphaWeights(I s) { return _mm_srli_epi32(s, 24); }
    /// `blended` where the weight is 1 to 254; the source pixel where it is 255, the destination
    /// pixel where it is 0.
    static I takeEnds(I s, I d, I w, I blended)
    {
        I const full = _mm_cmpeq_epi32(w, _mm_set1_epi32(255));
        I const none = _mm_cmpeq_epi32(w, _mm_setzero_si128());
        return select(none, d, select(full, s, blended));
    }
    /// The blend kernel per channel in 16-bit lanes: s * w + d * (255 - w) + 128 is computed as
    /// (s - d) * w + (d << 8) + 128 - d. The true value lies in 0..65535, so computing it modulo
    /// 2^16 with one multiply gives it exactly; (d << 8) + 128 comes straight from interleaving d
    /// above a byte of 128. The result is opaque.
    static I blend(I s, I d, I w)
    {
        I const zero = _mm_setzero_si128();
        I const w16 = _mm_or_si128(w, _mm_slli_epi32(w, 16));
        I const wlo = _mm_unpacklo_epi32(w16, w16);
        I const whi = _mm_unpackhi_epi32(w16, w16);
        I const half = _mm_set1_epi32(static_cast<int>(0x80808080u));
        I const dlo = _mm_unpacklo_epi8(d, zero);
        I const dhi = _mm_unpackhi_epi8(d, zero);
        I lo = _mm_mullo_epi16(_mm_sub_epi16(_mm_unpacklo_epi8(s, zero), dlo), wlo);
        I hi = _mm_mullo_epi16(_mm_sub_epi16(_mm_unpackhi_epi8(s, zero), dhi), whi);
        lo = _mm_add_epi16(lo, _mm_sub_epi16(_mm_unpacklo_epi8(half, d), dlo));
        hi = _mm_add_epi16(hi, _mm_sub_epi16(_mm_unpackhi_epi8(half, d), dhi));
        I const packed = _mm_packus_epi16(_mm_srli_epi16(lo, 8), _mm_srli_epi16(hi, 8));
        return _mm_or_si128(packed, _mm_set1_epi32(static_cast<int>(0xFF000000u)));
    }
    static I select(I mask, I a, I b)
    {
        return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
    }
    static I addsu8(I a, I b) { return _mm_adds_epu8(a, b); }
    static I maxu8(I a, I b) { return _mm_max_epu8(a, b); }
    static bool allSet(I mask) { return _mm_movemask_epi8(mask) == 0xFFFF; }
    /// No bit of `bits` is set in any lane of `v`.
    static bool noBitsOf(I v, I bits)
    {
        return allSet(_mm_cmpeq_epi32(_mm_and_si128(v, bits), _mm_setzero_si128()));
    }
    /// Every bit of `bits` is set in every lane of `v`.
    static bool allBitsOf(I v, I bits)
    {
        return allSet(_mm_cmpeq_epi32(_mm_and_si128(v, bits), bits));
    }
    static F cvtepi32(I v) { return _mm_cvtepi32_ps(v); }
    static I cvtps(F v) { return _mm_cvtps_epi32(v); }
    static F mulps(F a, F b) { return _mm_mul_ps(a, b); }
};

#include "Canvas/UI/detail/BlitRowsSimd.inl"

} // namespace

BlitRowKernels const& GetSse2BlitRowKernels()
{
    return kernelsT<Sse2>();
}

} // namespace detail
} // namespace UI

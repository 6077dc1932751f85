// The vector blit rows, written once over a small set of lane operations and instantiated for
// SSE2 (four pixels a step) and AVX2 (eight). Included by exactly one file per instruction set,
// inside an unnamed namespace, so that nothing compiled here is shared between the builds.
//
// The blend kernel and the form in which it takes its weights are the builds' own (`V::blend`,
// `V::weights`): each instruction set spreads weights and multiplies in its cheapest way.
// Weights that come from float arithmetic use the same operations in the same order as the
// reference and round with the processor's round-to-nearest-even, as lrintf does.
//
// Each row runs a scalar head until the destination is aligned to the vector width, the vector
// body, and a scalar tail.

/// Lanes of `a` where `mask` (whole 32-bit lanes) is set, otherwise of `b`.
template <class V>
typename V::I select(typename V::I mask, typename V::I a, typename V::I b)
{
    return V::select(mask, a, b);
}

/// Pixels to do before `dst + x` is aligned to the vector width, at most `count`.
template <class V>
int headCount(unsigned int const* dst, int count)
{
    int misaligned = static_cast<int>(
        (reinterpret_cast<std::uintptr_t>(dst) % sizeof(typename V::I)) / sizeof(unsigned int));
    int head = misaligned == 0 ? 0 : V::lanes - misaligned;
    return head < count ? head : count;
}

/// Composes with weights `w` in the build's form (0 to 255): 255 takes the source pixel, 0 keeps.
template <class V>
inline typename V::I composeLanes(typename V::I s, typename V::I d, typename V::I w)
{
    return V::takeEnds(s, d, w, V::blend(s, d, w));
}

template <class V>
void blendPixelAlphaRowT(unsigned int const* src, unsigned int* dst, int count)
{
    using I = typename V::I;
    I const alphaMask = V::set1(0xFF000000u);
    int x = 0;
    for (int head = headCount<V>(dst, count); x < head; ++x)
        dst[x] = ComposePixel(src[x], dst[x], src[x] >> 24);
    for (; x + V::lanes <= count; x += V::lanes)
    {
        I const s = V::loadu(src + x);
        // Whole runs of clear or opaque pixels are common in images: skip the arithmetic.
        if (V::noBitsOf(s, alphaMask))
            continue;
        if (V::allBitsOf(s, alphaMask))
        {
            V::store(dst + x, s);
            continue;
        }
        V::store(dst + x, composeLanes<V>(s, V::load(dst + x), V::sourceAlphaWeights(s)));
    }
    for (; x < count; ++x)
        dst[x] = ComposePixel(src[x], dst[x], src[x] >> 24);
}

template <class V>
void blendScaledRowT(unsigned int const* src, unsigned int* dst, int count, unsigned int alpha)
{
    using I = typename V::I;
    using F = typename V::F;
    F const k = V::set1ps(0.00392157f);
    F const fa = V::set1ps(static_cast<float>(alpha));
    int x = 0;
    for (int head = headCount<V>(dst, count); x < head; ++x)
        dst[x] = ComposePixel(src[x], dst[x], ScaledWeight(src[x], alpha));
    for (; x + V::lanes <= count; x += V::lanes)
    {
        I const s = V::loadu(src + x);
        I const a = V::cvtps(V::mulps(V::mulps(V::cvtepi32(V::template srli32<24>(s)), k), fa));
        if (V::allSet(V::cmpeq32(a, V::zero())))
            continue;
        V::store(dst + x, composeLanes<V>(s, V::load(dst + x), V::weights(a)));
    }
    for (; x < count; ++x)
        dst[x] = ComposePixel(src[x], dst[x], ScaledWeight(src[x], alpha));
}

template <class V>
void curveRowT(unsigned int const* src, unsigned int* dst, int count)
{
    using I = typename V::I;
    I const alphaMask = V::set1(0xFF000000u);
    int x = 0;
    for (int head = headCount<V>(dst, count); x < head; ++x)
        dst[x] = CurvePixel(src[x], dst[x]);
    for (; x + V::lanes <= count; x += V::lanes)
    {
        I const s = V::loadu(src + x);
        I const a = V::template srli32<24>(s);
        I const m0 = V::cmpeq32(a, V::zero());
        if (V::allSet(m0))
            continue;
        I const d = V::load(dst + x);
        // Lanes at 128 or more take the source color; the doubled weight there is discarded.
        I const high = V::cmpgt32(a, V::set1(127));
        I const color = select<V>(high, s, V::blend(s, d, V::weights(V::template slli32<1>(a))));
        I const coverage = V::and_(V::maxu8(s, d), alphaMask);
        I const r = V::or_(V::andnot(alphaMask, color), coverage);
        V::store(dst + x, select<V>(m0, d, r));
    }
    for (; x < count; ++x)
        dst[x] = CurvePixel(src[x], dst[x]);
}

template <class V>
void solidBoxRowT(unsigned int* dst, int count, unsigned int keep, unsigned int add)
{
    using I = typename V::I;
    I const zero = V::zero();
    I const keep16 = V::set1x16(static_cast<short>(keep));
    // x / 255 for any 16-bit x is (x * 0x8081) >> 23.
    I const div255 = V::set1x16(static_cast<short>(0x8081));
    I const addv = V::set1(add & 0xFFFFFF);
    I const opaque = V::set1(0xFF000000u);
    int x = 0;
    for (int head = headCount<V>(dst, count); x < head; ++x)
        dst[x] = SolidBoxPixel(dst[x], keep, add);
    for (; x + V::lanes <= count; x += V::lanes)
    {
        I const d = V::load(dst + x);
        I lo = V::mullo16(V::unpacklo8(d, zero), keep16);
        I hi = V::mullo16(V::unpackhi8(d, zero), keep16);
        lo = V::template srli16<7>(V::mulhiu16(lo, div255));
        hi = V::template srli16<7>(V::mulhiu16(hi, div255));
        V::store(dst + x, V::addsu8(V::or_(V::packus16(lo, hi), opaque), addv));
    }
    for (; x < count; ++x)
        dst[x] = SolidBoxPixel(dst[x], keep, add);
}

template <class V>
void fillRowT(unsigned int* dst, int count, unsigned int color)
{
    using I = typename V::I;
    I const c = V::set1(color);
    int x = 0;
    for (int head = headCount<V>(dst, count); x < head; ++x)
        dst[x] = color;
    for (; x + V::lanes <= count; x += V::lanes)
        V::store(dst + x, c);
    for (; x < count; ++x)
        dst[x] = color;
}

/// Spans above this many pixels could overflow the 32-bit lane sums; they go the scalar way,
/// which sums in 64 bits. Below it both paths convert the same exact integers.
int const kMaxVectorSpan = 1 << 23;
/// Up to this many pixels the channel sums fit 16-bit lanes (257 * 255 = 65535).
int const kMaxNarrowSpan = 257;

/// The channel sums of `rows` by `cols` pixels as four 32-bit lanes (blue, green, red, alpha).
__m128i sumSpan(unsigned int const* p, int srcStride, int rows, int cols)
{
    __m128i const zero = _mm_setzero_si128();
    if (rows * cols <= kMaxNarrowSpan)
    {
        // Two pixels a step in 16-bit lanes, folded together at the end.
        __m128i acc = zero;
        for (int y = 0; y < rows; ++y, p += srcStride)
        {
            int c = 0;
            for (; c + 2 <= cols; c += 2)
                acc = _mm_add_epi16(
                    acc, _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<__m128i const*>(p + c)),
                                           zero));
            if (c < cols)
                acc = _mm_add_epi16(
                    acc, _mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(p[c])), zero));
        }
        return _mm_unpacklo_epi16(_mm_add_epi16(acc, _mm_srli_si128(acc, 8)), zero);
    }
    __m128i acc = zero;
    for (int y = 0; y < rows; ++y, p += srcStride)
        for (int c = 0; c < cols; ++c)
        {
            __m128i const one = _mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(p[c])), zero);
            acc = _mm_add_epi32(acc, _mm_unpacklo_epi16(one, zero));
        }
    return acc;
}

/// Whether destination pixels x to x+3 average two columns each, side by side, as when halving.
bool sidePairs(ScaleSpans spans, int x)
{
    int const first = spans.start[x];
    for (int k = 0; k < 4; ++k)
        if (spans.count[x + k] != 2 || spans.start[x + k] != first + 2 * k)
            return false;
    return true;
}

/// Four destination pixels from eight source columns by `rows` rows (at most 128, so that the
/// sums fit 16-bit lanes), each channel summed, scaled by `scale` and rounded like the rest.
__m128i averagePairs(unsigned int const* p, int srcStride, int rows, __m128 scale)
{
    __m128i const zero = _mm_setzero_si128();
    __m128i acc0 = zero;
    __m128i acc1 = zero;
    __m128i acc2 = zero;
    __m128i acc3 = zero;
    for (int y = 0; y < rows; ++y, p += srcStride)
    {
        __m128i const v0 = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
        __m128i const v1 = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p + 4));
        acc0 = _mm_add_epi16(acc0, _mm_unpacklo_epi8(v0, zero));
        acc1 = _mm_add_epi16(acc1, _mm_unpackhi_epi8(v0, zero));
        acc2 = _mm_add_epi16(acc2, _mm_unpacklo_epi8(v1, zero));
        acc3 = _mm_add_epi16(acc3, _mm_unpackhi_epi8(v1, zero));
    }
    // Each accumulator holds two neighbouring columns; fold them into one sum per pixel.
    __m128i const s01 =
        _mm_add_epi16(_mm_unpacklo_epi64(acc0, acc1), _mm_unpackhi_epi64(acc0, acc1));
    __m128i const s23 =
        _mm_add_epi16(_mm_unpacklo_epi64(acc2, acc3), _mm_unpackhi_epi64(acc2, acc3));
    auto average = [&](__m128i sums)
    { return _mm_cvtps_epi32(_mm_mul_ps(_mm_cvtepi32_ps(sums), scale)); };
    __m128i const a0 = average(_mm_unpacklo_epi16(s01, zero));
    __m128i const a1 = average(_mm_unpackhi_epi16(s01, zero));
    __m128i const a2 = average(_mm_unpacklo_epi16(s23, zero));
    __m128i const a3 = average(_mm_unpackhi_epi16(s23, zero));
    return _mm_packus_epi16(_mm_packs_epi32(a0, a1), _mm_packs_epi32(a2, a3));
}

/// One resampled row. Each destination pixel sums its span with the four channels side by side
/// in one 128-bit register.
void scaleRowVector(unsigned int const* src, int srcStride, int rows, ScaleSpans spans, int count,
                    unsigned int* dst)
{
    __m128i const zero = _mm_setzero_si128();
    // Neighbouring pixels mostly share a span width: keep 1/count instead of dividing each time.
    int scaleCount = 0;
    __m128 scale = _mm_setzero_ps();
    for (int x = 0; x < count; ++x)
    {
        if (rows <= 128 && x + 4 <= count && sidePairs(spans, x))
        {
            if (rows * 2 != scaleCount)
            {
                scaleCount = rows * 2;
                scale = _mm_set1_ps(1.0f / static_cast<float>(scaleCount));
            }
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x),
                             averagePairs(src + spans.start[x], srcStride, rows, scale));
            x += 3;
            continue;
        }
        int const cols = spans.count[x];
        unsigned int const* p = src + spans.start[x];
        if (rows == 1 && cols == 1)
        {
            dst[x] = *p;
            continue;
        }
        if (rows * cols > kMaxVectorSpan)
        {
            dst[x] = AveragePixels(p, srcStride, rows, cols);
            continue;
        }
        if (rows * cols != scaleCount)
        {
            scaleCount = rows * cols;
            scale = _mm_set1_ps(1.0f / static_cast<float>(scaleCount));
        }
        __m128i const sum = sumSpan(p, srcStride, rows, cols);
        __m128i const avg = _mm_cvtps_epi32(_mm_mul_ps(_mm_cvtepi32_ps(sum), scale));
        __m128i const packed = _mm_packus_epi16(_mm_packs_epi32(avg, zero), zero);
        dst[x] = static_cast<unsigned int>(_mm_cvtsi128_si32(packed));
    }
}

template <class V>
BlitRowKernels const& kernelsT()
{
    static BlitRowKernels const kernels = {
        blendPixelAlphaRowT<V>, blendScaledRowT<V>, curveRowT<V>,
        solidBoxRowT<V>,        fillRowT<V>,        scaleRowVector};
    return kernels;
}

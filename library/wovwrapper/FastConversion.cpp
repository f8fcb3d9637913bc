#include "library/wovwrapper/FastConversion.h"

#if defined(__SSE2__) || defined(_M_X64)

#include <emmintrin.h>

namespace
{

constexpr float FullScale = 32767.0F;

/// Four samples as 32-bit integers, clamped above only. The order of min's operands matters: of 1 and a NaN it takes the second
/// operand, and what is no number, or far below -1, converts to the least integer.
__m128i ConvertFour(const uint8_t* samples)
{
    const __m128 x = _mm_loadu_ps(static_cast<const float*>(static_cast<const void*>(samples)));
    const __m128 scaled = _mm_mul_ps(_mm_min_ps(_mm_set1_ps(1.0F), x), _mm_set1_ps(FullScale));
    const __m128 half = _mm_or_ps(_mm_and_ps(scaled, _mm_set1_ps(-0.0F)), _mm_set1_ps(0.5F));
    return _mm_cvttps_epi32(_mm_add_ps(scaled, half));
}

} // namespace

std::size_t ConvertManyAtOnce(const uint8_t* samples, std::size_t count, int16_t* frame)
{
    constexpr std::size_t Step = 8;
    const __m128i least = _mm_set1_epi16(-32767);
    std::size_t i = 0;
    for (; i + Step <= count; i += Step)
    {
        const __m128i low = ConvertFour(samples + i * sizeof(float));
        const __m128i high = ConvertFour(samples + (i + Step / 2) * sizeof(float));
        // Packing clamps to 16 bits; the lower clamp is done there, on eight samples at once.
        const __m128i packed = _mm_max_epi16(_mm_packs_epi32(low, high), least);
        _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(frame + i)), packed);
    }
    return i;
}

#else

std::size_t ConvertManyAtOnce(const uint8_t* /*samples*/, std::size_t /*count*/, int16_t* /*frame*/)
{
    return 0;
}

#endif

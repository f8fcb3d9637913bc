#include "library/wovwrapper/SampleConversion.h"

#include "library/wovwrapper/FastConversion.h"

#include <cstring>

namespace
{

constexpr float FullScale = 32767.0F;

} // namespace

void ConvertSamplesPlain(const uint8_t* samples, std::size_t count, int16_t* frame)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        float x = 0.0F;
        std::memcpy(&x, samples + i * sizeof(x), sizeof(x));
        const float clamped = x > 1.0F ? 1.0F : (-1.0F < x ? x : -1.0F);
        const float scaled = clamped * FullScale;
        frame[i] = static_cast<int16_t>(scaled > 0.0F ? scaled + 0.5F : scaled - 0.5F);
    }
}

void ConvertSamples(const uint8_t* samples, std::size_t count, int16_t* frame)
{
    const std::size_t converted = ConvertManyAtOnce(samples, count, frame);
    ConvertSamplesPlain(samples + converted * sizeof(float), count - converted, frame + converted);
}

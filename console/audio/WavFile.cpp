#include "console/audio/WavFile.h"

#include "console/audio/SampleTime.h"
#include "firmware/LittleEndian.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace velox::console
{

namespace
{

constexpr uint16_t BytesPerSample = 2;

void AddText(std::string_view text, std::vector<uint8_t>* bytes)
{
    bytes->insert(bytes->end(), text.begin(), text.end());
}

template <typename Number>
void AddNumber(Number number, std::vector<uint8_t>* bytes)
{
    bytes->resize(bytes->size() + sizeof(number));
    firmware::WriteUnsigned(number, bytes->size() - sizeof(number), *bytes);
}

} // namespace

std::vector<uint8_t> WavBytes(std::span<const float> samples)
{
    constexpr uint32_t HeadAfterSize = 36;
    constexpr uint32_t FormatSize = 16;
    constexpr uint16_t Pcm = 1;
    constexpr uint16_t Channels = 1;
    const auto dataSize = static_cast<uint32_t>(samples.size() * BytesPerSample);
    std::vector<uint8_t> bytes;
    AddText("RIFF", &bytes);
    AddNumber(HeadAfterSize + dataSize, &bytes);
    AddText("WAVEfmt ", &bytes);
    AddNumber(FormatSize, &bytes);
    AddNumber(Pcm, &bytes);
    AddNumber(Channels, &bytes);
    AddNumber(uint32_t{SamplesPerSecond}, &bytes);
    AddNumber(uint32_t{SamplesPerSecond * BytesPerSample}, &bytes);
    AddNumber(BytesPerSample, &bytes);
    AddNumber(uint16_t{8 * BytesPerSample}, &bytes);
    AddText("data", &bytes);
    AddNumber(dataSize, &bytes);
    for (const float sample : samples)
    {
        const long value = std::clamp(std::lround(sample * 32768.0F), -32768L, 32767L);
        AddNumber(static_cast<uint16_t>(value), &bytes);
    }
    return bytes;
}

} // namespace velox::console

#include "console/audio/WavFile.h"

#include "console/audio/SampleTime.h"
#include "firmware/LittleEndian.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace velox::console
{

std::vector<uint8_t> WavBytes(std::span<const float> samples)
{
    using namespace std::string_view_literals;
    // Format 1 (PCM), 1 channel, the rate, bytes per second, bytes per frame, bits per sample.
    constexpr std::string_view Head = "RIFF\0\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x80\x3E\0\0\0\x7D\0\0\2\0\x10\0data\0\0\0\0"sv;
    constexpr std::size_t WholeSizeAt = 4;
    constexpr std::size_t DataSizeAt = 40;
    static_assert(SamplesPerSecond == 0x3E80 && Head.size() == DataSizeAt + sizeof(uint32_t));
    std::vector<uint8_t> bytes(Head.begin(), Head.end());
    bytes.resize(Head.size() + samples.size() * sizeof(int16_t));
    firmware::WriteUnsigned(static_cast<uint32_t>(bytes.size() - WholeSizeAt - sizeof(uint32_t)), WholeSizeAt, bytes);
    firmware::WriteUnsigned(static_cast<uint32_t>(bytes.size() - Head.size()), DataSizeAt, bytes);
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const auto value = static_cast<int16_t>(std::clamp(std::lround(samples[i] * 32768.0F), -32768L, 32767L));
        firmware::WriteUnsigned(static_cast<uint16_t>(value), Head.size() + i * sizeof(value), bytes);
    }
    return bytes;
}

} // namespace velox::console

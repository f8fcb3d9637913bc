#include "tests/console/support/SoundFile.h"

#include <cmath>
#include <cstring>
#include <fstream>

namespace SoundFile
{

namespace
{

template <typename Number>
std::string Bytes(Number number)
{
    std::string bytes(sizeof(number), '\0');
    std::memcpy(bytes.data(), &number, sizeof(number));
    return bytes;
}

std::string Chunk(const std::string& name, const std::string& content)
{
    return name + Bytes(static_cast<uint32_t>(content.size())) + content;
}

std::string File(uint16_t format, int rate, int channels, uint16_t bytesPerSample, const std::string& data)
{
    const auto frame = static_cast<uint16_t>(channels * bytesPerSample);
    const std::string head = Bytes(format) + Bytes(static_cast<uint16_t>(channels)) + Bytes(static_cast<uint32_t>(rate)) +
                             Bytes(static_cast<uint32_t>(rate * frame)) + Bytes(frame) +
                             Bytes(static_cast<uint16_t>(8 * bytesPerSample));
    return Chunk("RIFF", "WAVE" + Chunk("fmt ", head) + Chunk("data", data));
}

} // namespace

std::string Wav(std::span<const float> interleaved, int rate, int channels)
{
    std::string data;
    for (const float sample : interleaved)
    {
        data += Bytes(static_cast<int16_t>(std::lround(32767.0F * sample)));
    }
    return File(1, rate, channels, 2, data);
}

std::string FloatWav(std::span<const float> samples, int rate)
{
    return File(3, rate, 1, 4, {reinterpret_cast<const char*>(samples.data()), samples.size_bytes()});
}

void Write(const std::filesystem::path& file, const std::string& bytes)
{
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace SoundFile

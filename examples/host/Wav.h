#pragma once

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

/// The bytes of a file. Throws when it cannot be read.
inline std::vector<uint8_t> ReadFileBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        throw std::runtime_error("Cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The samples of a WAV file that has the library's format already: one channel, 16000 per second, 16-bit or 32-bit float. Throws
/// when the file is another one. The library itself checks nothing of this: a buffer carries no description of its format.
inline std::vector<float> ReadWav(const std::string& path)
{
    const std::vector<uint8_t> file = ReadFileBytes(path);
    const auto number = [&file](std::size_t offset, std::size_t bytes) {
        uint32_t value = 0;
        std::memcpy(&value, file.data() + offset, bytes);
        return value;
    };
    constexpr std::size_t ChunkHead = 8;
    uint32_t format = 0, bits = 0;
    for (std::size_t at = 12; at + ChunkHead <= file.size(); at += ChunkHead + number(at + 4, 4) + number(at + 4, 4) % 2)
    {
        const std::size_t content = at + ChunkHead, length = number(at + 4, 4);
        if (length > file.size() - content)
        {
            break; // the file is cut
        }
        if (std::memcmp(&file[at], "fmt ", 4) == 0 && length >= 16 && number(content + 2, 2) == 1 &&
            number(content + 4, 4) == 16000)
        {
            format = number(content, 2);
            bits = number(content + 14, 2);
        }
        else if (std::memcmp(&file[at], "data", 4) == 0 && format == 3 && bits == 32)
        {
            std::vector<float> samples(length / sizeof(float));
            std::memcpy(samples.data(), file.data() + content, samples.size() * sizeof(float));
            return samples;
        }
        else if (std::memcmp(&file[at], "data", 4) == 0 && format == 1 && bits == 16)
        {
            std::vector<float> samples(length / sizeof(int16_t));
            for (std::size_t i = 0; i < samples.size(); ++i)
            {
                samples[i] = static_cast<float>(static_cast<int16_t>(number(content + i * sizeof(int16_t), 2))) / 32768.0F;
            }
            return samples;
        }
    }
    throw std::runtime_error(path + " is no WAV file of one channel, 16 kHz and 16 bits or 32-bit float");
}

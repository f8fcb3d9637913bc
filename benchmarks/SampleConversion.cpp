#include "library/wovwrapper/SampleConversion.h"

#include "benchmarks/Measurement.h"

#include <benchmark/benchmark.h>
#include <samplerate.h>
#include <sndfile.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

namespace
{

/// 0.45 of memcpy's throughput, and five times that of the two libraries.
constexpr double MemcpyGoal = 1 / 0.45;
constexpr double LibraryGoal = 1 / 5.0;

constexpr std::size_t TenSeconds = 160000;

/// Ten seconds of noise, and where each way of converting them leaves its result.
struct Audio
{
    Audio()
    {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> amplitude(-1.0F, 1.0F);
        std::generate(samples.begin(), samples.end(), [&] { return amplitude(random); });
    }

    std::vector<float> samples = std::vector<float>(TenSeconds);
    std::vector<int16_t> frame = std::vector<int16_t>(TenSeconds);
    std::vector<float> copy = std::vector<float>(TenSeconds);
};

void Convert(Audio& audio)
{
    ConvertSamples(static_cast<const uint8_t*>(static_cast<const void*>(audio.samples.data())), TenSeconds, audio.frame.data());
    benchmark::ClobberMemory();
}

void Copy(Audio& audio)
{
    std::memcpy(audio.copy.data(), audio.samples.data(), TenSeconds * sizeof(float));
    benchmark::ClobberMemory();
}

void ConvertWithSamplerate(Audio& audio)
{
    src_float_to_short_array(audio.samples.data(), audio.frame.data(), static_cast<int>(TenSeconds));
    benchmark::ClobberMemory();
}

/// A headerless 16-bit file in memory, for libsndfile, whose conversion is reached by writing floats to it.
class MemoryFile
{
public:
    MemoryFile()
    {
        SF_VIRTUAL_IO operations{};
        operations.get_filelen = [](void*) {
            return static_cast<sf_count_t>(TenSeconds * sizeof(int16_t));
        };
        operations.seek = [](sf_count_t offset, int whence, void* file) {
            auto* memory = static_cast<MemoryFile*>(file);
            memory->position = offset + (whence == SEEK_CUR ? memory->position : 0);
            return memory->position;
        };
        operations.tell = [](void* file) {
            return static_cast<MemoryFile*>(file)->position;
        };
        operations.write = [](const void* bytes, sf_count_t count, void* file) {
            auto* memory = static_cast<MemoryFile*>(file);
            std::memcpy(memory->content.data() + memory->position, bytes, static_cast<std::size_t>(count));
            memory->position += count;
            return count;
        };
        operations.read = [](void*, sf_count_t, void*) {
            return sf_count_t{0};
        };
        SF_INFO format{};
        format.samplerate = 16000;
        format.channels = 1;
        format.format = SF_FORMAT_RAW | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE;
        sound.reset(sf_open_virtual(&operations, SFM_WRITE, &format, this));
        if (sound == nullptr)
        {
            throw std::runtime_error("libsndfile opens no file in memory");
        }
        // As the engine's samples: what is out of range is clamped.
        sf_command(sound.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    }

    void Write(const Audio& audio)
    {
        position = 0;
        if (sf_writef_float(sound.get(), audio.samples.data(), TenSeconds) != static_cast<sf_count_t>(TenSeconds))
        {
            throw std::runtime_error("libsndfile does not write all samples");
        }
        benchmark::ClobberMemory();
    }

private:
    struct Close
    {
        void operator()(SNDFILE* file) const
        {
            sf_close(file);
        }
    };

    sf_count_t position = 0;
    std::vector<uint8_t> content = std::vector<uint8_t>(TenSeconds * sizeof(int16_t));
    std::unique_ptr<SNDFILE, Close> sound;
};

} // namespace

void RegisterSampleConversion()
{
    const auto audio = std::make_shared<Audio>();
    const auto file = std::make_shared<MemoryFile>();
    const auto convert = [audio] {
        Convert(*audio);
    };
    Register({"ConvertSamples, 10 s, to memcpy", MemcpyGoal, convert, [audio] {
                  Copy(*audio);
              }});
    Register({"ConvertSamples, 10 s, to libsamplerate", LibraryGoal, convert, [audio] {
                  ConvertWithSamplerate(*audio);
              }});
    Register({"ConvertSamples, 10 s, to libsndfile", LibraryGoal, convert, [audio, file] {
                  file->Write(*audio);
              }});
}

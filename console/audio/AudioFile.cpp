#include "console/audio/AudioFile.h"

#include "console/audio/OpenSound.h"
#include "console/audio/Resampler.h"
#include "console/audio/SampleTime.h"
#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <optional>
#include <span>

namespace velox::console
{

namespace
{

constexpr sf_count_t BlockFrames = 65536;

[[noreturn]] void FailSound(const std::filesystem::path& file, const std::string& what, const std::string& fix)
{
    throw CommandFailure(ExitCode::BadInput, Utf8(file) + " " + what, fix);
}

/// What is no file that could be a sound is told apart before a decoder looks at it.
void CheckFile(const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
    {
        FailSound(file, "is a folder, not a recording.", "Name the recordings in it.");
    }
    if (!std::ifstream(file, std::ios::binary))
    {
        FailSound(file, "cannot be opened.", "Check the name, and that you may read the file.");
    }
    if (std::filesystem::file_size(file, error) == 0)
    {
        FailSound(file, "is empty: it has no bytes.", "Record it again.");
    }
}

/// A compressed format that is known by the file's first bytes, for which a decoder may be missing; null for others.
const char* CompressedFormat(const std::filesystem::path& file)
{
    std::array<char, 4> head{};
    std::ifstream(file, std::ios::binary).read(head.data(), head.size());
    const std::string_view begins(head.data(), head.size());
    return begins == "OggS" ? "Ogg" : begins.starts_with("ID3") || begins.starts_with("\xFF\xFB") ? "MP3" : nullptr;
}

/// Bytes of samples that a WAV file's head promises beyond the file's end; 0 for other formats, and for a length that programs
/// write when they do not know it yet.
std::streamoff MissingBytes(const std::filesystem::path& file)
{
    constexpr uint32_t LeastUnknown = 0x7FFFF000;
    std::ifstream stream(file, std::ios::binary);
    std::array<char, 12> head{};
    stream.read(head.data(), head.size());
    if (std::string_view(head.data(), 4) != "RIFF")
    {
        return 0;
    }
    for (std::array<char, 8> chunk{}; stream.read(chunk.data(), chunk.size());)
    {
        const std::streamoff length =
            firmware::ReadUnsigned<uint32_t>({reinterpret_cast<const uint8_t*>(chunk.data()), chunk.size()}, sizeof(uint32_t));
        const std::streamoff begin = stream.tellg();
        if (std::string_view(chunk.data(), 4) == "data")
        {
            const std::streamoff there = stream.seekg(0, std::ios::end).tellg() - begin;
            return length >= LeastUnknown ? 0 : std::max<std::streamoff>(length - there, 0);
        }
        stream.seekg(length + length % 2, std::ios::cur);
    }
    return 0;
}

} // namespace

/// What is found out about the sound on the way.
struct AudioStream::Listened
{
    std::size_t beyondFullScale = 0;
    float peak = 0.0F;
    double channelEnergy = 0.0; ///< mean of the channels'
    double mixedEnergy = 0.0;

    void Add(std::span<const float> interleaved, std::span<const float> mono)
    {
        double energy = 0.0;
        for (const float sample : interleaved)
        {
            energy += static_cast<double>(sample) * static_cast<double>(sample);
            peak = std::max(peak, std::abs(sample));
            beyondFullScale += std::abs(sample) > 1.0F ? 1U : 0U;
        }
        channelEnergy += energy * static_cast<double>(mono.size()) / static_cast<double>(interleaved.size());
        for (const float sample : mono)
        {
            mixedEnergy += static_cast<double>(sample) * static_cast<double>(sample);
        }
    }

    std::vector<std::string> Warnings() const
    {
        constexpr double MostLost = 0.02; // 17 dB; what channels have in common loses nothing, what they do not have 3 dB
        std::vector<std::string> warnings;
        if (beyondFullScale > 0)
        {
            warnings.push_back(
                fmt::format("{} samples lie beyond full scale, up to {:.3g} times: a microphone's converter clips them",
                            beyondFullScale, peak));
        }
        if (channelEnergy > 0.0 && mixedEnergy < MostLost * channelEnergy)
        {
            warnings.emplace_back("the channels cancel each other: one of them is upside down, and their mean is nearly silent");
        }
        return warnings;
    }
};

struct AudioStream::State
{
    explicit State(const std::filesystem::path& soundFile) : file(soundFile)
    {
        CheckFile(file);
        sound = OpenSound(file, &info);
        if (const char* format = sound ? nullptr : CompressedFormat(file))
        {
            FailSound(file, fmt::format("is an {} file, which this program does not decode.", format),
                      "Convert it to WAV with any sound editor.");
        }
        if (!sound)
        {
            FailSound(file, "is not a sound file that this program knows.", "Give a WAV or FLAC file.");
        }
        resampler.emplace(Utf8(file), info.samplerate);
    }

    /// The mean of the channels, in the file's rate. @return false at the end
    bool ReadMono()
    {
        const auto channels = static_cast<std::size_t>(info.channels);
        interleaved.resize(static_cast<std::size_t>(BlockFrames) * channels);
        const sf_count_t got = sf_readf_float(sound.get(), interleaved.data(), BlockFrames);
        mono.resize(static_cast<std::size_t>(std::max<sf_count_t>(got, 0)));
        const auto read = std::span(interleaved).first(mono.size() * channels);
        for (std::size_t i = 0; i < mono.size(); ++i)
        {
            float sum = 0.0F;
            for (std::size_t c = 0; c < channels; ++c)
            {
                sum += read[i * channels + c];
            }
            mono[i] = sum / static_cast<float>(channels);
        }
        frames += got;
        if (!mono.empty())
        {
            listened.Add(read, mono);
        }
        return !mono.empty();
    }

    void CheckEnd() const
    {
        const double seconds = static_cast<double>(frames) / info.samplerate;
        if (sf_error(sound.get()) != SF_ERR_NO_ERROR || (info.frames < SF_COUNT_MAX && frames < info.frames))
        {
            FailSound(file, fmt::format("can be read for {:.2f} s only: the file is damaged or cut.", seconds),
                      "Copy or record it again.");
        }
        if (const std::streamoff missing = MissingBytes(file); missing > 0)
        {
            FailSound(file, fmt::format("is cut: it ends after {:.2f} s, {} bytes before its head says.", seconds, missing),
                      "Copy or record it again.");
        }
        if (frames == 0)
        {
            FailSound(file, "holds no sound: it has a head but no samples.", "Record it again.");
        }
    }

    bool Read(std::vector<float>* block)
    {
        block->clear();
        while (block->empty() && !ended)
        {
            ended = !ReadMono();
            if (ended)
            {
                CheckEnd();
            }
            resampler->Convert(mono, ended, block);
        }
        if (!std::ranges::all_of(*block, [](float sample) { return std::isfinite(sample); }))
        {
            FailSound(file, "holds samples that are not numbers (NaN or infinite), or too large.",
                      "Export it again as 16-bit WAV.");
        }
        samples += static_cast<int64_t>(block->size());
        if (samples == 0)
        {
            FailSound(file,
                      fmt::format("holds no sound: at 16 kHz nothing is left of {} at {} Hz.",
                                  Counted(static_cast<std::size_t>(frames), "sample"), info.samplerate),
                      "Record it again.");
        }
        return !block->empty();
    }

    std::filesystem::path file;
    SF_INFO info{};
    OpenedSound sound;
    std::optional<Resampler> resampler;
    std::vector<float> interleaved;
    std::vector<float> mono;
    sf_count_t frames = 0; ///< read from the file
    int64_t samples = 0;   ///< handed out
    bool ended = false;
    Listened listened;
};

AudioStream::AudioStream(const std::filesystem::path& file) : state(std::make_unique<State>(file))
{
}

AudioStream::AudioStream(AudioStream&&) noexcept = default;
AudioStream& AudioStream::operator=(AudioStream&&) noexcept = default;
AudioStream::~AudioStream() = default;

bool AudioStream::Read(std::vector<float>* block)
{
    return state->Read(block);
}

double AudioStream::Share() const
{
    const bool known = state->info.frames > 0 && state->info.frames < SF_COUNT_MAX;
    return known ? std::min(1.0, static_cast<double>(state->frames) / static_cast<double>(state->info.frames)) : 0.0;
}

Audio AudioStream::Summary() const
{
    return {
        {}, ConversionText(state->info.samplerate, state->info.channels), Seconds(state->samples), state->listened.Warnings()};
}

Audio ReadAudio(const std::filesystem::path& file)
{
    AudioStream stream(file);
    std::vector<float> samples;
    for (std::vector<float> block; stream.Read(&block);)
    {
        samples.insert(samples.end(), block.begin(), block.end());
    }
    Audio audio = stream.Summary();
    audio.samples = std::move(samples);
    return audio;
}

} // namespace velox::console

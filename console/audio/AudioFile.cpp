#include "console/audio/AudioFile.h"

#include "console/audio/SampleTime.h"
#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"

#include <fmt/format.h>

#include <samplerate.h>
#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>

namespace velox::console
{

namespace
{

constexpr sf_count_t BlockFrames = 65536;

/// libsndfile opens files by narrow names, which under Windows cannot hold every name: it gets the file through these functions.
struct FileAccess
{
    std::ifstream stream;
    sf_count_t length = 0;
};

FileAccess& Access(void* user)
{
    return *static_cast<FileAccess*>(user);
}

sf_count_t Length(void* user)
{
    return Access(user).length;
}

sf_count_t Seek(sf_count_t offset, int whence, void* user)
{
    constexpr std::array Origins{std::ios::beg, std::ios::cur, std::ios::end};
    FileAccess& file = Access(user);
    file.stream.clear();
    file.stream.seekg(offset, Origins.at(static_cast<std::size_t>(whence)));
    return file.stream.tellg();
}

sf_count_t Read(void* bytes, sf_count_t count, void* user)
{
    FileAccess& file = Access(user);
    file.stream.read(static_cast<char*>(bytes), count);
    const auto got = static_cast<sf_count_t>(file.stream.gcount());
    file.stream.clear();
    return got;
}

sf_count_t Write(const void*, sf_count_t, void*)
{
    return 0;
}

sf_count_t Tell(void* user)
{
    return Access(user).stream.tellg();
}

struct Close
{
    void operator()(SNDFILE* file) const
    {
        sf_close(file);
    }
};
using SoundFile = std::unique_ptr<SNDFILE, Close>;

[[noreturn]] void Fail(const std::filesystem::path& file, const std::string& what, const std::string& fix)
{
    throw CommandFailure(ExitCode::BadInput, Utf8(file) + " " + what, fix);
}

FileAccess Open(const std::filesystem::path& file)
{
    FileAccess access{std::ifstream(file, std::ios::binary), 0};
    if (std::filesystem::is_directory(file))
    {
        Fail(file, "is a folder, not a recording.", "Name the recordings in it.");
    }
    if (!access.stream)
    {
        Fail(file, "cannot be opened.", "Check the name, and that you may read the file.");
    }
    access.length = static_cast<sf_count_t>(std::filesystem::file_size(file));
    if (access.length == 0)
    {
        Fail(file, "is empty: it has no bytes.", "Record it again.");
    }
    return access;
}

/// The name of a format that is known by the file's first bytes but needs a decoder that this program may lack.
const char* CompressedFormat(FileAccess* access)
{
    std::array<char, 4> head{};
    Seek(0, SEEK_SET, access);
    Read(head.data(), head.size(), access);
    const auto begins = [&](std::string_view with) {
        return std::string_view(head.data(), with.size()) == with;
    };
    if (begins("fLaC"))
    {
        return "FLAC";
    }
    if (begins("OggS"))
    {
        return "Ogg";
    }
    return begins("ID3") || begins("\xFF\xFB") ? "MP3" : nullptr;
}

SoundFile OpenSound(const std::filesystem::path& file, FileAccess* access, SF_INFO* info)
{
    SF_VIRTUAL_IO functions{Length, Seek, Read, Write, Tell};
    SoundFile sound(sf_open_virtual(&functions, SFM_READ, info, access));
    if (sound)
    {
        return sound;
    }
    if (const char* format = CompressedFormat(access))
    {
        Fail(file, fmt::format("is an {} file, which this program does not decode.", format),
             "Convert it to WAV with any sound editor.");
    }
    Fail(file, "is not a sound file that this program knows.", "Give a WAV file.");
}

uint32_t Number(const std::array<char, 8>& chunk)
{
    uint32_t number = 0;
    std::memcpy(&number, chunk.data() + 4, sizeof(number));
    return number;
}

/// Bytes of samples that a WAV file's head promises beyond the file's end; 0 for other formats, and for a length that programs
/// write when they do not know it yet.
sf_count_t MissingBytes(FileAccess* access)
{
    constexpr uint32_t LeastUnknown = 0x7FFFF000;
    std::array<char, 12> head{};
    Seek(0, SEEK_SET, access);
    Read(head.data(), head.size(), access);
    if (std::string_view(head.data(), 4) != "RIFF")
    {
        return 0;
    }
    for (std::array<char, 8> chunk{}; Read(chunk.data(), chunk.size(), access) == chunk.size();)
    {
        const uint32_t length = Number(chunk);
        if (std::string_view(chunk.data(), 4) == "data")
        {
            const sf_count_t there = access->length - Tell(access);
            return length >= LeastUnknown ? 0 : std::max<sf_count_t>(length - there, 0);
        }
        Seek(length + length % 2, SEEK_CUR, access);
    }
    return 0;
}

/// The mean of the channels.
std::vector<float> ReadMono(const std::filesystem::path& file, SNDFILE* sound, const SF_INFO& info)
{
    const auto channels = static_cast<std::size_t>(info.channels);
    std::vector<float> block(static_cast<std::size_t>(BlockFrames) * channels);
    std::vector<float> mono;
    mono.reserve(static_cast<std::size_t>(std::clamp<sf_count_t>(info.frames, 0, SamplesPerSecond * sf_count_t{3600})));
    for (sf_count_t got = 0; (got = sf_readf_float(sound, block.data(), BlockFrames)) > 0;)
    {
        for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i)
        {
            float sum = 0.0F;
            for (std::size_t c = 0; c < channels; ++c)
            {
                sum += block[i * channels + c];
            }
            mono.push_back(sum / static_cast<float>(channels));
        }
    }
    if (sf_error(sound) != SF_ERR_NO_ERROR || (info.frames < SF_COUNT_MAX && static_cast<sf_count_t>(mono.size()) < info.frames))
    {
        Fail(file,
             fmt::format("can be read for {:.2f} s only: the file is damaged or cut.",
                         static_cast<double>(mono.size()) / info.samplerate),
             "Copy or record it again.");
    }
    return mono;
}

void CheckSamples(const std::filesystem::path& file, const std::vector<float>& mono)
{
    if (mono.empty())
    {
        Fail(file, "holds no sound: it has a head but no samples.", "Record it again.");
    }
    if (!std::all_of(mono.begin(), mono.end(), [](float sample) { return std::isfinite(sample); }))
    {
        Fail(file, "holds samples that are not numbers (NaN or infinite).", "Export it again as 16-bit WAV.");
    }
}

std::vector<float> Resample(const std::filesystem::path& file, const std::vector<float>& samples, int rate)
{
    const double ratio = static_cast<double>(SamplesPerSecond) / rate;
    std::vector<float> resampled(static_cast<std::size_t>(std::ceil(static_cast<double>(samples.size()) * ratio)) + 1);
    SRC_DATA conversion{};
    conversion.data_in = samples.data();
    conversion.input_frames = static_cast<long>(samples.size());
    conversion.data_out = resampled.data();
    conversion.output_frames = static_cast<long>(resampled.size());
    conversion.src_ratio = ratio;
    if (const int error = src_simple(&conversion, SRC_SINC_BEST_QUALITY, 1); error != 0)
    {
        Fail(file, fmt::format("cannot be converted from {} Hz: {}.", rate, src_strerror(error)), "Convert it to 16 kHz WAV.");
    }
    resampled.resize(static_cast<std::size_t>(conversion.output_frames_gen));
    return resampled;
}

std::string Conversion(const SF_INFO& info)
{
    if (info.samplerate == SamplesPerSecond && info.channels == 1)
    {
        return {};
    }
    const std::string channels = info.channels == 1   ? "mono"
                                 : info.channels == 2 ? "stereo"
                                                      : fmt::format("{} channels", info.channels);
    const char* band = info.samplerate < SamplesPerSecond ? ", which lacks the upper part of speech" : "";
    return fmt::format("converted from {:g} kHz {}{}", info.samplerate / 1000.0, channels, band);
}

} // namespace

Audio ReadAudio(const std::filesystem::path& file)
{
    FileAccess access = Open(file);
    SF_INFO info{};
    const SoundFile sound = OpenSound(file, &access, &info);
    std::vector<float> mono = ReadMono(file, sound.get(), info);
    if (const sf_count_t missing = MissingBytes(&access); missing > 0)
    {
        Fail(file,
             fmt::format("is cut: it ends after {:.2f} s, {} bytes before its head says.",
                         static_cast<double>(mono.size()) / info.samplerate, missing),
             "Copy or record it again.");
    }
    CheckSamples(file, mono);
    if (info.samplerate != SamplesPerSecond)
    {
        mono = Resample(file, mono, info.samplerate);
    }
    const double seconds = Seconds(static_cast<int64_t>(mono.size()));
    return {std::move(mono), Conversion(info), seconds};
}

} // namespace velox::console

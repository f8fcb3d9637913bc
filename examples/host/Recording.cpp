#include "Recording.h"

#include "ResultName.h"

#include <mfapi.h>
#include <samplerate.h>
#include <sndfile.hh>

#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>

namespace
{

constexpr int SamplesPerSecond = 16000;

/// The stretch as it stands in the file, the mean of its channels.
std::vector<float> ReadMono(SndfileHandle& file, Stretch stretch, const std::string& name)
{
    const auto first = static_cast<sf_count_t>(std::lround(stretch.begin * file.samplerate()));
    const auto count = static_cast<sf_count_t>(std::lround((stretch.end - stretch.begin) * file.samplerate()));
    const auto channels = static_cast<std::size_t>(file.channels());
    std::vector<float> frames(static_cast<std::size_t>(count) * channels);
    if (file.seek(first, SEEK_SET) != first || file.readf(frames.data(), count) != count)
    {
        throw std::runtime_error("The recording is too short: " + name);
    }
    std::vector<float> mono(static_cast<std::size_t>(count), 0.0F);
    for (std::size_t i = 0; i < frames.size(); ++i)
    {
        mono[i / channels] += frames[i] / static_cast<float>(channels);
    }
    return mono;
}

std::vector<float> Resample(const std::vector<float>& samples, int rate)
{
    const double ratio = static_cast<double>(SamplesPerSecond) / rate;
    std::vector<float> resampled(static_cast<std::size_t>(std::ceil(static_cast<double>(samples.size()) * ratio)));
    SRC_DATA conversion{};
    conversion.data_in = samples.data();
    conversion.input_frames = static_cast<long>(samples.size());
    conversion.data_out = resampled.data();
    conversion.output_frames = static_cast<long>(resampled.size());
    conversion.src_ratio = ratio;
    if (const int error = src_simple(&conversion, SRC_SINC_BEST_QUALITY, 1); error != 0)
    {
        throw std::runtime_error(std::string("Resampling failed: ") + src_strerror(error));
    }
    resampled.resize(static_cast<std::size_t>(conversion.output_frames_gen));
    return resampled;
}

void ThrowOnFailure(HRESULT result)
{
    if (FAILED(result))
    {
        throw std::runtime_error("No buffer for a recording: " + ResultName(result));
    }
}

} // namespace

std::vector<float> ReadRecording(const std::filesystem::path& soundFile, Stretch stretch)
{
    const std::string name = soundFile.string();
    SndfileHandle file(name);
    if (file.error() != SF_ERR_NO_ERROR)
    {
        throw std::runtime_error("Cannot read " + name + ": " + file.strError());
    }
    return Resample(ReadMono(file, stretch, name), file.samplerate());
}

BufferPointer MakeBuffer(const std::vector<float>& samples)
{
    const auto size = static_cast<DWORD>(samples.size() * sizeof(float));
    IMFMediaBuffer* made = nullptr;
    ThrowOnFailure(MFCreateMemoryBuffer(size, &made));
    BufferPointer buffer(made);
    BYTE* bytes = nullptr;
    ThrowOnFailure(buffer->Lock(&bytes, nullptr, nullptr));
    std::memcpy(bytes, samples.data(), size);
    ThrowOnFailure(buffer->Unlock());
    ThrowOnFailure(buffer->SetCurrentLength(size));
    return buffer;
}

int32_t BytePosition(double seconds)
{
    return static_cast<int32_t>(std::lround(seconds * SamplesPerSecond)) * static_cast<int32_t>(sizeof(float));
}

#include "evaluation/AudioFile.h"

#include "engine/base/AudioFormat.h"
#include "engine/enrollment/SpeedChange.h"

#include <sndfile.h>

#include <memory>
#include <numeric>
#include <stdexcept>

namespace velox::evaluation
{

namespace
{

/// A change of speed by what ChangeSpeed allows in one step.
constexpr double MostStep = 2.0;

} // namespace

std::vector<float> ReadAudioFile(const std::string& path)
{
    SF_INFO format{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_READ, &format), &sf_close);
    if (!file)
    {
        throw std::runtime_error("cannot read " + path);
    }
    const auto channels = static_cast<std::size_t>(format.channels);
    std::vector<float> interleaved(static_cast<std::size_t>(format.frames) * channels);
    const auto frames = static_cast<std::size_t>(sf_readf_float(file.get(), interleaved.data(), format.frames));
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
    {
        const float* frame = interleaved.data() + i * channels;
        samples[i] = std::accumulate(frame, frame + channels, 0.0F) / static_cast<float>(channels);
    }

    double speed = format.samplerate / static_cast<double>(engine::SampleRate);
    for (; speed > MostStep; speed /= MostStep)
    {
        samples = engine::ChangeSpeed(samples, MostStep);
    }
    return speed == 1.0 ? samples : engine::ChangeSpeed(samples, speed);
}

void WriteAudioFile(const std::string& path, const std::vector<float>& samples)
{
    SF_INFO format{};
    format.samplerate = static_cast<int>(engine::SampleRate);
    format.channels = 1;
    format.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_WRITE, &format), &sf_close);
    const auto count = static_cast<sf_count_t>(samples.size());
    if (!file || sf_writef_float(file.get(), samples.data(), count) != count)
    {
        throw std::runtime_error("cannot write " + path);
    }
}

} // namespace velox::evaluation

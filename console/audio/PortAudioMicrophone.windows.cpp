#include "console/audio/PortAudioMicrophone.h"

#include "console/audio/Resampler.h"
#include "console/audio/SoundQueue.h"
#include "console/text/CommandFailure.h"

#include <fmt/format.h>

#include <portaudio.h>

#include <cmath>

namespace velox::console
{

namespace
{

using namespace std::chrono_literals;

constexpr auto ReadPatience = 100ms;
/// Until a device's first sound, and between two pieces of it. What was unplugged is silent, and says nothing of it.
constexpr auto StartPatience = 10s;
constexpr auto Patience = 2s;
/// Sound that waits to be fetched at most, in seconds.
constexpr std::size_t QueuedSeconds = 10;

constexpr const char* Advice =
    "Is it plugged in, may programs use it, and does no other one have it for itself? velox-kws devices "
    "lists what there is.";

void Require(PaError error, const std::string& what)
{
    if (error != paNoError)
    {
        const PaHostErrorInfo* host = error == paUnanticipatedHostError ? Pa_GetLastHostErrorInfo() : nullptr;
        throw CommandFailure(ExitCode::BadInput,
                             fmt::format("{}: {}.", what, host != nullptr ? host->errorText : Pa_GetErrorText(error)), Advice);
    }
}

/// PortAudio is usable as long as one of these lives.
class PortAudio
{
public:
    PortAudio()
    {
        Require(Pa_Initialize(), "The system's sound does not work");
    }
    PortAudio(const PortAudio&) = delete;
    PortAudio& operator=(const PortAudio&) = delete;
    ~PortAudio()
    {
        Pa_Terminate();
    }
};

struct CloseStream
{
    void operator()(PaStream* stream) const
    {
        Pa_CloseStream(stream);
    }
};

class PortAudioMicrophone : public Microphone
{
public:
    explicit PortAudioMicrophone(AudioDevice chosenDevice)
        : device(std::move(chosenDevice)), resampler(device.name, device.rate),
          queue(QueuedSeconds * static_cast<std::size_t>(device.rate))
    {
        const PaStreamParameters input{device.number, 1, paFloat32, Pa_GetDeviceInfo(device.number)->defaultLowInputLatency,
                                       nullptr};
        PaStream* opened = nullptr;
        Require(Pa_OpenStream(&opened, &input, nullptr, device.rate, paFramesPerBufferUnspecified, paClipOff | paDitherOff, &Take,
                              &queue),
                "The microphone " + device.name + " cannot be opened");
        stream.reset(opened);
        Require(Pa_StartStream(opened), "The microphone " + device.name + " cannot be switched on");
    }

    std::string Name() const override
    {
        return device.name;
    }

    std::string Conversion() const override
    {
        return ConversionText(device.rate, 1);
    }

    std::vector<float> Read() override
    {
        queue.Fetch(ReadPatience, &fetched);
        // Waits are counted, not the time: a program, or a computer, that slept has not waited for the device.
        waits = fetched.empty() ? waits + 1 : 0;
        mostWaits = fetched.empty() ? mostWaits : Patience / ReadPatience;
        if (waits > mostWaits || (fetched.empty() && Pa_IsStreamActive(stream.get()) != 1))
        {
            throw CommandFailure(ExitCode::BadInput, "The microphone " + device.name + " gives no sound any more.", Advice);
        }
        std::vector<float> block;
        resampler.Convert(fetched, false, &block);
        return block;
    }

    std::size_t Overruns() const override
    {
        return queue.Overruns();
    }

private:
    static int Take(const void* input, void*, unsigned long frames, const PaStreamCallbackTimeInfo*, PaStreamCallbackFlags flags,
                    void* queue)
    {
        static_cast<SoundQueue*>(queue)->Put({static_cast<const float*>(input), frames}, (flags & paInputOverflow) != 0);
        return paContinue;
    }

    AudioDevice device;
    Resampler resampler;
    SoundQueue queue;
    std::vector<float> fetched;
    int64_t waits = 0; ///< in a row, in vain
    int64_t mostWaits = StartPatience / ReadPatience;
    PortAudio portAudio;
    std::unique_ptr<PaStream, CloseStream> stream; // closed before what its thread uses is gone
};

} // namespace

std::vector<AudioDevice> FindMicrophones()
{
    const PortAudio portAudio;
    std::vector<AudioDevice> microphones;
    for (PaDeviceIndex number = 0; number < Pa_GetDeviceCount(); ++number)
    {
        const PaDeviceInfo& info = *Pa_GetDeviceInfo(number);
        if (info.maxInputChannels > 0)
        {
            microphones.push_back({number, info.name, Pa_GetHostApiInfo(info.hostApi)->name,
                                   static_cast<int>(std::lround(info.defaultSampleRate)), info.maxInputChannels,
                                   number == Pa_GetDefaultInputDevice()});
        }
    }
    return microphones;
}

std::unique_ptr<Microphone> OpenMicrophone(const std::string& name)
{
    const PortAudio portAudio; // while one lives, the devices keep their numbers
    const std::vector<AudioDevice> microphones = FindMicrophones();
    return std::make_unique<PortAudioMicrophone>(ChooseDevice(microphones, name));
}

} // namespace velox::console

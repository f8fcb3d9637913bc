#include "benchmarks/Floors.h"
#include "benchmarks/Measurement.h"
#include "benchmarks/SilentLogger.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "library/wovwrapper/SampleConversion.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"
#include "tests/support/ScriptedRecording.h"
#include "tests/support/TestConfiguration.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

namespace
{

constexpr double Goal = 1.10;
constexpr uint16_t Language = 1033;
constexpr std::size_t FrameSize = 150;
constexpr std::size_t SamplesPerSecond = 16000;
constexpr std::size_t Short = 10 * SamplesPerSecond;
constexpr std::size_t Long = 600 * SamplesPerSecond;

/// A recording, and those who verify it over the engine that does nothing.
struct Verifiable
{
    explicit Verifiable(std::size_t sampleCount) : samples(sampleCount, 0.25F), recording(samples)
    {
    }

    std::vector<float> samples;
    ScriptedRecording recording;
    TestConfiguration configuration;
    SilentLogger logger;
    VeloxKeywordDetectorAdapterImpl adapter{&logger, configuration.Path(), "bench", GUID{}};
    EnrollmentParameters parameters;
    VeloxWovWrapper wrapper{&parameters, {2560, 2560, 10}, &logger, 3, "memory=160k"};
};

void VerifyInWrapper(Verifiable& verifiable)
{
    bool detected = false;
    if (FAILED(verifiable.wrapper.VerifyKeyword(&verifiable.recording, 0, &detected)) || detected)
    {
        throw std::runtime_error("the recording is not scored");
    }
}

void Verify(Verifiable& verifiable)
{
    // Nothing is found in it.
    if (verifiable.adapter.VerifyUserKeyword(nullptr, 1, Language, 0, &verifiable.recording) != E_FAIL)
    {
        throw std::runtime_error("the recording is not verified");
    }
}

/// The bare loop: each frame converted, fed and scored.
void FeedOnly(Verifiable& verifiable)
{
    std::array<int16_t, FrameSize> frame{};
    float score = 0.0F;
    const auto* bytes = static_cast<const uint8_t*>(static_cast<const void*>(verifiable.samples.data()));
    const std::size_t count = verifiable.samples.size();
    for (std::size_t start = 0; start < count; start += FrameSize)
    {
        const std::size_t filled = std::min(FrameSize, count - start);
        ConvertSamples(bytes + start * sizeof(float), filled, frame.data());
        std::fill(frame.begin() + static_cast<std::ptrdiff_t>(filled), frame.end(), int16_t{0});
        uint32_t scores = 1;
        uint32_t values = 1;
        int32_t value = 0;
        if (VWoVFeedAudioFrame(1, frame.data(), FrameSize) != EngineStatus::Success ||
            VWoVGetScores(1, &score, &scores) != EngineStatus::Success ||
            VWoVGetIntOutput(1, EngineOutput::VadFlag, &value, &values) != EngineStatus::Success ||
            VWoVGetIntOutput(1, EngineOutput::VadQuality, &value, &values) != EngineStatus::Success)
        {
            throw std::runtime_error("the engine refuses a call");
        }
    }
}

/// What the operation has to load before: the document for the language check, the models, the thresholds and the constraints,
/// and the models, the constraints and the thresholds themselves.
void LoadAndFeed(Verifiable& verifiable)
{
    const TestConfiguration& configuration = verifiable.configuration;
    LoadDocumentOnly(configuration.Path());
    LoadDocumentOnly(configuration.Path());
    for (const char* model : {"\\kp_1033.bin", "\\am_1033.bin", "\\zn_1033.bin"})
    {
        ReadFileOnly(configuration.Directory() + model);
    }
    LoadDocumentAndThresholdsOnly(configuration, Language);
    LoadDocumentOnly(configuration.Path());
    std::string constraints;
    std::getline(std::ifstream(configuration.ConstraintsPath()), constraints);
    FeedOnly(verifiable);
}

} // namespace

void RegisterVerification()
{
    const auto brief = std::make_shared<Verifiable>(Short);
    const auto extended = std::make_shared<Verifiable>(Long);
    for (const auto& [verifiable, duration] : {std::pair{brief, ", 10 s"}, {extended, ", 10 min"}})
    {
        const std::string suffix = duration;
        Register({"VerifyKeyword" + suffix, Goal, [verifiable = verifiable] { VerifyInWrapper(*verifiable); },
                  [verifiable = verifiable] {
                      FeedOnly(*verifiable);
                  }});
        Register({"VerifyUserKeyword" + suffix, Goal, [verifiable = verifiable] { Verify(*verifiable); },
                  [verifiable = verifiable] {
                      LoadAndFeed(*verifiable);
                  }});
        Register({"VerifyUserKeyword" + suffix + ", to feeding alone", Goal, [verifiable = verifiable] { Verify(*verifiable); },
                  [verifiable = verifiable] {
                      FeedOnly(*verifiable);
                  }});
    }
    Register({"VerifyKeyword, 10 min, to 60 x 10 s", Goal, [extended] { VerifyInWrapper(*extended); },
              [brief] {
                  for (std::size_t i = 0; i < Long / Short; ++i)
                  {
                      VerifyInWrapper(*brief);
                  }
              }});
}

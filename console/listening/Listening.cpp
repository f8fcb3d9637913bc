#include "console/listening/Listening.h"

#include "console/audio/SampleTime.h"
#include "console/text/CommandFailure.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

void SetPattern(std::span<const uint8_t> pattern, firmware::DspSimulator* dsp)
{
    if (const auto refusal = dsp->SetPattern(pattern))
    {
        const firmware::PatternRefusalText& text = firmware::TextOf(*refusal);
        const bool foreign = *refusal == firmware::PatternRefusal::ForeignDetector;
        throw CommandFailure(
            ExitCode::BadInput,
            fmt::format("The DSP refuses the pattern at 0x{:02X}, {}: {}", text.offset, text.field, text.sentence),
            foreign ? "Name the detector that it was built for with --detector-id."
                    : "Build it again with velox-kws arm. velox-kws inspect shows the fields of this one.");
    }
}

bool Overlap(const firmware::Peak& one, const firmware::Peak& other)
{
    return one.detection.startSample < other.detection.endSample && other.detection.startSample < one.detection.endSample;
}

/// One run over one piece of audio.
class Run
{
public:
    Run(const ListeningSetup& setup, const BlockParser& parser)
        : parse(parser), dsp(setup.detector, setup.counter, [this](const firmware::Peak& peak) { Observe(peak); })
    {
        dsp.SetFault(setup.fault);
        SetPattern(setup.pattern, &dsp);
        if (!setup.newerPattern.empty())
        {
            SetPattern(setup.newerPattern, &dsp);
        }
        heard.threshold = dsp.Threshold();
        heard.userModel = dsp.HasUserModel();
        dsp.Arm();
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void Hear(std::span<const float> block)
    {
        while (!block.empty())
        {
            if (const auto result = dsp.Hear(&block))
            {
                Report(*result);
                dsp.Arm();
            }
        }
        if (!dsp.HasPattern() && !heard.deafFrom)
        {
            heard.deafFrom = Seconds(lastPassed.detection.endSample);
        }
    }

    /// The audio has ended: a keyword at its end is reported a little later.
    Heard Finish(std::size_t samples)
    {
        Hear(std::vector<float>(static_cast<std::size_t>(dsp.Latency()), 0.0F));
        heard.seconds = Seconds(static_cast<int64_t>(samples));
        return std::move(heard);
    }

private:
    void Report(const firmware::ResultBlock& result)
    {
        const std::span<const uint8_t> bytes = result.Bytes();
        heard.detections.push_back({lastPassed, {bytes.begin(), bytes.end()}, parse(bytes)});
    }

    /// A phrase that is said once may have several peaks; the best one counts.
    void Observe(const firmware::Peak& peak)
    {
        std::erase_if(heard.nearMisses, [&](const firmware::Peak& miss) {
            return Overlap(miss, peak) && (peak.passed || miss.score < peak.score);
        });
        if (peak.passed)
        {
            lastPassed = peak;
            return;
        }
        heard.highestSilent = std::max(heard.highestSilent.value_or(0), peak.score);
        const bool isNew = heard.nearMisses.empty() || !Overlap(heard.nearMisses.back(), peak);
        if (isNew && IsNearMiss(peak, heard.threshold))
        {
            heard.nearMisses.push_back(peak);
        }
    }

    const BlockParser& parse;
    Heard heard;
    firmware::Peak lastPassed;
    firmware::DspSimulator dsp;
};

} // namespace

bool IsNearMiss(const firmware::Peak& peak, uint32_t threshold)
{
    constexpr float Q8 = 256.0F;
    const float least = static_cast<float>(threshold) / Q8;
    return !peak.passed && (peak.detection.score >= least - NearMissMargin || peak.detection.phraseScore >= least);
}

Heard HearRecording(const ListeningSetup& setup, std::span<const float> samples, const BlockParser& parse,
                    const ListeningProgress& progress)
{
    Run run(setup, parse);
    for (std::size_t start = 0; start < samples.size();)
    {
        const std::size_t size = std::min(setup.blockSamples, samples.size() - start);
        run.Hear(samples.subspan(start, size));
        start += size;
        progress(static_cast<double>(start) / static_cast<double>(samples.size()));
    }
    return run.Finish(samples.size());
}

} // namespace velox::console

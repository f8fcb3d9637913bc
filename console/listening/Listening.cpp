#include "console/listening/Listening.h"

#include "console/audio/AudioFile.h"
#include "console/audio/SampleTime.h"
#include "console/listening/Pattern.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

namespace velox::console
{

namespace
{

/// Before and after a phrase in its close-up, in samples.
constexpr int64_t CloseUpMargin = SamplesPerSecond;
/// Of a close-up: 8 ms.
constexpr int64_t SamplesPerStretch = 128;

void SetPattern(std::span<const uint8_t> pattern, firmware::DspSimulator* dsp)
{
    if (const auto refusal = dsp->SetPattern(pattern))
    {
        const bool foreign = *refusal == firmware::PatternRefusal::ForeignDetector;
        throw CommandFailure(ExitCode::BadInput, "The DSP refuses the pattern " + RefusalText(*refusal),
                             foreign ? "Name the detector that it was built for with --detector-id."
                                     : "Build it again with velox-kws arm. velox-kws inspect shows the fields of this one.");
    }
}

auto Rank(const HeardPhrase& phrase)
{
    return std::tuple(phrase.peak.passed, phrase.isNear, phrase.peak.score);
}

using RankedPhrase = std::pair<HeardPhrase*, const HeardFile*>;

/// Those that fired first, then near misses, and each by their score.
std::vector<RankedPhrase> Ranked(std::span<HeardFile> files)
{
    std::vector<RankedPhrase> ranked;
    for (HeardFile& file : files)
    {
        std::ranges::transform(file.phrases, std::back_inserter(ranked), [&](auto& phrase) { return std::pair(&phrase, &file); });
    }
    std::ranges::stable_sort(ranked, std::greater(), [](const RankedPhrase& one) { return Rank(*one.first); });
    return ranked;
}

/// One run over one piece of audio, of which nothing is kept but its shape.
class Run
{
public:
    Run(const ListeningSetup& listeningSetup, const BlockParser& parser, HeardFile* heardFile)
        : setup(listeningSetup), parse(parser), heard(*heardFile),
          dsp(setup.detector, setup.counter,
              [this](const firmware::Peak& peak) { AddPeak(peak, dsp.Threshold(), &heard.phrases); })
    {
        dsp.SetFault(setup.fault);
        SetPattern(setup.pattern, &dsp);
        if (!setup.newerPattern.empty())
        {
            SetPattern(setup.newerPattern, &dsp);
        }
        dsp.Arm();
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    const firmware::DspSimulator& Dsp() const
    {
        return dsp;
    }

    /// To its end, or as far as it can be read.
    void HearRecording(Progress* progress)
    {
        try
        {
            progress->Begin(heard.name);
            AudioStream stream(PathFromUtf8(heard.name));
            for (std::vector<float> samples; stream.Read(&samples);)
            {
                Hear(samples);
                progress->Update(stream.Share());
            }
            heard.conversion = stream.Summary().conversion;
            heard.warnings = stream.Summary().warnings;
        }
        catch (const CommandFailure& failure)
        {
            heard.failures.push_back(failure);
        }
        HearBlock(std::vector<float>(static_cast<std::size_t>(dsp.Latency()), 0.0F)); // a keyword at the end is reported later
        heard.seconds = Seconds(samplesHeard);
        heard.wave = wave.Finish();
    }

private:
    void Hear(std::span<const float> samples)
    {
        if (setup.pictures)
        {
            wave.Add(samples);
            Draw(samples);
        }
        samplesHeard += static_cast<int64_t>(samples.size());
        for (; !samples.empty(); samples = samples.subspan(std::min(setup.blockSamples, samples.size())))
        {
            HearBlock(samples.first(std::min(setup.blockSamples, samples.size())));
        }
    }

    void HearBlock(std::span<const float> block)
    {
        while (!block.empty())
        {
            if (const auto result = dsp.Hear(&block))
            {
                const std::span<const uint8_t> bytes = result->Bytes();
                heard.phrases.back().block.assign(bytes.begin(), bytes.end());
                heard.phrases.back().parsed = parse(bytes);
                dsp.Arm();
            }
        }
        if (!dsp.HasPattern() && !heard.deafFrom)
        {
            heard.deafFrom = Seconds(heard.phrases.back().peak.detection.endSample);
        }
    }

    void Draw(std::span<const float> samples)
    {
        for (int64_t at = samplesHeard; const float sample : samples)
        {
            if (at++ % SamplesPerStretch == 0)
            {
                heard.shape.push_back({sample, sample});
            }
            SampleRange& last = heard.shape.back();
            last = {std::min(last.least, sample), std::max(last.most, sample)};
        }
    }

    const ListeningSetup& setup;
    const BlockParser& parse;
    HeardFile& heard;
    firmware::DspSimulator dsp;
    WaveBuilder wave;
    int64_t samplesHeard = 0;
};

/// @param number  of the last block in the run
void SaveBlocks(const std::string& folder, HeardFile* file, std::size_t* number)
{
    try
    {
        std::error_code error;
        std::filesystem::create_directories(PathFromUtf8(folder), error); // what is wrong, writing tells
        const std::string stem = Utf8(PathFromUtf8(file->name).stem());
        for (HeardPhrase& phrase : file->phrases)
        {
            if (!phrase.block.empty())
            {
                const auto path = PathFromUtf8(folder) / PathFromUtf8(fmt::format("{}-{:03}.result", stem, ++*number));
                WriteWhole(path, phrase.block);
                phrase.savedBlock = Utf8(path);
            }
        }
    }
    catch (const CommandFailure& failure)
    {
        file->failures.push_back(failure);
    }
}

} // namespace

void AddPeak(const firmware::Peak& peak, uint32_t threshold, std::vector<HeardPhrase>* phrases)
{
    const engine::Detection& place = peak.detection;
    const float least = static_cast<float>(threshold) / 256.0F;
    const bool isNear =
        !peak.passed && (place.score >= least - NearMissMargin || std::max(place.phraseScore, place.searchScore) >= least);
    HeardPhrase phrase{peak, isNear, peak.score};
    const auto lastOverlaps = [&] {
        // They come in the order of their ends: only the last ones can.
        return !phrases->empty() && phrases->back().peak.detection.startSample < place.endSample &&
               place.startSample < phrases->back().peak.detection.endSample;
    };
    while (lastOverlaps() && !phrases->back().peak.passed && Rank(phrases->back()) < Rank(phrase))
    {
        phrase.highest = std::max(phrase.highest, phrases->back().highest);
        phrases->pop_back();
    }
    if (lastOverlaps() && !peak.passed)
    {
        phrases->back().highest = std::max(phrases->back().highest, peak.score);
        return;
    }
    phrases->push_back(std::move(phrase));
}

void KeepBest(HeardFile* file)
{
    std::size_t nearMisses = 0;
    for (const auto& [phrase, owner] : Ranked({file, 1}))
    {
        file->highestSilent = phrase->peak.passed ? file->highestSilent : std::max(file->highestSilent, {phrase->highest});
        if (phrase->isNear && ++nearMisses > MostNearMisses)
        {
            phrase->isNear = false;
            ++file->lowerNearMisses;
        }
    }
    std::erase_if(file->phrases, [](const HeardPhrase& phrase) { return !phrase.peak.passed && !phrase.isNear; });
}

void DrawCloseUps(std::span<HeardFile> files)
{
    std::vector<RankedPhrase> drawn = Ranked(files);
    drawn.resize(std::min(drawn.size(), MostCloseUps));
    for (const auto& [best, file] : drawn)
    {
        const engine::Detection& phrase = best->peak.detection;
        const auto end = std::ssize(file->shape);
        const auto first = std::clamp<std::ptrdiff_t>((phrase.startSample - CloseUpMargin) / SamplesPerStretch, 0, end);
        const auto last = std::clamp<std::ptrdiff_t>((phrase.endSample + CloseUpMargin) / SamplesPerStretch, first, end);
        best->picture = {Seconds(first * SamplesPerStretch),
                         Seconds((last - first) * SamplesPerStretch),
                         {file->shape.begin() + first, file->shape.begin() + last}};
    }
}

Heard HearRecordings(const ListeningSetup& setup, const BlockParser& parse, Progress* progress)
{
    Heard heard;
    std::size_t blocks = 0;
    for (const std::string& recording : setup.recordings)
    {
        HeardFile file{recording};
        Run run(setup, parse, &file);
        heard.threshold = run.Dsp().Threshold();
        heard.userModel = run.Dsp().HasUserModel();
        run.HearRecording(progress);
        KeepBest(&file);
        const bool stopped = !file.failures.empty() && file.failures.back().exitCode == ExitCode::Interrupted;
        if (!setup.blockFolder.empty() && !stopped)
        {
            SaveBlocks(setup.blockFolder, &file, &blocks);
        }
        heard.files.push_back(std::move(file));
        if (stopped)
        {
            break;
        }
    }
    DrawCloseUps(heard.files);
    return heard;
}

} // namespace velox::console

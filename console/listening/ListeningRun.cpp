#include "console/listening/ListeningRun.h"

#include "console/audio/SampleTime.h"
#include "console/audio/WavFile.h"
#include "console/listening/Pattern.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

/// Before and after a phrase in its close-up. When so much was heard behind a phrase, it is over.
constexpr int64_t CloseUpMargin = SamplesPerSecond;
/// Of a close-up: 8 ms.
constexpr std::size_t SamplesPerStretch = 128;
/// Around a phrase in its saved sound.
constexpr int64_t SoundBefore = SamplesPerSecond;
constexpr int64_t SoundAfter = SamplesPerSecond / 2;
/// The longest block, the longest phrase, and the margins.
constexpr std::size_t RecentSamples = std::size_t{16} * SamplesPerSecond;

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

} // namespace

ListeningRun::ListeningRun(const ListeningSetup& listeningSetup, const BlockParser& parser, PhraseObserver phraseObserver,
                           std::size_t* sounds, HeardFile* file)
    : setup(listeningSetup), parse(parser), observer(std::move(phraseObserver)), savedSounds(*sounds), heard(*file),
      dsp(setup.detector, setup.counter, [this](const firmware::Peak& peak) { AddPeak(peak, dsp.Threshold(), &heard.phrases); }),
      recent(RecentSamples)
{
    dsp.SetFault(setup.fault);
    SetPattern(setup.pattern, &dsp);
    if (!setup.newerPattern.empty())
    {
        SetPattern(setup.newerPattern, &dsp);
    }
    dsp.Arm();
}

void ListeningRun::Hear(std::span<const float> samples)
{
    if (setup.pictures)
    {
        wave.Add(samples);
    }
    while (!samples.empty())
    {
        const std::span<const float> block = samples.first(std::min(setup.blockSamples, samples.size()));
        recent.Add(block);
        HearBlock(block);
        ConcludePhrases(recent.Heard() - CloseUpMargin);
        samples = samples.subspan(block.size());
    }
}

void ListeningRun::Finish()
{
    HearBlock(std::vector<float>(static_cast<std::size_t>(dsp.Latency()), 0.0F)); // a keyword at the end is reported later
    heard.seconds = Seconds(recent.Heard());
    heard.wave = wave.Finish();
    ConcludePhrases(recent.Heard() + dsp.Latency());
}

void ListeningRun::HearBlock(std::span<const float> block)
{
    while (!block.empty())
    {
        if (const auto result = dsp.Hear(&block))
        {
            const std::span<const uint8_t> bytes = result->Bytes();
            HeardPhrase& phrase = heard.phrases.back();
            phrase.block.assign(bytes.begin(), bytes.end());
            phrase.parsed = parse(bytes);
            dsp.Arm();
            Observe(phrase);
        }
    }
    if (!dsp.HasPattern() && !heard.deafFrom)
    {
        heard.deafFrom = Seconds(heard.phrases.back().peak.detection.endSample);
        Observe(heard.phrases.back());
    }
}

void ListeningRun::Observe(const HeardPhrase& phrase) const
{
    if (observer)
    {
        observer(phrase);
    }
}

/// Phrases that end not later than a sample, in the order of time, which is that of their ends.
void ListeningRun::ConcludePhrases(int64_t upTo)
{
    const auto isOver = [](const HeardPhrase& phrase) {
        return phrase.isOver;
    };
    for (auto phrase = std::find_if(heard.phrases.rbegin(), heard.phrases.rend(), isOver).base();
         phrase != heard.phrases.end() && phrase->peak.detection.endSample <= upTo; ++phrase)
    {
        Conclude(&*phrase);
    }
    KeepBestMeanwhile(upTo, &heard);
}

void ListeningRun::Conclude(HeardPhrase* phrase)
{
    if (phrase->peak.passed || phrase->isNear)
    {
        if (setup.pictures)
        {
            phrase->picture = CloseUp(phrase->peak.detection);
        }
        if (!setup.audioFolder.empty())
        {
            SaveSound(phrase);
        }
    }
    phrase->isOver = true;
    if (phrase->isNear)
    {
        Observe(*phrase);
    }
}

Picture ListeningRun::CloseUp(const engine::Detection& phrase) const
{
    int64_t from = 0;
    const std::span<const float> sound =
        recent.Between(phrase.startSample - CloseUpMargin, phrase.endSample + CloseUpMargin, &from);
    Picture picture{Seconds(from), Seconds(std::ssize(sound))};
    for (std::size_t i = 0; i < sound.size(); i += SamplesPerStretch)
    {
        const auto stretch = std::ranges::minmax(sound.subspan(i, std::min(SamplesPerStretch, sound.size() - i)));
        picture.wave.push_back({stretch.min, stretch.max});
    }
    return picture;
}

/// What could not be written is told once, and no other is tried.
void ListeningRun::SaveSound(HeardPhrase* phrase)
{
    const auto isWriteFailure = [](const CommandFailure& failure) {
        return failure.exitCode == ExitCode::WriteFailed;
    };
    if (std::ranges::any_of(heard.failures, isWriteFailure))
    {
        return;
    }
    const engine::Detection& place = phrase->peak.detection;
    int64_t from = 0;
    const std::span<const float> sound = recent.Between(place.startSample - SoundBefore, place.endSample + SoundAfter, &from);
    const std::string name = fmt::format("{}-{:03}-{}s.wav", heard.stem, ++savedSounds, place.startSample / SamplesPerSecond);
    const std::filesystem::path path = PathFromUtf8(setup.audioFolder) / PathFromUtf8(name);
    try
    {
        std::error_code error;
        std::filesystem::create_directories(path.parent_path(), error); // what is wrong, writing tells
        WriteWhole(path, WavBytes(sound));
        phrase->savedAudio = Utf8(path);
    }
    catch (const CommandFailure& failure)
    {
        if (!isWriteFailure(failure))
        {
            throw;
        }
        heard.failures.push_back(failure);
    }
}

} // namespace velox::console

#include "console/listening/Listening.h"

#include "console/audio/AudioFile.h"
#include "console/audio/LevelMeter.h"
#include "console/audio/SampleTime.h"
#include "console/listening/ListeningReport.h"
#include "console/listening/ListeningRun.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace velox::console
{

namespace
{

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

/// To its end, or as far as it can be read.
void HearRecording(ListeningRun* run, HeardFile* heard, Progress* progress)
{
    try
    {
        progress->Begin(heard->name);
        AudioStream stream(PathFromUtf8(heard->name));
        for (std::vector<float> samples; stream.Read(&samples);)
        {
            run->Hear(samples);
            progress->Update(stream.Share());
        }
        heard->conversion = stream.Summary().conversion;
        heard->warnings = stream.Summary().warnings;
    }
    catch (const CommandFailure& failure)
    {
        heard->failures.push_back(failure);
    }
    try
    {
        run->Finish();
    }
    catch (const CommandFailure&)
    {
        // Ctrl-C: it was told above, or the next recording tells it.
    }
}

/// What is shown of a session while it lasts.
class LiveStatus
{
public:
    LiveStatus(Microphone* heardMicrophone, Progress* terminal) : microphone(*heardMicrophone), progress(*terminal)
    {
    }

    void Show(std::span<const float> samples, const ListeningRun& run)
    {
        meter.Hear(samples);
        score = std::max(score, run.Dsp().CurrentScore().value_or(0.0F));
        progress.Status([&] {
            const double threshold = static_cast<double>(run.Dsp().Threshold()) / 256.0;
            const double share = threshold > 0.0 ? static_cast<double>(std::exchange(score, 0.0F)) / threshold : 0.0;
            return fmt::format("{}  score {:3.0f} %  {}{}", meter.Text(), 100.0 * share,
                               ClockText(Seconds(run.HeardSamples()), 0),
                               microphone.Overruns() > 0 ? "  " + Counted(microphone.Overruns(), "overrun") : "");
        });
    }

private:
    const Microphone& microphone;
    Progress& progress;
    LevelMeter meter;
    float score = 0.0F; ///< the highest since it was shown
};

/// Until its time is over, Ctrl-C, or the device is gone.
void HearSession(std::optional<double> seconds, Microphone* microphone, Progress* progress, ListeningRun* run)
{
    const auto most = seconds ? std::llround(*seconds * SamplesPerSecond) : std::numeric_limits<long long>::max();
    LiveStatus status(microphone, progress);
    while (run->HeardSamples() < most && !InterruptionRequested())
    {
        const std::vector<float> sound = microphone->Read();
        if (run->HeardSamples() == 0 && !sound.empty())
        {
            progress->Say("Listening to " + microphone->Name() + ". Ctrl-C ends it.");
        }
        const auto left = static_cast<std::size_t>(most - run->HeardSamples());
        const auto wanted = std::span(sound).first(std::min(sound.size(), left));
        run->Hear(wanted);
        status.Show(wanted, *run);
    }
}

/// @param number  of the last block in the run
void SaveBlocks(const std::string& folder, HeardFile* file, std::size_t* number)
{
    try
    {
        std::error_code error;
        std::filesystem::create_directories(PathFromUtf8(folder), error); // what is wrong, writing tells
        for (HeardPhrase& phrase : file->phrases)
        {
            if (!phrase.block.empty())
            {
                const auto path = PathFromUtf8(folder) / PathFromUtf8(fmt::format("{}-{:03}.result", file->stem, ++*number));
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
    file->kept = file->phrases.size();
}

void KeepBestMeanwhile(int64_t heardSamples, HeardFile* file)
{
    // A peak may still overlap phrases that end later than this.
    constexpr int64_t LongestPhrase = engine::PhraseDetector::HistoryFrames * static_cast<int64_t>(engine::FrameSize);
    if (file->phrases.size() >= file->kept + MostNearMisses &&
        file->phrases.back().peak.detection.endSample + 2 * LongestPhrase < heardSamples)
    {
        KeepBest(file);
    }
}

void KeepBestCloseUps(std::span<HeardFile> files)
{
    const std::vector<RankedPhrase> ranked = Ranked(files);
    for (const auto& [phrase, file] : std::span(ranked).subspan(std::min(ranked.size(), MostCloseUps)))
    {
        phrase->picture = {};
    }
}

Heard HearRecordings(const ListeningSetup& setup, const BlockParser& parse, Progress* progress)
{
    Heard heard;
    std::size_t blocks = 0;
    std::size_t sounds = 0;
    for (const std::string& recording : setup.recordings)
    {
        HeardFile file{recording, Utf8(PathFromUtf8(recording).stem())};
        ListeningRun run(setup, parse, {}, &sounds, &file);
        heard.threshold = run.Dsp().Threshold();
        heard.userModel = run.Dsp().HasUserModel();
        HearRecording(&run, &file, progress);
        KeepBest(&file);
        const bool stopped = !file.failures.empty() && file.failures.back().exitCode == ExitCode::Interrupted;
        if (!setup.blockFolder.empty() && !stopped)
        {
            SaveBlocks(setup.blockFolder, &file, &blocks);
        }
        heard.files.push_back(std::move(file));
        KeepBestCloseUps(heard.files);
        if (stopped)
        {
            break;
        }
    }
    return heard;
}

Heard HearMicrophone(const ListeningSetup& setup, std::optional<double> seconds, const BlockParser& parse, Microphone* microphone,
                     Progress* progress)
{
    std::size_t blocks = 0;
    std::size_t sounds = 0;
    HeardFile session{microphone->Name(), MicrophoneStem, microphone->Conversion()};
    double threshold = 0.0;
    const auto say = [&](const HeardPhrase& phrase) {
        progress->Say(PhraseLine(phrase, threshold));
    };
    ListeningRun run(setup, parse, say, &sounds, &session);
    threshold = static_cast<double>(run.Dsp().Threshold()) / 256.0;
    try
    {
        HearSession(seconds, microphone, progress, &run);
    }
    catch (const CommandFailure& failure)
    {
        if (failure.exitCode != ExitCode::Interrupted)
        {
            session.failures.push_back(failure);
        }
    }
    ForgetInterruption(); // it has ended the session, and what follows is to be written
    progress->Update(1.0);
    run.Finish();
    session.overruns = microphone->Overruns();
    KeepBest(&session);
    if (!setup.blockFolder.empty())
    {
        SaveBlocks(setup.blockFolder, &session, &blocks);
    }
    Heard heard{run.Dsp().Threshold(), run.Dsp().HasUserModel(), {std::move(session)}};
    KeepBestCloseUps(heard.files);
    return heard;
}

} // namespace velox::console

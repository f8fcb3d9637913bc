#include "console/takes/LiveTakes.h"

#include "console/audio/LevelMeter.h"
#include "console/audio/SampleTime.h"
#include "console/audio/WavFile.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/WriteWhole.h"
#include "engine/sound/Endpointing.h"
#include "engine/sound/FrontEnd.h"

#include <fmt/format.h>

namespace velox::console
{

namespace
{

constexpr std::size_t MostTries = 5;
constexpr std::size_t MostSamples = std::size_t{6} * SamplesPerSecond;
/// Behind the speech of a take: 0.8 s.
constexpr std::size_t QuietFrames = 80;
/// How often the end of the speech is looked for: every 0.1 s.
constexpr std::size_t LookSamples = SamplesPerSecond / 10;

/// Whether somebody spoke, and has been quiet since.
bool IsSpoken(std::span<const float> samples)
{
    const std::vector<engine::MelFrame> frames = engine::LogMelFrames(samples);
    const engine::Endpoints speech = engine::FindEndpoints(frames, samples);
    return speech.end > speech.begin && frames.size() - speech.end >= QuietFrames;
}

/// From the first sound on, when the user is asked.
Audio Record(const std::string& question, Microphone* microphone, Progress* progress)
{
    Audio audio{{}, microphone->Conversion()};
    LevelMeter meter;
    for (std::size_t looked = 0; audio.samples.size() < MostSamples;)
    {
        StopIfInterrupted();
        const std::vector<float> sound = microphone->Read();
        if (audio.samples.empty() && !sound.empty())
        {
            progress->Say(question);
        }
        audio.samples.insert(audio.samples.end(), sound.begin(), sound.end());
        meter.Hear(sound);
        progress->Status([&] { return meter.Text(); });
        if (audio.samples.size() >= looked + LookSamples)
        {
            looked = audio.samples.size();
            if (IsSpoken(audio.samples))
            {
                break;
            }
        }
    }
    audio.seconds = Seconds(std::ssize(audio.samples));
    return audio;
}

/// One try. What has a gap is refused, whatever the library thinks of it.
Take RecordTake(const std::string& name, const std::string& question, const MicrophoneOpener& open, const TakeJudge& judge,
                Progress* progress)
{
    const std::unique_ptr<Microphone> microphone = open();
    Take take = judge(name, Record(question, microphone.get(), progress));
    if (const std::size_t overruns = microphone->Overruns(); overruns > 0)
    {
        take.accepted = false;
        take.remarks = {{Tone::Bad, "SoundLost", fmt::format("sound was lost {}", Counted(overruns, "time")),
                         "The computer was too busy: end other programs."}};
    }
    return take;
}

/// Why a take was refused, and what to do about it.
std::string Explanation(const Take& take)
{
    std::string text = "Refused.";
    for (const Remark& remark : take.remarks)
    {
        text += fmt::format("\n    {}{}", remark.text, remark.fix.empty() ? "" : "\n    fix: " + remark.fix);
    }
    return text;
}

void Store(const std::string& file, Take* take)
{
    const std::filesystem::path path = PathFromUtf8(file);
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error); // what is wrong, writing tells
    WriteWhole(path, WavBytes(take->audio.samples));
    take->file = file;
}

} // namespace

std::string TakeFile(const TakeRequest& request, std::size_t number)
{
    return Utf8(PathFromUtf8(request.folder) / fmt::format("take-{}.wav", number));
}

void RecordTakes(const TakeRequest& request, const MicrophoneOpener& open, const TakeJudge& judge, Progress* progress,
                 std::vector<Take>* takes)
{
    std::size_t tries = 0;
    for (std::size_t number = 1; number <= request.count;)
    {
        const std::string question =
            fmt::format("Take {} of {}: say the phrase{}.", number, request.count, tries > 0 ? " again" : "");
        Take take = RecordTake(fmt::format("take {}", number), question, open, judge, progress);
        progress->Say(take.accepted ? "Good." : Explanation(take));
        if (!take.accepted && ++tries < MostTries)
        {
            continue;
        }
        takes->push_back(std::move(take));
        if (!takes->back().accepted)
        {
            throw CommandFailure(ExitCode::Refused, fmt::format("Take {} was refused {} times.", number, MostTries),
                                 takes->back().remarks.empty() ? "" : takes->back().remarks.front().fix);
        }
        if (!request.folder.empty())
        {
            Store(TakeFile(request, number), &takes->back());
        }
        tries = 0;
        ++number;
    }
}

} // namespace velox::console

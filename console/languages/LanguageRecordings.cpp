#include "console/languages/LanguageRecordings.h"

#include "console/audio/RecordingArguments.h"
#include "console/takes/TakeReport.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "engine/base/EngineErrors.h"
#include "engine/base/WorkerPool.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <numeric>
#include <thread>

namespace velox::console
{

namespace
{

/// All files below a folder; the same order on every system.
std::vector<std::filesystem::path> FilesBelow(const std::filesystem::path& folder)
{
    std::error_code error;
    if (std::filesystem::is_regular_file(folder, error))
    {
        return {folder};
    }
    if (!std::filesystem::is_directory(folder, error))
    {
        throw CommandFailure(ExitCode::BadInput, "There is no folder " + Utf8(folder) + ".", "Name a folder of recordings.");
    }
    std::vector<std::filesystem::path> files;
    for (auto entry = std::filesystem::recursive_directory_iterator(folder); entry != std::filesystem::end(entry); ++entry)
    {
        if (Utf8(entry->path().filename()).starts_with('.'))
        {
            entry.disable_recursion_pending();
        }
        else if (entry->is_regular_file())
        {
            files.push_back(entry->path());
        }
    }
    std::ranges::sort(files, {}, [](const std::filesystem::path& file) { return file.generic_u8string(); });
    return files;
}

/// The trainer puts this much silence around every take: one that begins or ends within speech is cut tightly, as training
/// folders often are, and is of use.
constexpr std::size_t SilenceSamples = 3 * engine::SampleRate / 10;

/// What makes a take useless, in the trainer's eyes.
std::optional<Remark> WhyUselessForTraining(const Audio& audio)
{
    std::vector<float> padded(audio.samples.size() + 2 * SilenceSamples);
    std::ranges::copy(audio.samples, padded.begin() + SilenceSamples);
    engine::TakeReview review = engine::ReviewTake(nullptr, padded);
    if (review.status == engine::Status::Success || review.status == engine::Status::CutAtStart ||
        review.status == engine::Status::CutAtEnd)
    {
        return std::nullopt;
    }
    if (review.firstClipped)
    {
        *review.firstClipped -= SilenceSamples;
    }
    return WhyUseless(review, audio.seconds);
}

struct ReadRecording
{
    Audio audio;
    std::optional<Remark> useless;
};

ReadRecording ReadOne(const std::filesystem::path& file, bool isTake)
{
    ReadRecording read;
    try
    {
        read.audio = ReadAudio(file);
        read.useless = isTake ? WhyUselessForTraining(read.audio) : std::nullopt;
    }
    catch (const CommandFailure& failure)
    {
        read.useless = UnreadableRemark(Utf8(file), failure);
    }
    catch (const std::bad_alloc&)
    {
        read.useless = Remark{Tone::Bad, "Unreadable", "the memory does not suffice for it", "Cut it into shorter pieces."};
    }
    return read;
}

/// In the order of the files.
std::vector<ReadRecording> ReadAll(const LanguageFiles& files, Progress* progress)
{
    std::vector<ReadRecording> read(files.all.size());
    std::mutex telling;
    std::size_t done = 0;
    engine::WorkerPool pool(static_cast<int>(std::max(1U, std::thread::hardware_concurrency())));
    pool.Run(static_cast<int>(files.all.size()), [&](int part) {
        if (const auto i = static_cast<std::size_t>(part); !Progress::Interrupted())
        {
            read[i] = ReadOne(files.all[i], i < files.takes);
            const std::lock_guard lock(telling);
            progress->Continue(static_cast<double>(++done) / static_cast<double>(files.all.size()));
        }
    });
    StopIfInterrupted();
    return read;
}

} // namespace

double LanguageRecordings::BackgroundHours() const
{
    const std::size_t samples =
        std::transform_reduce(material.background.begin(), material.background.end(), std::size_t{0}, std::plus<>(),
                              [](const std::vector<float>& recording) { return recording.size(); });
    return static_cast<double>(samples) / engine::SampleRate / 3600.0;
}

std::set<std::string> VoicesOf(const std::vector<engine::PhraseTake>& takes)
{
    std::set<std::string> voices;
    std::ranges::transform(takes, std::inserter(voices, voices.end()), &engine::PhraseTake::voice);
    return voices;
}

std::string VoiceOf(const std::filesystem::path& take)
{
    if (take.has_parent_path())
    {
        return Utf8(*take.begin());
    }
    const std::string stem = Utf8(take.stem());
    return stem.substr(0, stem.find_first_of("-_"));
}

LanguageFiles FindLanguageFiles(const std::filesystem::path& takes, const std::vector<std::string>& background)
{
    LanguageFiles files{takes, FilesBelow(takes)};
    files.takes = files.all.size();
    for (const std::string& argument : background)
    {
        const bool isFolder = std::filesystem::is_directory(PathFromUtf8(argument));
        for (const std::string& name : isFolder ? std::vector{argument} : FindRecordings({argument}))
        {
            std::ranges::copy(FilesBelow(PathFromUtf8(name)), std::back_inserter(files.all));
        }
    }
    return files;
}

LanguageRecordings ReadLanguageRecordings(const LanguageFiles& files, Progress* progress)
{
    progress->Begin("Reading the recordings");
    std::vector<ReadRecording> read = ReadAll(files, progress);

    LanguageRecordings recordings;
    std::map<std::string, std::vector<std::string>> odd; // by what follows the numbers of a text
    for (std::size_t i = 0; i < files.all.size(); ++i)
    {
        const std::string name = Utf8(files.all[i]);
        auto& [audio, useless] = read[i];
        if (useless)
        {
            recordings.leftOut.push_back({name, "left out", Tone::Warning, {}, {*useless}});
            continue;
        }
        for (const std::string& warning : audio.warnings)
        {
            odd[warning.substr(warning.find_last_of("0123456789") + 1)].push_back(fmt::format("{}: {}", name, warning));
        }
        if (i < files.takes)
        {
            recordings.material.takes.push_back(
                {std::move(audio.samples), name, VoiceOf(files.all[i].lexically_relative(files.folder)), 1.0F});
        }
        else
        {
            recordings.material.background.push_back(std::move(audio.samples));
        }
    }
    for (const auto& [kind, texts] : odd)
    {
        const std::string more = texts.size() == 1 ? "" : fmt::format("; so in {} recordings", texts.size());
        recordings.oddities.push_back({Tone::Warning, "OddSound", texts.front() + more, "Look at how they were recorded."});
    }
    return recordings;
}

} // namespace velox::console

#include "console/languages/LanguageRecordings.h"

#include "console/audio/RecordingArguments.h"
#include "console/takes/TakeReport.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "engine/base/EngineErrors.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <map>
#include <set>
#include <thread>

namespace velox::console
{

namespace
{

bool IsHidden(const std::filesystem::path& path)
{
    return Utf8(path.filename()).starts_with('.');
}

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
        if (IsHidden(entry->path()))
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
    std::vector<float> padded(SilenceSamples, 0.0F);
    padded.insert(padded.end(), audio.samples.begin(), audio.samples.end());
    padded.resize(padded.size() + SilenceSamples, 0.0F);
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
    return read;
}

/// In the order of the files; the takes are first.
std::vector<ReadRecording> ReadAll(const std::vector<std::filesystem::path>& files, std::size_t takes, Progress* progress)
{
    std::vector<ReadRecording> read(files.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&](const auto& tell) {
        for (std::size_t i = next++; i < files.size(); i = next++)
        {
            tell(i);
            read[i] = ReadOne(files[i], i < takes);
        }
    };
    std::vector<std::future<void>> others;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i)
    {
        others.push_back(std::async(std::launch::async, work, [](std::size_t) { StopIfInterrupted(); }));
    }
    work([&](std::size_t done) { progress->Update(static_cast<double>(done) / static_cast<double>(files.size())); });
    for (std::future<void>& other : others)
    {
        other.get();
    }
    return read;
}

} // namespace

std::size_t LanguageRecordings::Voices() const
{
    std::set<std::string> voices;
    for (const engine::PhraseTake& take : material.takes)
    {
        voices.insert(take.voice);
    }
    return voices.size();
}

double LanguageRecordings::BackgroundHours() const
{
    std::size_t samples = 0;
    for (const std::vector<float>& recording : material.background)
    {
        samples += recording.size();
    }
    return static_cast<double>(samples) / engine::SampleRate / 3600.0;
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
    LanguageFiles files{takes, FilesBelow(takes), {}};
    for (const std::string& argument : background)
    {
        const bool isFolder = std::filesystem::is_directory(PathFromUtf8(argument));
        for (const std::string& name : isFolder ? std::vector{argument} : FindRecordings({argument}))
        {
            std::ranges::copy(FilesBelow(PathFromUtf8(name)), std::back_inserter(files.background));
        }
    }
    return files;
}

LanguageRecordings ReadLanguageRecordings(const LanguageFiles& files, Progress* progress)
{
    std::vector<std::filesystem::path> all = files.takes;
    all.insert(all.end(), files.background.begin(), files.background.end());
    progress->Begin("Reading the recordings");
    std::vector<ReadRecording> read = ReadAll(all, files.takes.size(), progress);
    progress->Update(1.0);

    LanguageRecordings recordings;
    std::map<std::string, std::vector<std::string>> odd; // by what follows the numbers of a text
    for (std::size_t i = 0; i < all.size(); ++i)
    {
        const std::string name = Utf8(all[i]);
        auto& [audio, useless] = read[i];
        if (useless)
        {
            recordings.leftOut.push_back({name, "left out", Tone::Warning, {}, {*useless}});
            continue;
        }
        for (const std::string& warning : audio.warnings)
        {
            odd[warning.substr(warning.find_last_of("0123456789") + 1)].push_back(name + ": " + warning);
        }
        if (i < files.takes.size())
        {
            recordings.material.takes.push_back(
                {std::move(audio.samples), name, VoiceOf(all[i].lexically_relative(files.folder)), 1.0F});
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

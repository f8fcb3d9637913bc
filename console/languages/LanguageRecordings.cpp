#include "console/languages/LanguageRecordings.h"

#include "console/takes/TakeReport.h"
#include "console/text/Utf8Path.h"
#include "engine/base/EngineErrors.h"

#include <algorithm>
#include <set>

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

class Reader
{
public:
    Reader(std::size_t fileCount, Progress* readingProgress) : count(fileCount), progress(readingProgress)
    {
    }

    void ReadTake(const std::filesystem::path& file, const std::filesystem::path& folder)
    {
        const std::optional<Audio> audio = Read(file);
        if (!audio)
        {
            return;
        }
        if (const std::optional<Remark> useless = WhyUselessForTraining(*audio))
        {
            read.leftOut.push_back({Utf8(file), *useless});
            return;
        }
        read.material.takes.push_back({audio->samples, Utf8(file), VoiceOf(file.lexically_relative(folder)), 1.0F});
    }

    void ReadBackground(const std::filesystem::path& file)
    {
        if (std::optional<Audio> audio = Read(file))
        {
            read.material.background.push_back(std::move(audio->samples));
        }
    }

    LanguageRecordings read;

private:
    std::optional<Audio> Read(const std::filesystem::path& file)
    {
        progress->Update(static_cast<double>(done++) / static_cast<double>(count));
        try
        {
            return ReadAudio(file);
        }
        catch (const CommandFailure& failure)
        {
            read.leftOut.push_back({Utf8(file), UnreadableRemark(Utf8(file), failure)});
            return std::nullopt;
        }
    }

    std::size_t count;
    Progress* progress;
    std::size_t done = 0;
};

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

LanguageRecordings ReadLanguageRecordings(const std::filesystem::path& takes,
                                          const std::vector<std::filesystem::path>& background, Progress* progress)
{
    const std::vector<std::filesystem::path> takeFiles = FilesBelow(takes);
    std::vector<std::filesystem::path> backgroundFiles;
    for (const std::filesystem::path& folder : background)
    {
        const std::vector<std::filesystem::path> files = FilesBelow(folder);
        backgroundFiles.insert(backgroundFiles.end(), files.begin(), files.end());
    }
    progress->Begin("Reading the recordings");
    Reader reader(takeFiles.size() + backgroundFiles.size(), progress);
    for (const std::filesystem::path& file : takeFiles)
    {
        reader.ReadTake(file, takes);
    }
    for (const std::filesystem::path& file : backgroundFiles)
    {
        reader.ReadBackground(file);
    }
    progress->Update(1.0);
    return std::move(reader.read);
}

} // namespace velox::console

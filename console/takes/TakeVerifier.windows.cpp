#include "console/takes/TakeVerifier.h"

#include "console/hosting/LogExplanation.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

ConfiguredLanguage FindLanguage(const std::string& file, uint16_t language)
{
    const ConfigurationFile configuration = ReadConfigurationFile(PathFromUtf8(file));
    const ConfiguredLanguage* found = configuration.Find(language);
    if (found == nullptr)
    {
        std::string others;
        for (const ConfiguredLanguage& other : configuration.languages)
        {
            others += (others.empty() ? "" : ", ") + LanguageText(other.id);
        }
        throw CommandFailure(ExitCode::BadConfiguration,
                             fmt::format("Language {} is not in the configuration file {}.", LanguageText(language), file),
                             others.empty() ? "It has no language at all: add one." : "Take one that is: " + others + ".");
    }
    return *found;
}

} // namespace

TakeVerifier::TakeVerifier(const DetectorOptions& options, const std::string& languageText, const LogOptions& log)
    : language(ParseLanguage(languageText)), configured(FindLanguage(options.configuration, language)),
      models(ReadStandInModels(configured)), threshold(ReadThreshold(configured.preDefinedThreshold)), detector(options, log)
{
}

std::vector<TakeReport> TakeVerifier::Verify(const std::vector<std::string>& files, Progress& progress)
{
    progress.Begin("Verifying");
    std::vector<TakeReport> takes;
    for (const std::string& file : files)
    {
        progress.Update(static_cast<double>(takes.size()) / static_cast<double>(files.size()));
        takes.push_back(VerifyFile(file));
    }
    progress.Update(1.0);
    return takes;
}

TakeReport TakeVerifier::VerifyFile(const std::string& file)
{
    Audio audio;
    try
    {
        audio = ReadAudio(PathFromUtf8(file));
    }
    catch (const CommandFailure& failure)
    {
        return ReportUnreadable(file, failure);
    }
    const Answer answer = detector.Verify(language, audio.samples);
    const bool faulty = std::any_of(answer.lines.begin(), answer.lines.end(),
                                    [](const LoggedLine& line) { return line.level == VeloxLogLevel::Error; });
    if (!answer.Succeeded() && faulty)
    {
        throw ExplainFailure("Verifying " + file, answer.result, answer.lines);
    }
    engine::TakeReview review = engine::ReviewTake(models.phrase.get(), audio.samples);
    return ReportTake(file, std::move(audio), std::move(review),
                      {answer.Succeeded(), answer.lines, threshold, configured.qualityThreshold, models.phrase != nullptr});
}

std::string Verdict(const std::vector<TakeReport>& takes)
{
    std::string again;
    std::size_t accepted = 0;
    for (const TakeReport& take : takes)
    {
        accepted += take.accepted ? 1 : 0;
        again += take.accepted ? "" : (again.empty() ? "" : ", ") + take.file;
    }
    const std::string count = takes.size() == 1 ? fmt::format("The take is {}.", accepted == 1 ? "accepted" : "refused")
                                                : fmt::format("{} of {} takes are accepted.", accepted, takes.size());
    return again.empty() ? count : count + " Record again: " + again + ".";
}

ExitCode ExitCodeOf(const std::vector<TakeReport>& takes)
{
    const bool readable = std::all_of(takes.begin(), takes.end(), [](const TakeReport& take) { return take.readable; });
    const bool accepted = std::all_of(takes.begin(), takes.end(), [](const TakeReport& take) { return take.accepted; });
    return accepted ? ExitCode::Success : readable ? ExitCode::Refused : ExitCode::BadInput;
}

} // namespace velox::console

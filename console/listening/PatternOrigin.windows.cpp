#include "console/listening/PatternOrigin.h"

#include "console/hosting/LogExplanation.h"
#include "console/text/CommandFailure.h"
#include "console/text/LanguageName.h"
#include "firmware/BlockLayout.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

using firmware::PatternLayout;

/// What tells two patterns of one detector apart.
std::string Difference(uint16_t language, std::span<const uint8_t> given, std::span<const uint8_t> built)
{
    if (std::ranges::equal(given, built))
    {
        return {};
    }
    std::string text = fmt::format("The library builds another pattern for language {} now", LanguageText(language));
    if (given.size() >= PatternLayout::ModelOffset)
    {
        if (ThresholdOf(given) != ThresholdOf(built))
        {
            text += fmt::format(", with a threshold of {:.1f} instead of {:.1f}", ThresholdOf(built), ThresholdOf(given));
        }
        if (!std::ranges::equal(given.subspan(PatternLayout::ModelOffset), built.subspan(PatternLayout::ModelOffset)))
        {
            text += ", with another model (a user's needs --model)";
        }
    }
    return text + ". Language and user match are told of that one: the block does not say which pattern fired.";
}

std::string Arming(uint16_t language)
{
    return "Arming language " + LanguageText(language);
}

std::vector<uint16_t> ConfiguredLanguages(Detector* detector)
{
    const CapabilitiesAnswer answer = detector->GetCapabilities();
    if (!answer.Succeeded())
    {
        throw ExplainFailure("Reading the languages", answer.result, answer.lines);
    }
    if (answer.languages.empty())
    {
        throw CommandFailure(ExitCode::BadConfiguration, "No language is configured.", "Add one to the configuration file.");
    }
    return answer.languages;
}

} // namespace

double ThresholdOf(std::span<const uint8_t> pattern)
{
    const auto threshold = firmware::ReadUnsigned<uint32_t>(pattern, firmware::PatternLayout::ThresholdOffset);
    return static_cast<double>(static_cast<int32_t>(threshold)) / 256.0;
}

PatternOrigin FindPatternOrigin(Detector* detector, IStream* userModel, std::optional<uint16_t> language,
                                std::span<const uint8_t> pattern)
{
    const std::vector<uint16_t> candidates = language ? std::vector{*language} : ConfiguredLanguages(detector);
    for (const uint16_t candidate : candidates)
    {
        ArmingAnswer answer = detector->Arm(userModel, candidate);
        if (!answer.Succeeded() && candidates.size() == 1)
        {
            throw ExplainFailure(Arming(candidate), answer.result, answer.lines);
        }
        if (candidates.size() == 1 || std::ranges::equal(answer.pattern, pattern))
        {
            std::string difference = Difference(candidate, pattern, answer.pattern);
            return {candidate, std::move(answer.pattern), std::move(difference)};
        }
    }
    throw CommandFailure(
        ExitCode::Usage,
        fmt::format("The pattern is that of none of the {} configured languages as they are now.", candidates.size()),
        "Say with --language which one it is for. A user's own pattern needs the user's --model, too.");
}

} // namespace velox::console

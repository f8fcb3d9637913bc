// Stands for Windows' names of languages where the console's portable half is tested.
#include "console/text/LanguageName.h"

#include "console/text/CommandFailure.h"

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

struct KnownLanguage
{
    uint16_t id;
    const char* name;
    const char* display;
};
constexpr std::array KnownLanguages{
    KnownLanguage{1031, "de-DE", "German (Germany)"}, KnownLanguage{1033, "en-US", "English (United States)"},
    KnownLanguage{1036, "fr-FR", "French (France)"}, KnownLanguage{1040, "it-IT", "Italian (Italy)"},
    KnownLanguage{2057, "en-GB", "English (United Kingdom)"}};

const KnownLanguage* Known(uint16_t language)
{
    const auto* const found = std::ranges::find(KnownLanguages, language, &KnownLanguage::id);
    return found == KnownLanguages.end() ? nullptr : found;
}

} // namespace

uint16_t ParseLanguage(std::string_view text)
{
    const auto* const found =
        std::ranges::find_if(KnownLanguages, [&](const KnownLanguage& language) { return text == language.name; });
    if (found == KnownLanguages.end())
    {
        throw CommandFailure(ExitCode::Usage, "This is not a language.");
    }
    return found->id;
}

std::string LanguageName(uint16_t language)
{
    return Known(language) == nullptr ? "" : Known(language)->name;
}

std::string LanguageDisplayName(uint16_t language)
{
    return Known(language) == nullptr ? "" : Known(language)->display;
}

std::string LanguageText(uint16_t language)
{
    const std::string name = LanguageName(language);
    return name.empty() ? std::to_string(language) : std::to_string(language) + " (" + name + ")";
}

} // namespace velox::console

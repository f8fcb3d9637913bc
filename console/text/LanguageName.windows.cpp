#include "console/text/LanguageName.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"

#include <windows.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace velox::console
{

namespace
{

/// Numbers for locales of the user, or of no place: Windows gives them a name, too, but they are no languages.
constexpr std::array<LCID, 4> NoLanguages{LOCALE_NEUTRAL, LOCALE_CUSTOM_DEFAULT, LOCALE_CUSTOM_UNSPECIFIED,
                                          LOCALE_CUSTOM_UI_DEFAULT};

std::optional<uint16_t> ParseLanguageNumber(std::string_view text)
{
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hexadecimal ? 2 : 0);
    uint16_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && number != 0 ? std::optional(number) : std::nullopt;
}

/// Windows' own name; empty for what is no language.
std::wstring WindowsName(uint16_t language)
{
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    const bool known = std::ranges::find(NoLanguages, LCID{language}) == NoLanguages.end() &&
                       LCIDToLocaleName(MAKELCID(language, SORT_DEFAULT), name.data(), LOCALE_NAME_MAX_LENGTH, 0) != 0;
    return known ? name.data() : L"";
}

} // namespace

uint16_t ParseLanguage(std::string_view text)
{
    if (const std::optional<uint16_t> number = ParseLanguageNumber(text))
    {
        return *number;
    }
    std::string name(text);
    std::ranges::replace(name, '_', '-');
    const LCID locale = text.empty() ? 0 : LocaleNameToLCID(PathFromUtf8(name).c_str(), 0);
    if (locale == 0 || locale > 0xFFFF || std::ranges::find(NoLanguages, locale) != NoLanguages.end())
    {
        throw CommandFailure(ExitCode::Usage, fmt::format("\"{}\" is not a language.", text),
                             "Give a name such as en-US, or the LANGID as 1033 or 0x409.");
    }
    return static_cast<uint16_t>(locale);
}

std::string LanguageName(uint16_t language)
{
    return Utf8(WindowsName(language));
}

std::string LanguageDisplayName(uint16_t language)
{
    const std::wstring name = WindowsName(language);
    std::array<wchar_t, 256> english{};
    const bool known =
        !name.empty() && GetLocaleInfoEx(name.c_str(), LOCALE_SENGLISHDISPLAYNAME, english.data(), english.size()) > 0;
    return Utf8(known ? english.data() : name);
}

std::string LanguageText(uint16_t language)
{
    const std::string name = LanguageName(language);
    return name.empty() ? std::to_string(language) : fmt::format("{} ({})", language, name);
}

} // namespace velox::console

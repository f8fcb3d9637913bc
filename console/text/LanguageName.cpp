#include "console/text/LanguageName.h"

#include "console/text/CommandFailure.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <optional>

namespace velox::console
{

namespace
{

struct Language
{
    uint16_t id;
    std::string_view name;
};

/// The LANGIDs of the languages that voice assistants are made for; any other is given as a number.
constexpr std::array Languages{
    Language{0x0401, "ar-SA"}, Language{0x0402, "bg-BG"}, Language{0x0403, "ca-ES"}, Language{0x0404, "zh-TW"},
    Language{0x0405, "cs-CZ"}, Language{0x0406, "da-DK"}, Language{0x0407, "de-DE"}, Language{0x0408, "el-GR"},
    Language{0x0409, "en-US"}, Language{0x040B, "fi-FI"}, Language{0x040C, "fr-FR"}, Language{0x040D, "he-IL"},
    Language{0x040E, "hu-HU"}, Language{0x0410, "it-IT"}, Language{0x0411, "ja-JP"}, Language{0x0412, "ko-KR"},
    Language{0x0413, "nl-NL"}, Language{0x0414, "nb-NO"}, Language{0x0415, "pl-PL"}, Language{0x0416, "pt-BR"},
    Language{0x0418, "ro-RO"}, Language{0x0419, "ru-RU"}, Language{0x041A, "hr-HR"}, Language{0x041B, "sk-SK"},
    Language{0x041D, "sv-SE"}, Language{0x041E, "th-TH"}, Language{0x041F, "tr-TR"}, Language{0x0421, "id-ID"},
    Language{0x0422, "uk-UA"}, Language{0x0424, "sl-SI"}, Language{0x0425, "et-EE"}, Language{0x0426, "lv-LV"},
    Language{0x0427, "lt-LT"}, Language{0x042A, "vi-VN"}, Language{0x0439, "hi-IN"}, Language{0x0804, "zh-CN"},
    Language{0x0807, "de-CH"}, Language{0x0809, "en-GB"}, Language{0x080A, "es-MX"}, Language{0x080C, "fr-BE"},
    Language{0x0810, "it-CH"}, Language{0x0813, "nl-BE"}, Language{0x0816, "pt-PT"}, Language{0x0C07, "de-AT"},
    Language{0x0C09, "en-AU"}, Language{0x0C0A, "es-ES"}, Language{0x0C0C, "fr-CA"}, Language{0x1009, "en-CA"},
    Language{0x100C, "fr-CH"}, Language{0x1409, "en-NZ"}, Language{0x1809, "en-IE"}, Language{0x4009, "en-IN"}};

bool SameName(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](unsigned char a, unsigned char b) {
        return std::tolower(a) == std::tolower(b) || (a == '_' && b == '-');
    });
}

std::optional<uint16_t> ParseNumber(std::string_view text)
{
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hexadecimal ? 2 : 0);
    uint16_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && number != 0 ? std::optional(number) : std::nullopt;
}

} // namespace

uint16_t ParseLanguage(std::string_view text)
{
    if (const std::optional<uint16_t> number = ParseNumber(text))
    {
        return *number;
    }
    const auto* found =
        std::find_if(Languages.begin(), Languages.end(), [&](const Language& language) { return SameName(text, language.name); });
    if (found == Languages.end())
    {
        throw CommandFailure(ExitCode::Usage, fmt::format("\"{}\" is not a language.", text),
                             "Give a name such as en-US, or the LANGID as 1033 or 0x409.");
    }
    return found->id;
}

std::string_view LanguageName(uint16_t language)
{
    const auto* found =
        std::find_if(Languages.begin(), Languages.end(), [&](const Language& entry) { return entry.id == language; });
    return found == Languages.end() ? std::string_view{} : found->name;
}

std::string LanguageText(uint16_t language)
{
    const std::string_view name = LanguageName(language);
    return name.empty() ? std::to_string(language) : fmt::format("{} ({})", language, name);
}

} // namespace velox::console

#include "console/doctor/LocaleName.h"

#include "console/text/Utf8Path.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

/// Numbers for locales of the user, or of no place: Windows gives them a name, too, but they are no languages.
constexpr std::array<uint16_t, 4> NoLanguages{LOCALE_NEUTRAL, LOCALE_CUSTOM_DEFAULT, LOCALE_CUSTOM_UNSPECIFIED,
                                              LOCALE_CUSTOM_UI_DEFAULT};
constexpr int Longest = 256;

} // namespace

std::string LocaleName(uint16_t language)
{
    const LCID locale = MAKELCID(language, SORT_DEFAULT);
    wchar_t name[LOCALE_NAME_MAX_LENGTH]{};
    const bool noLanguage = std::find(NoLanguages.begin(), NoLanguages.end(), language) != NoLanguages.end();
    if (noLanguage || LCIDToLocaleName(locale, name, LOCALE_NAME_MAX_LENGTH, 0) == 0)
    {
        return {};
    }
    wchar_t english[Longest]{};
    return Utf8(GetLocaleInfoW(locale, LOCALE_SENGLISHDISPLAYNAME, english, Longest) > 0 ? english : name);
}

} // namespace velox::console

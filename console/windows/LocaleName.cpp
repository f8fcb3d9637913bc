#include "LocaleName.h"

#include "Utf8Path.h"

#include <windows.h>

namespace velox::console
{

std::string LocaleName(uint16_t language)
{
    const LCID locale = MAKELCID(language, SORT_DEFAULT);
    wchar_t name[LOCALE_NAME_MAX_LENGTH]{};
    // Numbers that Windows keeps for locales of the user or of no place give names, too; those are no languages.
    constexpr LCID Custom = 0x0C00;
    constexpr LCID LastCustom = 0x1400;
    const bool custom = language == 0 || language == Custom || language == 0x1000 || language == LastCustom;
    if (custom || LCIDToLocaleName(locale, name, LOCALE_NAME_MAX_LENGTH, 0) == 0)
    {
        return {};
    }
    constexpr int Longest = 256;
    wchar_t english[Longest]{};
    return Utf8(GetLocaleInfoW(locale, LOCALE_SENGLISHDISPLAYNAME, english, Longest) > 0 ? english : name);
}

} // namespace velox::console

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velox::console
{

// Languages as Windows numbers and names them.

/// Reads a language as people write it: a LANGID in decimal (1033) or hexadecimal (0x409), or a name (en-US, in any case).
/// @throws CommandFailure Usage
uint16_t ParseLanguage(std::string_view text);

/// "en-US" for 1033; empty for a LANGID that Windows does not know.
std::string LanguageName(uint16_t language);

/// "English (United States)" for 1033; empty for a LANGID that Windows does not know.
std::string LanguageDisplayName(uint16_t language);

/// As texts show it: "1033 (en-US)", or "1033" alone.
std::string LanguageText(uint16_t language);

} // namespace velox::console

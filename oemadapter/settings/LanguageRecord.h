#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace velox::oemadapter
{

/// The language that the user's detector was armed in last: LastLanguage, a REG_DWORD of
/// HKCU\Software\Velox\KeywordDetectorAdapter. Windows may set a stored pattern again without having it built, in another
/// process, or after a restart: then nobody else knows. Nothing when there is no record of a language.
std::optional<uint16_t> ReadLastLanguage();

/// Writes the record, if it says otherwise.
LSTATUS WriteLastLanguage(uint16_t language);

} // namespace velox::oemadapter

#pragma once

#include <cstdint>

// The library's settings key in the registry: the real one on Windows, in the tests' private Wine prefix; the double's natively.

/// Removes the key with everything in it, so that it is not there.
void RemoveSettingsKey();

/// Makes the key, and writes a value of four bytes, or of eight.
void WriteSettingsDword(const wchar_t* name, uint32_t value);
void WriteSettingsQword(const wchar_t* name, uint64_t value);

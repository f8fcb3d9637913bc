#pragma once

#include <cstdint>

/// Sets one of the library's registry values, "LoggerLevel", "SDKLoggerLevel" or "LogToFile". Throws when that fails.
void WriteSetting(const wchar_t* name, uint32_t value);

#pragma once

#include <optional>
#include <string>

inline constexpr const char16_t* DefaultModulePath = u"C:\\Program Files\\Velox\\VeloxOemAdapter.dll";

/// The path of the module that the double tells; nothing when it is to fail.
extern std::optional<std::u16string> modulePath;

#pragma once

#include <optional>
#include <string>

inline constexpr const char16_t* DefaultModulePath = u"C:\\Program Files\\Velox\\VeloxOemAdapter.dll";

/// The path of the module that the double tells; nothing when it is to fail.
extern std::optional<std::u16string> modulePath;

/// What the double knows of the code page: Latin-1 is 1252 here.
enum class CodePage : unsigned int
{
    Latin1 = 1252,
    Utf8 = 65001,
};
extern CodePage codePage;

/// How variables are expanded: not at all, or to a text that is longer when it is written than it was when its length was asked
/// for.
enum class Expansion
{
    Works,
    Fails,
    Grows,
};
extern Expansion expansion;

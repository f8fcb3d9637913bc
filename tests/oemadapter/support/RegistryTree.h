#pragma once

#include <windows.h>

#include <optional>
#include <string>

// Keys and values in the registry: the real one on Windows, in the tests' private Wine prefix; the double's natively.

constexpr const char16_t* LibraryKey = u"SOFTWARE\\Velox\\KeywordDetectorAdapter";
constexpr const char16_t* AdapterKey = u"SOFTWARE\\Velox\\KeywordDetectorAdapter\\OemAdapter";
constexpr const char16_t* UserKey = u"Software\\Velox\\KeywordDetectorAdapter";
constexpr const char16_t* ClassKey = u"SOFTWARE\\Classes\\CLSID\\{3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}";
constexpr const char16_t* ServerKey = u"SOFTWARE\\Classes\\CLSID\\{3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}\\InprocServer32";

/// Makes the key and writes the value. An empty name is the default value's.
void WriteValue(HKEY root, const std::u16string& key, const std::u16string& name, DWORD type, const std::string& bytes);
void WriteText(HKEY root, const std::u16string& key, const std::u16string& name, const std::u16string& text, DWORD type = REG_SZ);
void WriteNumber(HKEY root, const std::u16string& key, const std::u16string& name, DWORD number);

bool HasKey(HKEY root, const std::u16string& key);

/// The value's text; nothing when it is not there.
std::optional<std::u16string> ReadText(HKEY root, const std::u16string& key, const std::u16string& name);
std::optional<DWORD> ReadNumber(HKEY root, const std::u16string& key, const std::u16string& name);

/// Removes what the adapter, and the tests of it, may have left in the registry.
void RemoveAdapterKeys();

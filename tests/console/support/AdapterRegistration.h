#pragma once

#include <string>

/// The OEM adapter beside this program, registered as its own entry point does it, with a configuration file of its own; as long
/// as this lives. The registry is that of the tests' Wine prefix.
class AdapterRegistration
{
public:
    /// @param configuration  absolute path, UTF-8
    explicit AdapterRegistration(const std::string& configuration);
    AdapterRegistration(const AdapterRegistration&) = delete;
    AdapterRegistration& operator=(const AdapterRegistration&) = delete;
    ~AdapterRegistration();

    /// Writes a text of the class: of the key "" or "\\InprocServer32".
    static void WriteClassText(const std::wstring& key, const wchar_t* name, const std::wstring& text);
};

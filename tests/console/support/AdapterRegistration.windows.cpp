#include "tests/console/support/AdapterRegistration.h"

#include "console/hosting/DetectorOptions.h"
#include "console/text/Utf8Path.h"

#include <windows.h>

#include <cstring>
#include <stdexcept>

namespace
{

constexpr const wchar_t* SettingsKey = L"SOFTWARE\\Velox\\KeywordDetectorAdapter";

void Require(bool done, const char* what)
{
    if (!done)
    {
        throw std::runtime_error(what);
    }
}

void CallEntryPoint(const char* name)
{
    const HMODULE module = LoadLibraryW(L"VeloxOemAdapter.dll");
    Require(module != nullptr, "VeloxOemAdapter.dll does not load");
    HRESULT(STDAPICALLTYPE * function)() = nullptr;
    const FARPROC found = GetProcAddress(module, name);
    std::memcpy(&function, &found, sizeof(function));
    const bool done = function() == S_OK;
    FreeLibrary(module);
    Require(done, name);
}

void WriteText(const std::wstring& key, const wchar_t* name, const std::wstring& text)
{
    Require(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(),
                            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS,
            "the registry cannot be written");
}

} // namespace

AdapterRegistration::AdapterRegistration(const std::string& configuration)
{
    CallEntryPoint("DllRegisterServer");
    std::wstring path = velox::console::PathFromUtf8(configuration).make_preferred().wstring();
    WriteText(std::wstring(SettingsKey) + L"\\OemAdapter", L"ConfigurationFile", path);
}

AdapterRegistration::~AdapterRegistration()
{
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, SettingsKey);
    CallEntryPoint("DllUnregisterServer");
}

void AdapterRegistration::WriteClassText(const std::wstring& key, const wchar_t* name, const std::wstring& text)
{
    const std::wstring id = velox::console::PathFromUtf8(velox::console::DefaultDetectorId).wstring();
    WriteText(L"SOFTWARE\\Classes\\CLSID\\" + id + key, name, text);
}

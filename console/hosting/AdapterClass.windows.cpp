#include "console/hosting/AdapterClass.h"

#include "console/text/Utf8Path.h"

#include <windows.h>

namespace velox::console
{

namespace
{

/// A text of the 64-bit registry, with its variables put in.
std::optional<std::wstring> RegistryTextOf(const std::wstring& key, const wchar_t* name)
{
    constexpr DWORD LongestText = 32768;
    std::wstring text(LongestText, L'\0');
    DWORD size = LongestText * sizeof(wchar_t);
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, RRF_RT_REG_SZ | RRF_SUBKEY_WOW6464KEY, nullptr, text.data(), &size) !=
        ERROR_SUCCESS)
    {
        return std::nullopt;
    }
    return text.c_str();
}

} // namespace

std::optional<AdapterClass> FindAdapterClass(const std::string& detectorId)
{
    const std::wstring id = PathFromUtf8(detectorId).wstring();
    const std::wstring server =
        L"SOFTWARE\\Classes\\CLSID\\" + (id.starts_with(L'{') ? id : L"{" + id + L"}") + L"\\InprocServer32";
    const std::optional<std::wstring> module = RegistryTextOf(server, nullptr);
    if (!module)
    {
        return std::nullopt;
    }
    const std::optional<std::wstring> named =
        RegistryTextOf(L"SOFTWARE\\Velox\\KeywordDetectorAdapter\\OemAdapter", L"ConfigurationFile");
    AdapterClass adapter;
    adapter.module = *module;
    adapter.threadingModel = Utf8(RegistryTextOf(server, L"ThreadingModel").value_or(L""));
    adapter.configuration = named ? std::filesystem::path(*named) : adapter.module.parent_path() / "VeloxKwsConfig.xml";
    adapter.isConfigurationNamed = named.has_value();
    return adapter;
}

} // namespace velox::console

#include "oemadapter/server/Registration.h"

#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/settings/RegistryKey.h"

#include <objbase.h>

#include <array>
#include <optional>

namespace velox::oemadapter
{

namespace
{

constexpr const char16_t* ClassName = u"Velox keyword detector OEM adapter";

/// The two keys of a registration.
struct RegistrationKeys
{
    WideText classKey;
    WideText serverKey;
};

RegistrationKeys Keys()
{
    WideText id(39, u'\0'); // "{...}" and a zero
    StringFromGUID2(DetectorId, Wide(id), static_cast<int>(id.size()));
    id.pop_back();
    const WideText classKey = u"SOFTWARE\\Classes\\CLSID\\" + id;
    return {classKey, classKey + u"\\InprocServer32"};
}

/// A value of the registration: null names a key's default value.
struct Entry
{
    const WideText* key;
    const WCHAR* name;
    RegistryValue value;
};

std::array<Entry, 3> Entries(const RegistrationKeys& keys, const WideText& modulePath)
{
    return {Entry{&keys.classKey, nullptr, TextValue(ClassName)}, Entry{&keys.serverKey, nullptr, TextValue(modulePath)},
            Entry{&keys.serverKey, L"ThreadingModel", TextValue(u"Both")}};
}

/// A failure that is none when nothing is there.
LSTATUS UnlessMissing(LSTATUS status)
{
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

LSTATUS Write(const Entry& entry)
{
    RegistryKey key;
    if (const LSTATUS status = key.Make(HKEY_LOCAL_MACHINE, *entry.key, KEY_SET_VALUE); status != ERROR_SUCCESS)
    {
        return status;
    }
    return key.Write(entry.name, entry.value);
}

LSTATUS Remove(const Entry& entry)
{
    RegistryKey key;
    if (const LSTATUS status = key.Open(HKEY_LOCAL_MACHINE, *entry.key, KEY_SET_VALUE); status != ERROR_SUCCESS)
    {
        return UnlessMissing(status);
    }
    return UnlessMissing(key.Remove(entry.name));
}

LSTATUS RemoveIfEmpty(const WideText& path)
{
    {
        RegistryKey key;
        if (const LSTATUS status = key.Open(HKEY_LOCAL_MACHINE, path, KEY_QUERY_VALUE); status != ERROR_SUCCESS)
        {
            return UnlessMissing(status);
        }
        if (!key.IsEmpty())
        {
            return ERROR_SUCCESS;
        }
    }
    return UnlessMissing(RegDeleteKeyExW(HKEY_LOCAL_MACHINE, Wide(path), KEY_WOW64_64KEY, 0));
}

/// What was there before a registration, to put it back.
class Before
{
public:
    Before(const RegistrationKeys& registrationKeys, const std::array<Entry, 3>& entries) : keys(registrationKeys)
    {
        RegistryKey key;
        classKeyWasThere = key.Open(HKEY_LOCAL_MACHINE, keys.classKey, KEY_QUERY_VALUE) == ERROR_SUCCESS;
        serverKeyWasThere = key.Open(HKEY_LOCAL_MACHINE, keys.serverKey, KEY_QUERY_VALUE) == ERROR_SUCCESS;
        for (std::size_t i = 0; i < entries.size(); ++i)
        {
            values[i] = {entries[i].key, entries[i].name, {}};
            wasThere[i] = key.Open(HKEY_LOCAL_MACHINE, *entries[i].key, KEY_QUERY_VALUE) == ERROR_SUCCESS &&
                          key.Read(entries[i].name, &values[i].value) == ERROR_SUCCESS;
        }
    }

    void PutBack() const
    {
        for (std::size_t i = 0; i < values.size(); ++i)
        {
            static_cast<void>(wasThere[i] ? Write(values[i]) : Remove(values[i]));
        }
        if (!serverKeyWasThere)
        {
            RemoveIfEmpty(keys.serverKey);
        }
        if (!classKeyWasThere)
        {
            RemoveIfEmpty(keys.classKey);
        }
    }

private:
    const RegistrationKeys& keys;
    bool classKeyWasThere = false;
    bool serverKeyWasThere = false;
    std::array<Entry, 3> values;
    std::array<bool, 3> wasThere{};
};

} // namespace

HRESULT RegisterServer(const WideText& modulePath)
{
    const RegistrationKeys keys = Keys();
    const std::array<Entry, 3> entries = Entries(keys, modulePath);
    const Before before(keys, entries);
    for (const Entry& entry : entries)
    {
        if (const LSTATUS status = Write(entry); status != ERROR_SUCCESS)
        {
            before.PutBack();
            return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
        }
    }
    return S_OK;
}

HRESULT UnregisterServer()
{
    const RegistrationKeys keys = Keys();
    LSTATUS failure = ERROR_SUCCESS;
    const auto keep = [&failure](LSTATUS status) {
        failure = failure == ERROR_SUCCESS ? status : failure;
    };
    for (const Entry& entry : Entries(keys, {}))
    {
        keep(Remove(entry));
    }
    keep(RemoveIfEmpty(keys.serverKey));
    keep(RemoveIfEmpty(keys.classKey));
    return HRESULT_FROM_WIN32(static_cast<DWORD>(failure));
}

} // namespace velox::oemadapter

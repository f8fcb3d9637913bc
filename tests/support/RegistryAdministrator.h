#pragma once

/// While it lives, the registry's keys of all users may be changed. Under Wine they always may; the double asks for it.
class RegistryAdministrator
{
public:
    RegistryAdministrator();
    RegistryAdministrator(const RegistryAdministrator&) = delete;
    RegistryAdministrator& operator=(const RegistryAdministrator&) = delete;
    ~RegistryAdministrator();
};

#pragma once

#include "oemadapter/server/Registration.h"
#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/support/RegistryAdministrator.h"

#include <gtest/gtest.h>

/// No registration at first, and none left.
class RegistrationTest : public testing::Test
{
protected:
    RegistrationTest()
    {
        RemoveAdapterKeys();
    }
    ~RegistrationTest() override
    {
        RemoveAdapterKeys();
    }

    static void ExpectRegistered(const std::u16string& path)
    {
        EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ClassKey, u""), u"Velox keyword detector OEM adapter");
        EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ServerKey, u""), path);
        EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ServerKey, u"ThreadingModel"), u"Both");
    }

    RegistryAdministrator administrator;
};

constexpr const char16_t* ModuleFile = u"C:\\Program Files\\Velox\\VeloxOemAdapter.dll";

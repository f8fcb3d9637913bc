#pragma once

#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/windows/ComPointer.h"
#include "tests/oemadapter/support/Conversation.h"
#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/support/TestConfiguration.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

#include <filesystem>
#include <memory>

/// Creates adapters by their class and speaks with both generations. The thread has entered an apartment.
Conversation Converse();

/// Arms with an adapter of its own.
HRESULT Arm();

/// Creates an adapter, lets it parse a result, and releases it.
HRESULT CreateUseAndRelease();

/// @return S_OK and the interface
template <typename Interface>
velox::oemadapter::ComPointer<Interface> CreateAdapter(REFIID iid)
{
    void* made = nullptr;
    EXPECT_EQ(CoCreateInstance(velox::oemadapter::DetectorId, nullptr, CLSCTX_INPROC_SERVER, iid, &made), S_OK);
    return velox::oemadapter::ComPointer<Interface>(static_cast<Interface*>(made));
}

/// A thread's time in an apartment.
class Apartment
{
public:
    explicit Apartment(DWORD model)
    {
        EXPECT_EQ(CoInitializeEx(nullptr, model), S_OK);
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment()
    {
        CoUninitialize();
    }
};

/// The adapter's folder, beside this program's, and never searched by it.
std::filesystem::path ServerFolder();

/// The adapter as it is installed: registered by its own function, with settings for a configuration. The program lies elsewhere.
class ComHost : public testing::Test
{
protected:
    ComHost();
    ~ComHost() override;

    TestConfiguration configuration;
    std::filesystem::path logFile = std::filesystem::path(configuration.Path()).parent_path() / "log" / "adapter.log";
};

// How long the module stays, what it exports, and what many objects leave behind.
#include "tests/oemadapter/com/ComHost.h"

#include <gmock/gmock.h>

#include <psapi.h>

#include <array>
#include <iostream>

namespace LifetimeOnRealTests
{

using testing::EndsWith;
using testing::Not;

constexpr const wchar_t* Module = L"VeloxOemAdapter.dll";

class Lifetime : public ComHost
{
protected:
    /// The process's share of the page file: its private memory, in whole pages.
    static std::size_t PrivateBytes()
    {
        PROCESS_MEMORY_COUNTERS counters{};
        EXPECT_TRUE(K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)));
        return counters.PagefileUsage;
    }

    /// What all heaps of the process have handed out and not got back.
    static std::size_t HeapBytes()
    {
        std::array<HANDLE, 64> heaps{};
        const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
        EXPECT_LE(count, heaps.size());
        std::size_t bytes = 0;
        for (DWORD i = 0; i < count; ++i)
        {
            PROCESS_HEAP_ENTRY entry{};
            while (HeapWalk(heaps[i], &entry) != FALSE)
            {
                bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
            }
        }
        return bytes;
    }
};

TEST_F(Lifetime, TheModuleGoesWithItsLastObject)
{
    const Apartment apartment(COINIT_APARTMENTTHREADED);
    auto adapter = CreateAdapter<IUnknown>(IID_IUnknown);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(GetModuleHandleW(Module), nullptr);
    adapter.reset();
    CoFreeUnusedLibrariesEx(0, 0);
    for (const wchar_t* name : {Module, L"VeloxHwKwsImpl.dll", L"VeloxWovSDK.dll"})
    {
        EXPECT_EQ(GetModuleHandleW(name), nullptr);
    }
}

TEST_F(Lifetime, TheModuleComesBackAfterItWent)
{
    const Apartment apartment(COINIT_APARTMENTTHREADED);
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", 1033);
    for (int i = 0; i < 5; ++i)
    {
        EXPECT_EQ(CreateUseAndRelease(), S_OK);
        CoFreeUnusedLibrariesEx(0, 0);
        EXPECT_EQ(GetModuleHandleW(Module), nullptr);
    }
}

TEST_F(Lifetime, TheModulesEndIsTheLibrarysLastLine)
{
    const Apartment apartment(COINIT_APARTMENTTHREADED);
    WriteNumber(HKEY_LOCAL_MACHINE, LibraryKey, u"LoggerLevel", 4);
    WriteNumber(HKEY_LOCAL_MACHINE, LibraryKey, u"LogToFile", 1);
    EXPECT_EQ(Arm(), S_OK);
    EXPECT_THAT(ReadWholeFile(logFile.string()), Not(EndsWith(" Destructor.\r\n")));
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_THAT(ReadWholeFile(logFile.string()), EndsWith(" Destructor.\r\n"));
}

TEST_F(Lifetime, AHeldFactoryKeepsTheModule)
{
    const Apartment apartment(COINIT_APARTMENTTHREADED);
    void* object = nullptr;
    ASSERT_EQ(CoGetClassObject(velox::oemadapter::DetectorId, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, &object), S_OK);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(GetModuleHandleW(Module), nullptr);
    static_cast<IClassFactory*>(object)->Release();
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(GetModuleHandleW(Module), nullptr);
}

TEST_F(Lifetime, TenThousandObjectsLeaveNothing)
{
    constexpr int WarmUp = 500;
    constexpr int Count = 10'000;
    const Apartment apartment(COINIT_MULTITHREADED);
    EXPECT_EQ(Arm(), S_OK);
    for (int i = 0; i < WarmUp; ++i)
    {
        ASSERT_EQ(CreateUseAndRelease(), S_OK);
    }
    const std::size_t privateBefore = PrivateBytes();
    const std::size_t heapBefore = HeapBytes();
    for (int i = 0; i < Count; ++i)
    {
        ASSERT_EQ(CreateUseAndRelease(), S_OK);
    }
    const std::size_t privateAfter = PrivateBytes();
    const std::size_t heapAfter = HeapBytes();
    std::cout << Count << " objects: private bytes " << privateBefore << ", then " << privateAfter << "; on the heaps "
              << heapBefore << ", then " << heapAfter << "\n";
    EXPECT_LT(heapAfter, heapBefore + Count);             // less than a byte for each
    EXPECT_LE(privateAfter, privateBefore + 1024 * 1024); // what a heap takes at once
}

TEST_F(Lifetime, TheModuleExportsTheFourFunctionsOnly)
{
    const HMODULE module = LoadLibraryExW((ServerFolder() / Module).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    ASSERT_NE(module, nullptr);
    for (const char* name : {"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"})
    {
        EXPECT_NE(GetProcAddress(module, name), nullptr);
    }
    const auto* image = reinterpret_cast<const BYTE*>(module);
    const auto* headers =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
    const DWORD place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    EXPECT_EQ(reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + place)->NumberOfFunctions, 4U);
    FreeLibrary(module);
    EXPECT_EQ(GetModuleHandleW(Module), nullptr);
}

} // namespace LifetimeOnRealTests

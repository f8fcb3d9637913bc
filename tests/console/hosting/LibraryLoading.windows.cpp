#include "console/hosting/LibraryLoading.h"

#include <windows.h>

#include <gtest/gtest.h>

TEST(LibraryLoading, TheLibraryIsThereFromTheFirstRequestOn)
{
    velox::console::RequireLibrary();
    const HMODULE library = GetModuleHandleW(L"VeloxHwKwsImpl.dll");
    EXPECT_NE(library, nullptr);
    velox::console::RequireLibrary();
    EXPECT_EQ(GetModuleHandleW(L"VeloxHwKwsImpl.dll"), library);
}

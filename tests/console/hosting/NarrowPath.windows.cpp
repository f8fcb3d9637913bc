#include "console/hosting/NarrowPath.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace NarrowPathOnRealTests
{

using velox::console::NarrowPath;

TEST(NarrowPath, KeepsWhatTheCodePageHolds)
{
    EXPECT_EQ(NarrowPath(L"C:\\Velox\\a b.xml"), "C:\\Velox\\a b.xml");
    EXPECT_EQ(NarrowPath(L""), "");
}

TEST(NarrowPath, IsNoneWhereALetterWouldBeLost)
{
    if (GetACP() == CP_UTF8)
    {
        EXPECT_EQ(NarrowPath(L"\u767A"), "\xE7\x99\xBA");
    }
    else
    {
        EXPECT_EQ(NarrowPath(L"C:\\\u767A\u8A71.xml"), std::nullopt);
    }
}

} // namespace NarrowPathOnRealTests

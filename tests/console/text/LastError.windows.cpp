#include "console/text/LastError.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <system_error>

namespace LastErrorOnRealTests
{

TEST(LastError, IsWindowsOwnReason)
{
    SetLastError(ERROR_ACCESS_DENIED);
    const std::string denied = velox::console::LastError();
    EXPECT_EQ(denied, std::system_category().message(ERROR_ACCESS_DENIED));
    SetLastError(ERROR_DISK_FULL);
    EXPECT_NE(velox::console::LastError(), denied);
}

} // namespace LastErrorOnRealTests

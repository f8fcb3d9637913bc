#include "oemadapter/settings/ModulePath.h"

#include <gtest/gtest.h>

namespace ModulePathTests
{

TEST(ModulePath, IsAbsoluteAndThatOfAModule)
{
    const velox::oemadapter::WideText path = velox::oemadapter::ModulePath();
    ASSERT_GT(path.size(), 7U);
    EXPECT_EQ(path.substr(1, 2), u":\\");
    EXPECT_TRUE(path.ends_with(u".dll") || path.ends_with(u".exe"));
}

} // namespace ModulePathTests

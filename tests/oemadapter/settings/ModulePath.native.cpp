#include "oemadapter/settings/ModulePath.h"

#include "tests/oemadapter/support/Environment.native.h"

#include <gtest/gtest.h>

namespace ModulePathFaultsTests
{

TEST(ModulePathFaults, IsEmptyWhenTheModuleIsNotKnown)
{
    modulePath.reset();
    EXPECT_TRUE(velox::oemadapter::ModulePath().empty());
    modulePath = DefaultModulePath;
}

} // namespace ModulePathFaultsTests

#include "AdapterCustomDeleter.h"

#include "tests/support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <new>

namespace AdapterCustomDeleterFaultsTests
{

TEST(AdapterCustomDeleterFaults, FreesStorageOfTheGlobalNew)
{
    const std::size_t before = AllocatedBytes();
    KeywordDetectorAdapterImplementation::AdapterCustomDeleter()(::operator new(1000));
    EXPECT_EQ(AllocatedBytes(), before);
}

} // namespace AdapterCustomDeleterFaultsTests

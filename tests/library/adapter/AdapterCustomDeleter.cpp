#include "AdapterCustomDeleter.h"

#include "tests/support/PrivateAccess.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

#include <cstring>
#include <type_traits>
#include <utility>

namespace AdapterCustomDeleterTests
{

using KeywordDetectorAdapterImplementation::AdapterCustomDeleter;
using KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl;
using testing::IsEmpty;

static_assert(std::is_empty_v<AdapterCustomDeleter>);
static_assert(std::is_same_v<decltype(AdapterCustomDeleter()(static_cast<void*>(nullptr))), void>);

TEST(AdapterCustomDeleter, DoesNothingForNull)
{
    AdapterCustomDeleter deleter;
    EXPECT_NO_THROW(deleter(nullptr));
}

TEST(AdapterCustomDeleter, AssignmentsReturnTheStructItself)
{
    AdapterCustomDeleter one;
    AdapterCustomDeleter other;
    EXPECT_EQ(&(one = other), &one);
    EXPECT_EQ(&(one = std::move(other)), &one);
}

// Kept: no "Destructor." line, and the reader stays; here the test releases it.
TEST(AdapterCustomDeleter, FreesTheStorageAndRunsNoDestructor)
{
    RecordingLogger logger;
    auto adapter = CreateKeywordDetectorAdapterImpl(&logger, "missing.xml", "1.2.3", GUID{});
    logger.Take();
    auto* made = dynamic_cast<VeloxKeywordDetectorAdapterImpl*>(adapter.get());
    ASSERT_NE(made, nullptr);
    ConfigurationReader* reader = nullptr;
    std::memcpy(&reader, reinterpret_cast<const char*>(made) + PrivateAccess::AdapterFieldOffsets(*made)[1], sizeof(reader));

    adapter.reset();
    EXPECT_THAT(logger.lines, IsEmpty());
    bool logToFile = true;
    reader->GetLogToFileFromReg(&logToFile);
    EXPECT_EQ(logger.lines.size(), 1U);
    delete reader;
}

} // namespace AdapterCustomDeleterTests

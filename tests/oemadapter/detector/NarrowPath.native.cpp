#include "oemadapter/detector/NarrowPath.h"

#include "tests/oemadapter/support/Environment.native.h"

#include <gtest/gtest.h>

namespace NarrowPathFaultsTests
{

using velox::oemadapter::NarrowPath;

/// A process whose code page is UTF-8, as its manifest or the system's settings may say.
class NarrowPathFaults : public testing::Test
{
protected:
    NarrowPathFaults()
    {
        codePage = CodePage::Utf8;
    }
    ~NarrowPathFaults() override
    {
        codePage = CodePage::Latin1;
    }
};

TEST_F(NarrowPathFaults, Utf8HasEveryLetter)
{
    EXPECT_EQ(NarrowPath(u"C:\\\u4E16\U0001F399.xml"), "C:\\\xE4\xB8\x96\xF0\x9F\x8E\x99.xml");
}

TEST_F(NarrowPathFaults, HalfOfAPairIsNoLetterInUtf8Either)
{
    EXPECT_EQ(NarrowPath(std::u16string(u"C:\\") + char16_t{0xD800} + u".xml"), std::nullopt);
}

} // namespace NarrowPathFaultsTests

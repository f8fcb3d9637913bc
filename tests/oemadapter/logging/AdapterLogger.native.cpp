#include "oemadapter/logging/AdapterLogger.h"

#include "tests/oemadapter/support/LogText.h"

#include <gmock/gmock.h>

namespace AdapterLoggerFaultsTests
{

TEST(AdapterLoggerFaults, AFormatThatCannotBeFilledInIsShownAsItStands)
{
    LogText log;
    const std::u16string path = log.Path();
    velox::oemadapter::AdapterLogger logger;
    logger.SetFile(&path);
    logger.SetLevel(5);
    logger.SetLogToFile(true);
    logger.LogFormat(1, 0, "letter %lc", 0x110000); // beyond the last letter of all
    EXPECT_THAT(log.Read(), testing::HasSubstr("letter %lc"));
}

} // namespace AdapterLoggerFaultsTests

#include "engine/base/EngineErrors.h"

#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace EngineErrorsTests
{

using namespace velox::engine;

TEST(EngineErrors, EveryStatusHasOneNumberNameAndSentence)
{
    std::set<uint32_t> numbers;
    std::set<std::string_view> names;
    for (const StatusText& text : StatusTexts)
    {
        EXPECT_TRUE(numbers.insert(static_cast<uint32_t>(text.status)).second) << text.name;
        EXPECT_TRUE(names.insert(text.name).second) << text.name;
        EXPECT_TRUE(text.sentence.ends_with('.')) << text.name;
    }
}

TEST(EngineErrors, TheDocumentationListsExactlyTheseStatuses)
{
    std::ifstream file(VELOX_DOCS "/engine-statuses.md");
    ASSERT_TRUE(file) << "the documentation is read from the source folder";
    std::set<std::string> documented;
    for (std::string line; std::getline(file, line);)
    {
        if (line.starts_with("| ") && line.find(" | ") != std::string::npos && line[2] >= '0' && line[2] <= '9' &&
            line.ends_with(". |"))
        {
            documented.insert(line);
        }
    }
    std::set<std::string> expected;
    for (const StatusText& text : StatusTexts)
    {
        std::ostringstream row;
        row << "| " << static_cast<uint32_t>(text.status) << " | " << text.name << " | " << text.sentence << " |";
        expected.insert(row.str());
    }
    EXPECT_EQ(documented, expected);
}

TEST(EngineErrors, AStatusIsFoundByItsNumber)
{
    EXPECT_EQ(TextOf(Status::Clipped).name, "Clipped");
    EXPECT_EQ(TextOf(Status::NothingLeft).name, "NothingLeft");
    EXPECT_EQ(TextOf(static_cast<Status>(1)).name, "");
}

} // namespace EngineErrorsTests

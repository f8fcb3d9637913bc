#include "evaluation/Floors.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <regex>

namespace FloorsTests
{

using namespace velox::evaluation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* Clean = "a: predefined, missed, clean, natural";

/// The names of all floors: without figures each is broken.
std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const std::string& line : BrokenFloors({}))
    {
        std::smatch found;
        EXPECT_TRUE(std::regex_match(line, found, std::regex("there is no figure \"(.*)\""))) << line;
        names.push_back(found[1]);
    }
    return names;
}

Report With(const std::string& name, double figure)
{
    Report report;
    for (const std::string& other : Names())
    {
        report.Add(other, other == name ? figure : 0.0, {});
    }
    return report;
}

TEST(Floors, AreOfFiguresThatDoNotDependOnTheMachine)
{
    const std::vector<std::string> names = Names();
    EXPECT_THAT(names, testing::Contains(Clean));
    for (const char* timed : {"real-time", "seconds"})
    {
        EXPECT_TRUE(std::none_of(names.begin(), names.end(),
                                 [&](const std::string& name) { return name.find(timed) != std::string::npos; }));
    }
}

TEST(Floors, HoldForAnEngineThatErrsNowhereAndBreakOneByOne)
{
    EXPECT_THAT(BrokenFloors(With("", 0.0)), IsEmpty());
    for (const std::string& name : Names())
    {
        SCOPED_TRACE(name);
        const std::vector<std::string> broken = BrokenFloors(With(name, 99.5));
        ASSERT_EQ(broken.size(), 1U);
        EXPECT_TRUE(broken[0].starts_with(name + ": 99.5 is worse than "));
    }
}

TEST(Floors, TheFloorItselfIsNotBroken)
{
    EXPECT_THAT(BrokenFloors(With(Clean, 25.1)), IsEmpty());
    EXPECT_THAT(BrokenFloors(With(Clean, 25.2)), ElementsAre(std::string(Clean) + ": 25.2 is worse than 25.1"));
}

} // namespace FloorsTests

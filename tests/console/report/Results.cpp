#include "console/report/Results.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <utility>

using nlohmann::ordered_json;
using velox::console::Results;

TEST(Results, AreAnEmptyArrayAtFirst)
{
    const Results results;
    EXPECT_EQ(results.Count(), 0U);
    EXPECT_EQ(results.Array(), ordered_json::array());
}

TEST(Results, KeepWhatIsAddedInItsOrder)
{
    Results results;
    results.Add({{"file", "b"}, {"bytes", 2}});
    results.Add({{"file", "a"}});
    EXPECT_EQ(results.Count(), 2U);
    EXPECT_EQ(results.Array().dump(), R"([{"file":"b","bytes":2},{"file":"a"}])");
}

TEST(Results, CopiesAreTheirOwn)
{
    Results results;
    results.Add({{"file", "a"}});
    Results copy = results;
    copy.Add({{"file", "b"}});
    EXPECT_EQ(results.Count(), 1U);
    results = copy;
    EXPECT_EQ(results.Count(), 2U);
    const Results moved = std::move(copy);
    EXPECT_EQ(moved.Count(), 2U);
}

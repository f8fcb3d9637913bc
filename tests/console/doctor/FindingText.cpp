#include "console/doctor/FindingText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velox::console;

namespace
{

const Style Plain(false);

const Findings Mixed{
    {Severity::Good, "c.xml", 1, "Well-formed.", {}, {}, {}},
    {Severity::Warning, "c.xml", 4, "Odd.", "It is ignored.", "Remove it.", {}},
    {Severity::Error, "c.xml", 3, "Missing.", {}, "Add it.", FailuresOf({Operation::Verification, Operation::Training}, 1033)}};

} // namespace

TEST(FindingText, WorstComesFirstAndGoodIsLeftOut)
{
    EXPECT_EQ(FindingsText(Mixed, false, Plain),
              "error: Missing. [c.xml, line 3]\n  Verification and training fail.\n  fix: Add it.\n"
              "warning: Odd. [c.xml, line 4]\n  It is ignored.\n  fix: Remove it.\n");
}

TEST(FindingText, EverythingIsShownWhenWanted)
{
    EXPECT_THAT(FindingsText(Mixed, true, Plain), testing::EndsWith("good: Well-formed. [c.xml, line 1]\n"));
}

TEST(FindingText, JsonHoldsEveryFindingInOrder)
{
    const auto json = FindingsJson(Mixed).Array();
    ASSERT_EQ(json.size(), 3U);
    EXPECT_EQ(json[0]["severity"], "good");
    EXPECT_EQ(json[2]["line"], 3);
    EXPECT_EQ(json[2]["failures"][1]["operation"], "training");
    EXPECT_EQ(json[2]["failures"][1]["language"], 1033);
    EXPECT_TRUE(
        FindingsJson({{Severity::Error, "", 0, "x", {}, {}, FailuresOf({Operation::Arming}, {})}}).Array()[0]["line"].is_null());
}

TEST(FindingText, VerdictCountsAndNamesWhatFails)
{
    const Failure capabilities{Operation::Capabilities, {}};
    const Finding nothingWorks{
        Severity::Error,
        "",
        0,
        "x",
        {},
        {},
        FailuresOf({Operation::Capabilities, Operation::Verification, Operation::Training, Operation::Arming, Operation::Parsing},
                   {})};
    const struct
    {
        Findings findings;
        std::string verdict;
    } cases[]{{{Mixed[0]}, "Nothing is wrong: 2 languages, 1 checks."},
              {{Mixed[0], Mixed[1]}, "No error, but 1 warning."},
              {Mixed, "1 error and 1 warning. Fails for 1033 (en-US): verification, training."},
              {{nothingWorks}, "1 error. Nothing works: every operation fails."},
              {{{Severity::Error, "", 0, "x", {}, {}, {capabilities}}}, "1 error. Capabilities fail."}};
    for (const auto& own : cases)
    {
        EXPECT_EQ(FindingsVerdict(own.findings, {1033, 1040}), own.verdict);
    }
}

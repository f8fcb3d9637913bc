#include "console/doctor/ThresholdCheck.h"

#include <gmock/gmock.h>

using namespace velox::console;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

Findings Check(std::string_view text)
{
    Findings findings;
    CheckThreshold({"pre.txt", true, text.size(), {text.begin(), text.end()}}, "The threshold", &findings);
    return findings;
}

} // namespace

TEST(ThresholdCheck, EachTextHasOneFindingWithItsLine)
{
    const struct
    {
        std::string_view text;
        Severity severity;
        int line;
        std::string_view message;
    } cases[]{{"100\n", Severity::Good, 1, "is 100, in the library 25600 (100)."},
              {"\n\n 0", Severity::Good, 3, "is 0, in the library 0 (0)."},
              {"255", Severity::Good, 1, "is 255,"},
              {"", Severity::Error, 1, "counts as 0: the file holds no number: it is empty."},
              {"-0.5", Severity::Error, 1, "is -0.5,"},
              {"255.5", Severity::Error, 1, "is 255.5,"},
              {"1e9", Severity::Error, 1, "The number does not fit into 32 bits."},
              {"100,5", Severity::Error, 1, "is 100,"},
              {"100\nold: 90", Severity::Warning, 2, "is 100,"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        const Findings findings = Check(own.text);
        ASSERT_EQ(findings.size(), 1U);
        EXPECT_EQ(findings[0].severity, own.severity);
        EXPECT_EQ(findings[0].file, "pre.txt");
        EXPECT_EQ(findings[0].line, own.line);
        EXPECT_THAT(findings[0].message, StartsWith("The threshold "));
        EXPECT_THAT(findings[0].message, HasSubstr(own.message));
        EXPECT_TRUE(findings[0].failures.empty()); // the library takes every text
    }
}

TEST(ThresholdCheck, WhatIsNotGoodHasItsEffectAndItsFix)
{
    for (const std::string_view text : {"", "abc", "-1", "256", "100,5", "100 old"})
    {
        SCOPED_TRACE(text);
        const Findings findings = Check(text);
        EXPECT_NE(findings.at(0).effect, "");
        EXPECT_NE(findings.at(0).fix, "");
    }
}

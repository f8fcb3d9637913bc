#include "console/doctor/Finding.h"

#include <gmock/gmock.h>

namespace FindingTests
{

using namespace velox::console;

Findings Mixed()
{
    return {{Tone::Good, "c.xml", 1, "Well-formed."},
            {Tone::Warning, "c.xml", 4, "Odd.", "It is ignored.", "Remove it."},
            {Tone::Bad, "c.xml", 3, "Missing.", {}, "Add it.", FailuresOf({Operation::Verification, Operation::Training}, 1033)}};
}

Report OfOne(std::vector<Failure> failures, std::string effect = {})
{
    return ReportOf({{Tone::Bad, "", 0, "x", std::move(effect), {}, std::move(failures)}}, {1033, 1040});
}

TEST(Finding, WorstComesFirstAndGoodIsADetail)
{
    const Report report = ReportOf(Mixed(), {1033});
    ASSERT_EQ(report.results.size(), 3U);
    EXPECT_EQ(report.results[0].title, "Missing.");
    EXPECT_EQ(report.results[0].status, "error");
    EXPECT_EQ(report.results[0].tone, Tone::Bad);
    EXPECT_EQ(report.results[1].status, "warning");
    EXPECT_EQ(report.results[1].tone, Tone::Warning) << "not the colour of an error";
    EXPECT_EQ(report.results[2].status, "good");
    EXPECT_FALSE(report.results[0].detail || report.results[1].detail);
    EXPECT_TRUE(report.results[2].detail);
    EXPECT_TRUE(report.results[2].remarks.empty());
}

TEST(Finding, PlaceEffectAndFixAreTold)
{
    const Report report = ReportOf(Mixed(), {1033});
    const Entry& error = report.results[0];
    EXPECT_EQ(error.facts[0].text, "c.xml, line 3");
    EXPECT_EQ(error.facts[0].value, Value("c.xml"));
    EXPECT_EQ(error.facts[1].value, Value(3));
    EXPECT_EQ(error.facts[2].value, Value("verification 1033, training 1033"));
    ASSERT_EQ(error.remarks.size(), 1U);
    EXPECT_EQ(error.remarks[0].text, "Fails: verification 1033, training 1033.");
    EXPECT_EQ(error.remarks[0].fix, "Add it.");
    EXPECT_EQ(report.results[1].remarks[0].text, "It is ignored.");
    EXPECT_EQ(OfOne({}).results[0].facts[1].value, Value()) << "no line";
}

TEST(Finding, WhatFailsFollowsTheEffect)
{
    using enum Operation;
    const auto remark = [](std::vector<Failure> failures, std::string effect) {
        return OfOne(std::move(failures), std::move(effect)).results[0].remarks[0].text;
    };
    EXPECT_EQ(remark({}, "Why."), "Why.");
    EXPECT_EQ(remark(FailuresOf({Arming}, 1033), "Why."), "Why. Fails: arming 1033.");
    EXPECT_EQ(remark(FailuresOf({Capabilities, Arming}, {}), ""), "Fails: capabilities, arming.");
    EXPECT_EQ(remark({{Arming, 1033}, {Arming, 1040}}, ""), "Fails: arming 1033, arming 1040.");
    EXPECT_EQ(remark(FailuresOf(EveryOperation, {}), "Nothing works: every operation fails."),
              "Nothing works: every operation fails.");
}

TEST(Finding, VerdictCountsAndNamesWhatFails)
{
    const Findings mixed = Mixed();
    EXPECT_EQ(ReportOf({mixed[0]}, {1033, 1040}).verdict, "Nothing is wrong: 2 languages, 1 check.");
    EXPECT_EQ(ReportOf({mixed[0], mixed[1]}, {1033}).verdict, "No error, but 1 warning.");
    EXPECT_EQ(ReportOf({mixed[0], mixed[1]}, {1033}).exitCode, ExitCode::Success);
    EXPECT_EQ(ReportOf(mixed, {1033, 1040}).verdict, "1 error and 1 warning. Fails for 1033 (en-US): verification, training.");
    EXPECT_EQ(ReportOf(mixed, {1033}).exitCode, ExitCode::Refused);
    EXPECT_EQ(OfOne(FailuresOf(EveryOperation, {})).verdict, "1 error. Nothing works: every operation fails.");
    EXPECT_EQ(OfOne({{Operation::Capabilities, {}}}).verdict, "1 error. Capabilities fail.");
}

} // namespace FindingTests

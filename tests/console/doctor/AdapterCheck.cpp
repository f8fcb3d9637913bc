#include "console/doctor/AdapterCheck.h"

#include <gmock/gmock.h>

#include <functional>

namespace AdapterCheckTests
{

using namespace velox::console;

constexpr const char* Configuration = "/velox/configuration.xml";

AdapterFacts Good()
{
    AdapterFacts facts;
    facts.registered = AdapterClass{"/velox/VeloxOemAdapter.dll", "Both", Configuration, true};
    facts.isModuleThere = true;
    facts.machine = 0x8664;
    facts.isConfigurationThere = true;
    facts.byAdapter = {"", {1}, {1033}, true};
    facts.byLibrary = facts.byAdapter;
    return facts;
}

TEST(AdapterCheck, AWorkingAdapterIsSaidToWork)
{
    const Findings findings = CheckAdapter(Good(), "/dev/null");
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.back().tone, Tone::Good);
    EXPECT_EQ(findings.back().file, "/velox/VeloxOemAdapter.dll");
}

TEST(AdapterCheck, WithoutAClassTheConsoleDoes)
{
    const Findings findings = CheckAdapter({}, Configuration);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].tone, Tone::Note);
    EXPECT_THAT(findings[0].fix, testing::HasSubstr("regsvr32"));
}

TEST(AdapterCheck, EachFaultIsTold)
{
    const struct
    {
        const char* message;
        Tone tone;
        std::function<void(AdapterFacts*)> spoil;
    } cases[] = {{"is not there", Tone::Bad,
                  [](AdapterFacts* facts) {
                      facts->isModuleThere = false;
                  }},
                 {"no module for 64-bit Windows", Tone::Bad,
                  [](AdapterFacts* facts) {
                      facts->machine = 0x014C;
                  }},
                 {"threading model is \"Apartment\"", Tone::Warning,
                  [](AdapterFacts* facts) {
                      facts->registered->threadingModel = "Apartment";
                  }},
                 {"configuration file /velox/configuration.xml is not there", Tone::Bad,
                  [](AdapterFacts* facts) {
                      facts->isConfigurationThere = false;
                  }},
                 {"The setting EventId is of no use", Tone::Warning,
                  [](AdapterFacts* facts) {
                      facts->settingProblems = {"The setting EventId is of no use: its default holds."};
                  }},
                 {"works with another configuration file", Tone::Note,
                  [](AdapterFacts*) {
                  }},
                 {"cannot be created", Tone::Bad,
                  [](AdapterFacts* facts) {
                      facts->byAdapter = {"It cannot be created.", {}, {}, false};
                  }},
                 {"announces something else", Tone::Bad,
                  [](AdapterFacts* facts) {
                      facts->byAdapter.languages = {1040};
                  }},
                 {"announces something else", Tone::Bad, [](AdapterFacts* facts) {
                      facts->byLibrary.failure = "It failed.";
                  }}};
    for (const auto& given : cases)
    {
        SCOPED_TRACE(given.message);
        AdapterFacts facts = Good();
        given.spoil(&facts);
        const Findings findings = CheckAdapter(facts, "/dev/null");
        const auto told = std::ranges::find_if(
            findings, [&](const Finding& finding) { return finding.message.find(given.message) != std::string::npos; });
        ASSERT_NE(told, findings.end());
        EXPECT_EQ(told->tone, given.tone);
    }
}

} // namespace AdapterCheckTests

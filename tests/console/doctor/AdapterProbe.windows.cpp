#include "console/doctor/AdapterCheck.h"

#include "console/hosting/DetectorOptions.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/AdapterRegistration.h"
#include "tests/console/support/ToneProject.h"

#include <windows.h>

#include <gmock/gmock.h>

namespace AdapterProbeOnRealTests
{

using namespace velox::console;

class AdapterProbe : public testing::Test
{
protected:
    ToneProject project;
    AdapterRegistration registration{project.Configuration()};
};

TEST_F(AdapterProbe, FindsNothingWrongWithTheAdapter)
{
    const AdapterFacts facts = ProbeAdapter(DefaultDetectorId);
    EXPECT_TRUE(facts.isModuleThere);
    EXPECT_EQ(facts.machine, 0x8664);
    EXPECT_EQ(facts.byAdapter.failure, "");
    EXPECT_THAT(facts.byAdapter.languages, testing::ElementsAre(ToneProject::English));
    EXPECT_TRUE(facts.byAdapter == facts.byLibrary);
    for (const Finding& finding : CheckAdapter(facts, PathFromUtf8(project.Configuration())))
    {
        EXPECT_EQ(finding.tone, Tone::Good) << finding.message;
    }
}

TEST_F(AdapterProbe, FindsASettingThatIsOfNoUse)
{
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velox\\KeywordDetectorAdapter\\OemAdapter", L"EventId", REG_SZ, L"none",
                    5 * sizeof(wchar_t));
    EXPECT_THAT(ProbeAdapter(DefaultDetectorId).settingProblems,
                testing::ElementsAre("The setting EventId is of no use: its default holds."));
}

TEST_F(AdapterProbe, FindsAModuleThatIsNoneOrNotThere)
{
    project.Write("text.dll", std::string("This is no program."));
    const std::wstring text = PathFromUtf8(project.File("text.dll")).make_preferred().wstring();
    AdapterRegistration::WriteClassText(L"\\InprocServer32", nullptr, text);
    const AdapterFacts facts = ProbeAdapter(DefaultDetectorId);
    EXPECT_TRUE(facts.isModuleThere);
    EXPECT_EQ(facts.machine, 0);
    EXPECT_NE(facts.byAdapter.failure, "");

    AdapterRegistration::WriteClassText(L"\\InprocServer32", nullptr, text + L".none");
    EXPECT_FALSE(ProbeAdapter(DefaultDetectorId).isModuleThere);
}

} // namespace AdapterProbeOnRealTests

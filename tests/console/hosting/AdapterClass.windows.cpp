#include "console/hosting/AdapterClass.h"

#include "console/hosting/DetectorOptions.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/AdapterRegistration.h"

#include <windows.h>

#include <gmock/gmock.h>

namespace AdapterClassOnRealTests
{

using namespace velox::console;

TEST(AdapterClass, NothingIsFoundWhereNothingIsRegistered)
{
    EXPECT_FALSE(FindAdapterClass(DefaultDetectorId));
    EXPECT_FALSE(FindAdapterClass("no GUID"));
}

TEST(AdapterClass, TellsTheModuleItsThreadingModelAndTheConfigurationFileOfItsSettings)
{
    const AdapterRegistration registration("C:\\velox\\configuration.xml");
    const auto found = FindAdapterClass(DefaultDetectorId);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->module.filename(), "VeloxOemAdapter.dll");
    EXPECT_EQ(found->threadingModel, "Both");
    EXPECT_EQ(Utf8(found->configuration), "C:\\velox\\configuration.xml");
    EXPECT_TRUE(found->isConfigurationNamed);
}

TEST(AdapterClass, WithoutTheSettingTheConfigurationFileLiesBesideTheModule)
{
    const AdapterRegistration registration("C:\\velox\\configuration.xml");
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velox\\KeywordDetectorAdapter");
    AdapterRegistration::WriteClassText(L"\\InprocServer32", nullptr, L"C:\\drivers\\VeloxOemAdapter.dll");
    const auto found = FindAdapterClass("3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25");
    ASSERT_TRUE(found) << "braces may be left out";
    EXPECT_EQ(Utf8(found->configuration), "C:\\drivers\\VeloxKwsConfig.xml");
    EXPECT_FALSE(found->isConfigurationNamed);
}

} // namespace AdapterClassOnRealTests

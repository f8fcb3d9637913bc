#include "console/hosting/DetectorOptions.h"

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

#include <cstdlib>

namespace DetectorOptionsOnRealTests
{

velox::console::DetectorOptions Parsed(std::vector<std::string> reversed)
{
    CLI::App app;
    velox::console::DetectorOptions options;
    AddDetectorOptions(&app, &options);
    app.parse(std::move(reversed));
    return options;
}

TEST(DetectorOptions, TheConfigurationIsTheCommandLinesElseTheEnvironmentsElseTheFolders)
{
    EXPECT_EQ(Parsed({}).configuration, "VeloxKwsConfig.xml");
    _wputenv_s(L"VELOX_KWS_CONFIG", L"C:\\z\u00FCrich.xml");
    EXPECT_EQ(Parsed({}).configuration, "C:\\z\xC3\xBCrich.xml");
    EXPECT_EQ(Parsed({"own.xml", "--config"}).configuration, "own.xml");
    _wputenv_s(L"VELOX_KWS_CONFIG", L"");
}

TEST(DetectorOptions, TheDetectorIsTheConsolesUnlessItIsNamed)
{
    EXPECT_EQ(Parsed({}).detectorId, "{3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}");
    EXPECT_EQ(Parsed({"{1}", "--detector-id"}).detectorId, "{1}");
}

} // namespace DetectorOptionsOnRealTests

#include "console/doctor/ConfigurationXml.h"

#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace velox::console;

TEST(ConfigurationXmlOnRealFiles, AFolderIsNoConfiguration)
{
    const TemporaryFolder folder;
    tinyxml2::XMLDocument document;
    Findings findings;
    EXPECT_FALSE(LoadConfigurationXml(PathFromUtf8(folder.Path()), &document, &findings));
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].message, "This is a folder, not a configuration file.");
    EXPECT_EQ(findings[0].failures, EveryOperation());
}

#include "console/text/Utf8Path.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace Utf8PathTests
{

using namespace velox::console;

TEST(Utf8Path, TextsComeBackAsTheyWere)
{
    for (const std::string text : {"", "plain.wav", "a b/c.wav", "Łukasz.wav", "Größe/日本.wav", "\xF0\x9F\x8E\xA4.wav"})
    {
        EXPECT_EQ(Utf8(PathFromUtf8(text)), text);
    }
}

TEST(Utf8Path, TheFileSystemKnowsTheName)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = PathFromUtf8(folder.Path()) / PathFromUtf8("Łukasz.wav");
    std::ofstream(file) << "x";
    ASSERT_TRUE(std::filesystem::exists(file));
    EXPECT_EQ(Utf8(std::filesystem::directory_iterator(PathFromUtf8(folder.Path()))->path().filename()), "Łukasz.wav");
}

} // namespace Utf8PathTests

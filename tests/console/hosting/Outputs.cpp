#include "console/hosting/Outputs.h"

#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace OutputsTests
{

using namespace velox::console;
using testing::HasSubstr;

class Outputs : public testing::Test
{
protected:
    std::filesystem::path File(const std::string& name) const
    {
        return PathFromUtf8(folder.Path() + "/" + name);
    }

    void Write(const std::string& name, const std::string& content) const
    {
        WriteWholeFile(Utf8(File(name)), content);
    }

    /// Empty when nothing is refused.
    std::string Refusal(const std::vector<std::filesystem::path>& inputs, const std::vector<Output>& outputs,
                        const std::filesystem::path& page = {}, const std::filesystem::path& log = {}) const
    {
        velox::console::Progress progress(nullptr);
        const LogOptions logOptions{false, log};
        const Context context{progress, logOptions, page};
        try
        {
            RefuseToReplace(context, inputs, outputs);
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::Usage);
            EXPECT_FALSE(failure.fix.empty());
            return failure.what();
        }
        return {};
    }

    TemporaryFolder folder;
};

TEST_F(Outputs, AnInputIsNotReplacedUnderWhateverName)
{
    Write("take.wav", "RIFF");
    const std::filesystem::path again = File("none") / ".." / "take.wav";
    EXPECT_THAT(Refusal({File("take.wav")}, {{File("take.wav"), OutputKind::UserModel}}),
                HasSubstr("would be replaced by the user's model"));
    EXPECT_THAT(Refusal({File("take.wav")}, {{again, OutputKind::UserModel}}), HasSubstr("would be replaced"));
    EXPECT_THAT(Refusal({File("take.wav")}, {}, File("take.wav")), HasSubstr("would be replaced by the report page"));
    EXPECT_THAT(Refusal({File("take.wav")}, {}, {}, File("take.wav")), HasSubstr("would be replaced by the log"));
}

TEST_F(Outputs, WhatAConfigurationNamesIsAnInputToo)
{
    // Natively the library's backslash is a letter of the name.
    Write("c.xml", "<r directory='" + folder.Path() + "'><l id='1033'><fwBlob>fw.bin</fwBlob></l></r>");
    const std::filesystem::path model = PathFromUtf8(folder.Path() + "\\fw.bin");
    EXPECT_THAT(Refusal({File("c.xml")}, {{model, OutputKind::UserModel}}), HasSubstr("would be replaced"));
    Write("c.xml", "<r");
    EXPECT_EQ(Refusal({File("c.xml")}, {{model, OutputKind::UserModel}}), "");
}

TEST_F(Outputs, TwoOutputsAreNotTheSameFile)
{
    EXPECT_THAT(Refusal({}, {{File("a"), OutputKind::UserModel}}, File("a")), HasSubstr("would be written twice"));
}

TEST_F(Outputs, AFileOfAnotherKindIsNotReplaced)
{
    std::string pattern(60, '\0');
    pattern.replace(20, 4, "\x01\x00\x55\xAA", 4);
    std::string result(60, '\0');
    result[0] = 60;
    const struct
    {
        OutputKind kind;
        std::string own;
    } cases[]{{OutputKind::Page, "<!DOCTYPE html>\n<html/>"},
              {OutputKind::UserModel, "VWOV...."},
              {OutputKind::Pattern, pattern},
              {OutputKind::ResultBlock, result},
              {OutputKind::Log, "error        adapter"},
              {OutputKind::Configuration, "<?xml version=\"1.0\"?><keywords/>"},
              {OutputKind::Bundle, "velox-kws support bundle\n"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.own);
        Write("file", own.own);
        EXPECT_EQ(Refusal({}, {{File("file"), own.kind}}), "");
        Write("file", "RIFF, a recording of somebody");
        EXPECT_THAT(Refusal({}, {{File("file"), own.kind}}), HasSubstr("is there already and is no"));
        Write("file", "");
        EXPECT_EQ(Refusal({}, {{File("file"), own.kind}}), "");
    }
}

TEST_F(Outputs, NewFilesAndNoneAreFine)
{
    EXPECT_EQ(Refusal({File("take.wav")}, {{File("new"), OutputKind::UserModel}, {{}, OutputKind::Pattern}}), "");
}

} // namespace OutputsTests

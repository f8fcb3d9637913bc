#include "console/listening/Pattern.h"

#include "console/text/CommandFailure.h"
#include "firmware/BlockLayout.h"
#include "firmware/ResultBlock.h"
#include "tests/console/support/SoundFile.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <array>

namespace PatternTests
{

using namespace velox;
using namespace velox::console;
using HandMadePattern::Bytes;
using testing::EndsWith;
using testing::HasSubstr;

constexpr uint32_t Hundred = 100 * 256;

std::string AsString(std::span<const uint8_t> bytes)
{
    return {bytes.begin(), bytes.end()};
}

class Pattern : public testing::Test
{
protected:
    std::string Write(const std::string& bytes) const
    {
        std::string path = folder.Path() + "/given.bin";
        WriteWholeFile(path, bytes);
        return path;
    }

    CommandFailure Refusal(const std::string& bytes) const
    {
        try
        {
            ReadPattern(Write(bytes));
        }
        catch (const CommandFailure& failure)
        {
            return failure;
        }
        return {ExitCode::Success, "it is taken"};
    }

    TemporaryFolder folder;
};

TEST_F(Pattern, AFileOfAnotherKindIsNamed)
{
    const CommandFailure user = Refusal(AsString(engine::WritePhraseModel(TinyLanguage::UserPhrase())));
    EXPECT_EQ(user.exitCode, ExitCode::BadInput);
    EXPECT_THAT(user.what(), EndsWith("given.bin is a user model."));
    EXPECT_THAT(user.fix, testing::ContainsRegex("velox-kws arm LANG --model .*given.bin --out pattern.bin"));
    EXPECT_THAT(Refusal("VWOV of another engine").what(), EndsWith("is a user model."));
    EXPECT_THAT(Refusal(AsString(engine::WritePhraseModel(TinyLanguage::Phrase()))).what(), EndsWith("is everybody's model."));

    const firmware::ResultBlock result(HandMadePattern::Detector, {1, 2, 3});
    EXPECT_THAT(Refusal(AsString(result.Bytes())).what(), HasSubstr("is a result block"));
    EXPECT_THAT(Refusal(SoundFile::Wav(std::vector<float>(1600, 0.1F))).what(), EndsWith("is a recording."));
    EXPECT_THAT(Refusal("").what(), HasSubstr("is no arming block"));
}

TEST_F(Pattern, AnArmingBlockIsTakenAlsoWhenItIsDamaged)
{
    Bytes block = HandMadePattern::Make(TinyLanguage::Phrase(), Hundred);
    EXPECT_EQ(ReadPattern(Write(AsString(block))), block);
    block[firmware::PatternLayout::SignatureOffset] ^= 1U;
    EXPECT_EQ(ReadPattern(Write(AsString(block))), block) << "the DSP tells what is wrong with it";
}

TEST_F(Pattern, ItsFieldsAreRead)
{
    const Bytes block = HandMadePattern::Make(TinyLanguage::Phrase(), Hundred + 64);
    EXPECT_EQ(ThresholdOf(block), 100.25);
    EXPECT_EQ(DetectorOf(block), HandMadePattern::Detector);
}

TEST_F(Pattern, TheSimulatorsRefusalIsAWarning)
{
    Bytes block = HandMadePattern::Make(TinyLanguage::Phrase(), Hundred);
    EXPECT_FALSE(SimulatorWarning(block).has_value());
    block.back() ^= 1U;
    const auto warning = SimulatorWarning(block);
    ASSERT_TRUE(warning.has_value());
    EXPECT_EQ(warning->tone, Tone::Warning);
    EXPECT_EQ(warning->code, "ModelChecksum");
    EXPECT_EQ(warning->text,
              "the simulated DSP refuses this block at 0x38, ModelData.checksum: The model's checksum is wrong: its "
              "bytes were changed.");
}

TEST_F(Pattern, OfAnotherEnginesModelsNothingIsSaid)
{
    Bytes model = engine::WritePhraseModel(TinyLanguage::Phrase());
    model[4] ^= 2U; // its version
    EXPECT_FALSE(SimulatorWarning(HandMadePattern::Make(model, Hundred)).has_value());
    for (const std::string& other : {std::string(), std::string("firmware 1033"), std::string("VWOV and whatever follows")})
    {
        EXPECT_FALSE(SimulatorWarning(HandMadePattern::Make(Bytes(other.begin(), other.end()), Hundred)).has_value());
    }
}

/// What a library builds for two languages; for the others it fails.
Bytes Build(uint16_t language)
{
    if (language != 1033 && language != 1040)
    {
        throw CommandFailure(ExitCode::BadConfiguration, "The language is not configured.");
    }
    return HandMadePattern::Make(TinyLanguage::Phrase(), language == 1033 ? 70 * 256 : 80 * 256);
}

constexpr std::array<uint16_t, 3> Languages{1031, 1033, 1040};

TEST_F(Pattern, ItTellsItsLanguage)
{
    for (const uint16_t language : {uint16_t{1033}, uint16_t{1040}})
    {
        const PatternOrigin origin = FindPatternOrigin(Languages, Build, Build(language));
        EXPECT_EQ(origin.language, language);
        EXPECT_EQ(origin.pattern, Build(language));
        EXPECT_EQ(origin.difference, "");
        EXPECT_EQ(origin.equals, "");
    }
}

TEST_F(Pattern, ItIsSaidThatSeveralLanguagesHaveTheSame)
{
    std::vector<uint16_t> built;
    const auto alike = [&built](uint16_t language) {
        built.push_back(language);
        return Build(language == 1033 || language == 1040 ? 1033 : language);
    };
    const PatternOrigin origin = FindPatternOrigin(Languages, alike, Build(1033));
    EXPECT_EQ(origin.language, 1033);
    EXPECT_EQ(origin.equals, "1033 (en-US), 1040 (it-IT)");
    EXPECT_EQ(built.back(), 1033) << "the library parses for the language that it built last";
}

TEST_F(Pattern, ASingleLanguageIsTakenWithTheDifferenceTold)
{
    Bytes pattern = Build(1033);
    const auto difference = [&](uint16_t language) {
        return FindPatternOrigin(std::array{language}, Build, pattern).difference;
    };
    EXPECT_THAT(difference(1040), HasSubstr("with a threshold of 80.0 instead of 70.0;"));
    pattern.back() ^= 1U;
    EXPECT_THAT(difference(1033), HasSubstr("now, with another model (a user's needs --model);"));
    EXPECT_THROW(difference(1031), CommandFailure);
}

TEST_F(Pattern, OfSeveralLanguagesOneMustFit)
{
    Bytes pattern = Build(1033);
    pattern.back() ^= 1U;
    try
    {
        FindPatternOrigin(Languages, Build, pattern);
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::Usage);
        EXPECT_THAT(failure.what(), HasSubstr("none of the 3 configured languages"));
    }
}

} // namespace PatternTests

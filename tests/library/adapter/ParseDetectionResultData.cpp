#include "tests/library/adapter/Lines.h"
#include "tests/support/ArmingTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace ParseDetectionResultDataTests
{

using namespace ParsingLines;
using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

/// A block of 60 bytes: keyword 1, score 258, start 0x1716151413121110, end 0x2726252423222120. What is not read is EE.
const Bytes ValidBlock{0x3C, 0x00, 0x00, 0x00,                         // size
                       0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, // detector
                       0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF, //
                       0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, //
                       0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, // start
                       0x20, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, // end
                       0xEE, 0xEE, 0xEE, 0xEE,                         //
                       0x01, 0x00,                                     // keyword id
                       0xEE, 0xEE,                                     //
                       0x01, 0x02,                                     // score, high byte first
                       0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE};

constexpr uint64_t ValidStart = 0x1716151413121110;
constexpr uint64_t ValidEnd = 0x2726252423222120;

/// What one call gave; outputs that were left alone hold what they held.
struct Outcome
{
    HRESULT result = S_OK;
    uint32_t keywordId = 4711;
    uint16_t languageId = 4712;
    BOOL isUserMatch = 4713;
    uint64_t keywordStart = 4714;
    uint64_t keywordEnd = 4715;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome)
{
    return out << std::hex << "result " << outcome.result << std::dec << ", keyword " << outcome.keywordId << ", language "
               << outcome.languageId << ", user match " << outcome.isUserMatch << ", start " << outcome.keywordStart << ", end "
               << outcome.keywordEnd;
}

Outcome Failure(HRESULT result)
{
    Outcome outcome;
    outcome.result = result;
    return outcome;
}

class ParseDetectionResultData : public ArmingTest
{
protected:
    /// Bytes of `block` up to its end, on the heap, so that a read beyond them does not pass unseen.
    Outcome Parse(const Bytes& block)
    {
        const std::unique_ptr<uint8_t[]> exact(new uint8_t[block.size()]);
        std::copy(block.begin(), block.end(), exact.get());
        return ParseAt(exact.get());
    }

    Outcome ParseAt(const void* block)
    {
        ScriptedStream stream("VWOV user");
        Outcome outcome;
        outcome.result = adapter.ParseDetectionResultData(&stream, static_cast<const DetectionResult*>(block), &outcome.keywordId,
                                                          &outcome.languageId, &outcome.isUserMatch, &outcome.keywordStart,
                                                          &outcome.keywordEnd);
        EXPECT_THAT(stream.calls, IsEmpty());
        return outcome;
    }

    void ArmUserModel(uint16_t languageId)
    {
        Armed("VWOV user", languageId);
        logger.Take();
    }

    void ArmPredefinedModel(uint16_t languageId)
    {
        Armed("", languageId);
        logger.Take();
    }
};

/// `count` bytes from `offset`, the lowest first.
uint64_t LittleEndian(const Bytes& bytes, std::size_t offset, std::size_t count)
{
    uint64_t value = 0;
    for (std::size_t i = count; i > 0; --i)
    {
        value = value << 8 | bytes[offset + i - 1];
    }
    return value;
}

/// What a block that is armed for the predefined model of 1033 gives, and the lines of it.
Outcome Predict(const Bytes& block, Lines* lines)
{
    *lines = Begun(1033);
    const auto size = static_cast<uint32_t>(LittleEndian(block, 0, 4));
    if (size < 60 || !std::equal(block.begin() + 4, block.begin() + 20, ValidBlock.begin() + 4))
    {
        *lines = *lines + InvalidSize(size);
        return Failure(E_INVALIDARG);
    }
    const auto keywordId = static_cast<unsigned int>(LittleEndian(block, 48, 2));
    const Outcome outcome{S_OK, keywordId == 1 ? 1U : 0U, 1033, 0, LittleEndian(block, 28, 8), LittleEndian(block, 36, 8)};
    *lines = *lines + Scores(keywordId, block[52] * 256U + block[53], 192) +
             (keywordId != 1 ? Lines(InvalidKeyword(keywordId)) : Lines()) +
             Matched(false, outcome.keywordStart, outcome.keywordEnd);
    return outcome;
}

TEST_F(ParseDetectionResultData, GivesTheBlocksFieldsAfterArmingThePredefinedModel)
{
    ArmPredefinedModel(1033);
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1033, FALSE, ValidStart, ValidEnd}));
    EXPECT_EQ(logger.lines, Begun(1033) + Scores(1, 258, 192) + Matched(false, 1663540288323457296, 2820983053732684064));
}

TEST_F(ParseDetectionResultData, ReportsAUserMatchAfterArmingTheUserModel)
{
    ArmUserModel(1040);
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1040, TRUE, ValidStart, ValidEnd}));
    // The negative threshold is shown unsigned.
    EXPECT_EQ(logger.lines, Begun(1040) + Scores(1, 258, 4294966963) + Matched(true, ValidStart, ValidEnd));
}

TEST_F(ParseDetectionResultData, EveryBitOfTheBlockDoesWhatItsFieldSays)
{
    ArmPredefinedModel(1033);
    for (std::size_t bit = 0; bit < ValidBlock.size() * 8; ++bit)
    {
        SCOPED_TRACE(bit);
        Bytes block = ValidBlock;
        block[bit / 8] = static_cast<uint8_t>(block[bit / 8] ^ (1 << bit % 8));
        Lines lines;
        const Outcome predicted = Predict(block, &lines);
        EXPECT_EQ(Parse(block), predicted);
        EXPECT_EQ(logger.Take(), lines);
    }
}

TEST_F(ParseDetectionResultData, ReadsNothingBeyondTheSizeThatTheBlockClaims)
{
    ArmPredefinedModel(1033);
    for (uint8_t size = 0; size <= 64; ++size)
    {
        SCOPED_TRACE(static_cast<int>(size));
        Bytes block = ValidBlock;
        block[0] = size;
        block.resize(std::max<std::size_t>(size, 4), 0xEE);
        const bool accepted = size >= 60;
        EXPECT_EQ(Parse(block), accepted ? (Outcome{S_OK, 1, 1033, FALSE, ValidStart, ValidEnd}) : Failure(E_INVALIDARG));
        EXPECT_EQ(logger.Take().at(2), accepted ? Scores(1, 258, 192) : InvalidSize(size));
    }
}

TEST_F(ParseDetectionResultData, SizeIsComparedUnsigned)
{
    ArmPredefinedModel(1033);
    Bytes block = ValidBlock;
    std::fill_n(block.begin(), 4, uint8_t{0xFF});
    EXPECT_EQ(Parse(block).result, S_OK);
}

TEST_F(ParseDetectionResultData, ForeignDetectorIsReportedWithTheSizeLineKept)
{
    ArmPredefinedModel(1033);
    for (std::size_t offset = 4; offset < 20; ++offset)
    {
        SCOPED_TRACE(offset);
        Bytes block = ValidBlock;
        block[offset] = 0;
        EXPECT_EQ(Parse(block), Failure(E_INVALIDARG));
        EXPECT_EQ(logger.Take(), Begun(1033) + InvalidSize(60));
    }
}

TEST_F(ParseDetectionResultData, OtherKeywordIdIsASuccessWithKeywordZeroAndAWarning)
{
    ArmUserModel(1033);
    for (const unsigned int keywordId : {0U, 2U, 256U, 257U, 65535U})
    {
        SCOPED_TRACE(keywordId);
        Bytes block = ValidBlock;
        block[48] = static_cast<uint8_t>(keywordId & 0xFF);
        block[49] = static_cast<uint8_t>(keywordId >> 8);
        EXPECT_EQ(Parse(block), (Outcome{S_OK, 0, 1033, TRUE, ValidStart, ValidEnd}));
        EXPECT_EQ(logger.Take(),
                  Begun(1033) + Scores(keywordId, 258, 128) + InvalidKeyword(keywordId) + Matched(true, ValidStart, ValidEnd));
    }
}

TEST_F(ParseDetectionResultData, ScoreIsBigEndianAndNotComparedWithTheThreshold)
{
    struct Case
    {
        uint8_t high, low;
        unsigned int score;
    };
    ArmPredefinedModel(1033);
    for (const Case& one : {Case{0, 0, 0}, Case{0, 1, 1}, Case{1, 2, 258}, Case{2, 1, 513}, Case{0xFF, 0xFF, 65535}})
    {
        SCOPED_TRACE(one.score);
        Bytes block = ValidBlock;
        block[52] = one.high;
        block[53] = one.low;
        EXPECT_EQ(Parse(block), (Outcome{S_OK, 1, 1033, FALSE, ValidStart, ValidEnd}));
        EXPECT_EQ(logger.Take().at(2), Scores(1, one.score, 192));
    }
}

TEST_F(ParseDetectionResultData, PositionsAreHandedOnWithoutACheck)
{
    struct Case
    {
        uint64_t start, end;
    };
    constexpr uint64_t Most = std::numeric_limits<uint64_t>::max();
    ArmPredefinedModel(1033);
    for (const Case& one : {Case{0, 0}, Case{Most, 0}, Case{Most, Most}, Case{2, 1}, Case{1ULL << 63, 1}})
    {
        SCOPED_TRACE(one.start);
        Bytes block = ValidBlock;
        std::memcpy(&block[28], &one.start, sizeof(one.start));
        std::memcpy(&block[36], &one.end, sizeof(one.end));
        EXPECT_EQ(Parse(block), (Outcome{S_OK, 1, 1033, FALSE, one.start, one.end}));
        EXPECT_EQ(logger.Take(), Begun(1033) + Scores(1, 258, 192) + Matched(false, one.start, one.end));
    }
}

TEST_F(ParseDetectionResultData, BlockMayLieAtAnyAddress)
{
    ArmPredefinedModel(1033);
    for (std::size_t shift = 0; shift < 8; ++shift)
    {
        SCOPED_TRACE(shift);
        Bytes memory(shift, 0xEE);
        memory.insert(memory.end(), ValidBlock.begin(), ValidBlock.end());
        EXPECT_EQ(ParseAt(memory.data() + shift), (Outcome{S_OK, 1, 1033, FALSE, ValidStart, ValidEnd}));
    }
}

TEST_F(ParseDetectionResultData, EveryMissingOutputIsRefusedBeforeTheInputsAreLookedAt)
{
    ScriptedStream stream;
    for (unsigned int missing = 1; missing < 32; ++missing)
    {
        for (const bool inputs : {true, false})
        {
            SCOPED_TRACE(testing::Message() << "missing outputs " << missing << ", inputs " << inputs);
            const auto output = [missing](unsigned int bit, auto* address) {
                return (missing & 1U << bit) != 0 ? nullptr : address;
            };
            Outcome outcome;
            outcome.result = adapter.ParseDetectionResultData(
                inputs ? &stream : nullptr, inputs ? reinterpret_cast<const DetectionResult*>(ValidBlock.data()) : nullptr,
                output(0, &outcome.keywordId), output(1, &outcome.languageId), output(2, &outcome.isUserMatch),
                output(3, &outcome.keywordStart), output(4, &outcome.keywordEnd));
            EXPECT_EQ(outcome, Failure(E_POINTER));
            EXPECT_EQ(logger.Take(), Entry + OutputMissing);
        }
    }
}

TEST_F(ParseDetectionResultData, MissingInputIsRefusedAfterTheLanguageLine)
{
    ArmUserModel(1033);
    ScriptedStream stream;
    const auto* block = reinterpret_cast<const DetectionResult*>(ValidBlock.data());
    struct Case
    {
        IStream* stream;
        const DetectionResult* block;
    };
    for (const Case& one : {Case{nullptr, block}, Case{&stream, nullptr}, Case{nullptr, nullptr}})
    {
        SCOPED_TRACE(testing::Message() << "stream " << one.stream << ", block " << one.block);
        Outcome outcome;
        outcome.result = adapter.ParseDetectionResultData(one.stream, one.block, &outcome.keywordId, &outcome.languageId,
                                                          &outcome.isUserMatch, &outcome.keywordStart, &outcome.keywordEnd);
        EXPECT_EQ(outcome, Failure(E_POINTER));
        EXPECT_EQ(logger.Take(), Begun(1033) + InputMissing);
    }
}

TEST_F(ParseDetectionResultData, FailedParametersLeaveTheOutputs)
{
    ArmPredefinedModel(1033);
    configuration.RemoveFile("kpd_pre_1033.txt");
    EXPECT_EQ(Parse(ValidBlock), Failure(E_FAIL));
    EXPECT_EQ(logger.lines,
              Begun(1033) + ConfigurationLines::ThresholdNotOpened + ConfigurationLines::ThresholdNotRead + ParametersFailed);
}

TEST_F(ParseDetectionResultData, AdapterThatWasNeverArmedReportsLanguageZeroAndNoUserMatch)
{
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 0, FALSE, ValidStart, ValidEnd}));
    EXPECT_EQ(logger.lines, Begun(0) + Scores(1, 258, 0) + Matched(false, ValidStart, ValidEnd));
}

TEST_F(ParseDetectionResultData, LanguageThatLeftTheConfigurationIsReportedWithAThresholdOfZero)
{
    ArmUserModel(1033);
    configuration.WriteLanguages(TestConfiguration::LanguageElement("1040", 20));
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1033, TRUE, ValidStart, ValidEnd}));
    EXPECT_EQ(logger.lines.at(2), Scores(1, 258, 0));
}

TEST_F(ParseDetectionResultData, ReportsTheLastArmingAsOftenAsItIsAsked)
{
    ArmUserModel(1033);
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1033, TRUE, ValidStart, ValidEnd}));
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1033, TRUE, ValidStart, ValidEnd}));
    ArmPredefinedModel(1040);
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1040, FALSE, ValidStart, ValidEnd}));
    ArmUserModel(1033);
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1033, TRUE, ValidStart, ValidEnd}));
}

TEST_F(ParseDetectionResultData, LargestLanguageIdIsShownUnsigned)
{
    configuration.ReplaceInXml("id=\"1033\"", "id=\"65535\"");
    ArmPredefinedModel(65535);
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 65535, FALSE, ValidStart, ValidEnd}));
    EXPECT_EQ(logger.lines.at(1), Begun(65535)[1]);
}

TEST_F(ParseDetectionResultData, FailedArmingMayChangeTheUserMatchButNotTheLanguageKept)
{
    ArmPredefinedModel(1033);
    configuration.RemoveFile("kpd_user_1040.txt");
    ScriptedStream stream("VWOV user");
    ASSERT_EQ(Arm(&stream, 1040).result, E_FAIL);
    logger.Take();
    EXPECT_EQ(Parse(ValidBlock), (Outcome{S_OK, 1, 1033, TRUE, ValidStart, ValidEnd}));
    EXPECT_EQ(logger.lines, Begun(1033) + Scores(1, 258, 128) + Matched(true, ValidStart, ValidEnd));
}

TEST_F(ParseDetectionResultData, AnswersFromTheArmingRecordAndWritesNothingToIt)
{
    ArmUserModel(1040);
    EXPECT_EQ(Parse(ValidBlock).result, S_OK);
    Bytes foreign = ValidBlock;
    foreign[4] = 0;
    EXPECT_EQ(Parse(foreign).result, E_INVALIDARG);
    EXPECT_TRUE(PrivateAccess::UserModelArmed(adapter));
    EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), 1040);
}

} // namespace ParseDetectionResultDataTests

#include "firmware/ResultBlock.h"

#include "tests/firmware/support/HandMadePattern.h"

#include <gmock/gmock.h>

namespace ResultBlockTests
{

using namespace velox::firmware;
using testing::ElementsAreArray;
using Block = velox::firmware::ResultBlock;

constexpr Report Example{0x0102030405060708, 0x1112131415161718, 0x0102};

std::vector<uint8_t> Bytes(const Block& block)
{
    return {block.Bytes().begin(), block.Bytes().end()};
}

TEST(ResultBlock, LiesAsTheLibraryReadsIt)
{
    const std::vector<uint8_t> expected{60,   0,    0,    0,                            // Size
                                        0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, // PatternType
                                        0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, //
                                        0,    0,    0,    0,    0,    0,    0,    0,    // not read
                                        8,    7,    6,    5,    4,    3,    2,    1,    // KeywordStart
                                        0x18, 0x17, 0x16, 0x15, 0x14, 0x13, 0x12, 0x11, // KeywordEnd
                                        0,    0,    0,    0,                            // not read
                                        1,    0,    0,    0,                            // KeywordIdFw, and not read
                                        1,    2,    0,    0,    0,    0,    0,    0};   // KpdScore, big-endian, and not read
    EXPECT_EQ(Bytes(Block(HandMadePattern::Detector, Example)), expected);
}

TEST(ResultBlock, FaultsChangeWhatTheyAreNamedAfterOnly)
{
    const std::vector<uint8_t> good = Bytes(Block(HandMadePattern::Detector, Example));

    std::vector<uint8_t> foreign = good;
    foreign[4] = 0xCC;
    EXPECT_EQ(Bytes(Block(HandMadePattern::Detector, Example, Fault::ForeignGuid)), foreign);

    std::vector<uint8_t> unknown = good;
    unknown[48] = 2;
    EXPECT_EQ(Bytes(Block(HandMadePattern::Detector, Example, Fault::UnknownKeyword)), unknown);

    std::vector<uint8_t> truncated(good.begin(), good.begin() + 52);
    truncated[0] = 52;
    EXPECT_EQ(Bytes(Block(HandMadePattern::Detector, Example, Fault::TruncatedBlock)), truncated);

    EXPECT_EQ(Bytes(Block(HandMadePattern::Detector, Example, Fault::StalePattern)), good);
}

} // namespace ResultBlockTests

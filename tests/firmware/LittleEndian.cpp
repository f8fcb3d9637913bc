#include "firmware/LittleEndian.h"

#include <gmock/gmock.h>

#include <array>

namespace LittleEndianTests
{

using namespace velox::firmware;

constexpr std::array<uint8_t, 10> Bytes{0x00, 0xF1, 0x02, 0x03, 0x84, 0x05, 0x06, 0x07, 0x98, 0x09};

TEST(LittleEndian, NumbersOfEveryLengthAreReadFromTheirOffset)
{
    EXPECT_EQ(ReadUnsigned<uint8_t>(Bytes, 1), 0xF1);
    EXPECT_EQ(ReadUnsigned<uint16_t>(Bytes, 0), 0xF100);
    EXPECT_EQ(ReadUnsigned<uint32_t>(Bytes, 1), 0x8403'02F1U);
    EXPECT_EQ(ReadUnsigned<uint64_t>(Bytes, 1), 0x9807'0605'8403'02F1U);
    EXPECT_EQ(ReadUnsigned<uint64_t>(Bytes, 2), 0x0998'0706'0584'0302U) << "up to the last byte";
}

TEST(LittleEndian, WhatIsWrittenIsRead)
{
    std::array<uint8_t, 12> bytes{};
    WriteUnsigned(uint16_t{0x8001}, 1, bytes);
    WriteUnsigned(uint64_t{0xFEDC'BA98'7654'3210}, 3, bytes);
    EXPECT_EQ(ReadUnsigned<uint16_t>(bytes, 1), 0x8001);
    EXPECT_EQ(ReadUnsigned<uint64_t>(bytes, 3), 0xFEDC'BA98'7654'3210U);
    EXPECT_EQ(bytes.front(), 0) << "nothing before";
    EXPECT_EQ(bytes.back(), 0) << "nothing behind";
}

} // namespace LittleEndianTests

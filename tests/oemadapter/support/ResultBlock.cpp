#include "tests/oemadapter/support/ResultBlock.h"

#include "oemadapter/settings/DetectorId.h"

#include <DetectionResult.h>

#include <cstring>

std::vector<uint8_t> ResultBlock(uint16_t keyword, uint16_t score, uint32_t size, uint8_t guidByte)
{
    DetectionResult block{};
    block.Size = size;
    block.PatternType = velox::oemadapter::DetectorId;
    block.KeywordStart = 1250000;
    block.KeywordEnd = 1260800;
    block.KeywordIdFw = keyword;
    block.KpdScore[0] = static_cast<uint8_t>(score >> 8U);
    block.KpdScore[1] = static_cast<uint8_t>(score & 0xFFU);
    std::vector<uint8_t> bytes(sizeof(block));
    std::memcpy(bytes.data(), &block, sizeof(block));
    bytes[4] = guidByte; // the first of the GUID's
    return bytes;
}

#include "Arming.h"

#include "HexDump.h"

#include <cstring>

namespace
{

const std::vector<Field> Head{{4, "Size"},  {16, "PatternType"}, {4, "Signature"}, {4, "KpdThreshold"},
                              {4, "Limit"}, {4, "Reserved1"},    {4, "Reserved2"}, {4, "ModelSize"}};
constexpr std::size_t ThresholdOffset = 24;
constexpr std::size_t HeadSize = 44;

uint32_t NumberAt(const uint8_t* bytes)
{
    uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof(number));
    return number;
}

} // namespace

Arming Arm(Adapter& adapter, IStream* userModel, uint16_t language)
{
    const KeywordSelector selector{1, language};
    uint8_t* pattern = nullptr;
    const HRESULT result = adapter.BuildArmingPatternData(userModel, &selector, 1, &pattern);
    if (result != S_OK)
    {
        return {result, {}};
    }
    // The block's first field is its length; the block is the caller's to free.
    Arming armed{result, Bytes(pattern, pattern + NumberAt(pattern))};
    CoTaskMemFree(pattern);
    return armed;
}

uint32_t ArmedThreshold(const Bytes& block)
{
    return NumberAt(block.data() + ThresholdOffset);
}

Bytes ArmedModel(const Bytes& block)
{
    return Bytes(block.begin() + HeadSize, block.end());
}

void PrintArmingBlock(const Bytes& block)
{
    PrintBlock(block, Head, "model");
}

#include "Detection.h"

#include "HexDump.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace
{

const std::vector<Field> Fields{{4, "Size"},       {16, "PatternType"}, {8, "(not read)"},  {8, "KeywordStart"},
                                {8, "KeywordEnd"}, {4, "(not read)"},   {2, "KeywordIdFw"}, {2, "(not read)"},
                                {2, "KpdScore"},   {6, "(not read)"}};

} // namespace

Detection Parse(Adapter& adapter, IStream* userModel, const Bytes& block)
{
    uint32_t size = 0;
    std::memcpy(&size, block.data(), std::min(sizeof(size), block.size()));
    if (block.size() < sizeof(size) || block.size() < size)
    {
        throw std::runtime_error("The result block is shorter than it says.");
    }
    Detection detection{};
    detection.result = adapter.ParseDetectionResultData(userModel, reinterpret_cast<const DetectionResult*>(block.data()),
                                                        &detection.keywordId, &detection.languageId, &detection.isUserMatch,
                                                        &detection.keywordStart, &detection.keywordEnd);
    return detection;
}

void PrintResultBlock(const Bytes& block)
{
    PrintBlock(block, Fields, "");
}

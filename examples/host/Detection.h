#pragma once

#include "Arming.h"

/// What the adapter makes of a result block. The values are valid only when the result is S_OK.
struct Detection
{
    HRESULT result;
    uint32_t keywordId;
    uint16_t languageId;
    BOOL isUserMatch;
    uint64_t keywordStart;
    uint64_t keywordEnd;
};

/// Hands a result block, as the firmware wrote it, to the adapter. Throws when the block is shorter than it says: the adapter
/// relies on the length that stands in the block.
Detection Parse(Adapter& adapter, IStream* userModel, const Bytes& block);

void PrintResultBlock(const Bytes& block);

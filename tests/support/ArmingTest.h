#pragma once

#include "tests/support/AdapterTest.h"

#include <cstring>
#include <vector>

/// What BuildArmingPatternData gave back.
struct ArmingOutcome
{
    HRESULT result;
    std::vector<uint8_t> pattern; ///< the block's bytes; none when the output was left alone
};

/// An adapter to arm.
class ArmingTest : public AdapterTest
{
protected:
    ArmingOutcome Arm(IStream* stream, uint16_t languageId)
    {
        return Arm(stream, KeywordSelector{1, languageId});
    }

    ArmingOutcome Arm(IStream* stream, KeywordSelector selector)
    {
        // On the heap, so that a look at a second selector does not pass unseen.
        const auto selectors = std::make_unique<KeywordSelector>(selector);
        uint8_t leftAlone = 0;
        uint8_t* block = &leftAlone;
        const HRESULT result = adapter.BuildArmingPatternData(stream, selectors.get(), 1, &block);
        if (block == &leftAlone)
        {
            return {result, {}};
        }
        uint32_t size = 0;
        std::memcpy(&size, block, sizeof(size));
        const ArmingOutcome outcome{result, {block, block + size}};
        CoTaskMemFree(block);
        return outcome;
    }
};

#pragma once

#include "tests/support/AdapterTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedStream.h"

#include <cstring>
#include <vector>

/// What BuildArmingPatternData gave back.
struct ArmingOutcome
{
    HRESULT result;
    std::vector<uint8_t> pattern; ///< the block's bytes; none when the output was left alone

    /// The model that follows the pattern's head.
    std::string Model() const
    {
        return {pattern.begin() + 44, pattern.end()};
    }
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

    /// Arms this model, as a user's, or the predefined one; it must succeed.
    std::string Armed(std::string_view userModel, uint16_t languageId)
    {
        ScriptedStream stream(userModel);
        const ArmingOutcome outcome = Arm(&stream, languageId);
        EXPECT_EQ(outcome.result, S_OK);
        return outcome.Model();
    }

    /// An arming that fails and hands no pattern over.
    void ExpectNotArmed(HRESULT result, IStream* stream, KeywordSelector selector)
    {
        const ArmingOutcome outcome = Arm(stream, selector);
        EXPECT_EQ(outcome.result, result);
        EXPECT_TRUE(outcome.pattern.empty());
    }

    /// What the adapter remembers of its armings.
    void ExpectRecord(bool userModel, uint16_t languageId)
    {
        EXPECT_EQ(PrivateAccess::UserModelArmed(adapter), userModel);
        EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), languageId);
    }
};

#include "firmware/DspPattern.h"

#include "tests/engine/support/BlobDamage.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <gmock/gmock.h>

#include <functional>

namespace DspPatternTests
{

using namespace velox::firmware;
using HandMadePattern::Bytes;
using HandMadePattern::Make;
using HandMadePattern::Put;

constexpr uint32_t Hundred = 100 * 256;

std::optional<PatternRefusal> Read(const Bytes& block, velox::firmware::DspPattern* pattern)
{
    // A block of exactly its size: the address sanitizer sees every byte read beyond.
    const Bytes exact(block.begin(), block.end());
    return ReadPattern(exact, HandMadePattern::Detector, pattern);
}

std::optional<PatternRefusal> Read(const Bytes& block)
{
    velox::firmware::DspPattern pattern;
    return Read(block, &pattern);
}

const Bytes& Model()
{
    static const Bytes model = velox::engine::WritePhraseModel(TinyLanguage::Phrase());
    return model;
}

TEST(DspPattern, BothKindsOfModelAreAccepted)
{
    velox::firmware::DspPattern pattern;
    EXPECT_EQ(Read(Make(TinyLanguage::Phrase(), Hundred), &pattern), std::nullopt);
    EXPECT_FALSE(pattern.model.speaker.has_value());
    EXPECT_EQ(pattern.threshold, 25600U);
    EXPECT_EQ(Read(Make(TinyLanguage::UserPhrase(), 1), &pattern), std::nullopt);
    EXPECT_TRUE(pattern.model.speaker.has_value());
    EXPECT_EQ(pattern.threshold, 1U);
}

TEST(DspPattern, EveryFieldIsChecked)
{
    struct Case
    {
        PatternRefusal refusal;
        std::function<void(Bytes*)> spoil;
    };
    const auto number = [](std::size_t offset, uint32_t value) {
        return [=](Bytes* block) {
            Put(value, offset, block);
        };
    };
    const auto flip = [](std::size_t offset) {
        return [=](Bytes* block) {
            (*block)[offset] ^= 1U;
        };
    };
    const auto modelOf = [](std::size_t size) {
        return [=](Bytes* block) {
            *block = Make(Bytes(Model().begin(), Model().begin() + static_cast<std::ptrdiff_t>(size)), 0);
        };
    };
    const auto model = [](const std::function<void(Bytes*)>& change) {
        return [=](Bytes* block) {
            Bytes changed = Model();
            change(&changed);
            *block = Make(changed, 0);
        };
    };
    const std::vector<Case> cases{
        {PatternRefusal::TooShort,
         [](Bytes* block) {
             block->clear();
         }},
        {PatternRefusal::TooShort,
         [](Bytes* block) {
             block->resize(3);
         }},
        {PatternRefusal::TooShort,
         [](Bytes* block) {
             block->resize(43);
         }},
        {PatternRefusal::TooShort, number(0, 43)},
        {PatternRefusal::TooShort, number(0, 0)},
        {PatternRefusal::Cut,
         [](Bytes* block) {
             block->pop_back();
         }},
        {PatternRefusal::Cut,
         [](Bytes* block) {
             block->resize(44);
         }},
        {PatternRefusal::Cut, number(0, 0xFFFFFFFF)},
        {PatternRefusal::TrailingBytes,
         [](Bytes* block) {
             block->push_back(0);
         }},
        {PatternRefusal::ForeignDetector, flip(4)},
        {PatternRefusal::ForeignDetector, flip(12)},
        {PatternRefusal::ForeignDetector, flip(19)},
        {PatternRefusal::Signature, flip(20)},
        {PatternRefusal::Signature, number(20, 0x0100'55AA)},
        {PatternRefusal::ThresholdBelowScale, number(24, 0xFFFFFEB3)}, // -333
        {PatternRefusal::ThresholdBelowScale, number(24, 0x80000000)},
        {PatternRefusal::ThresholdAboveScale, number(24, 65281)},
        {PatternRefusal::ThresholdAboveScale, number(24, 0x7FFFFFFF)},
        {PatternRefusal::Limit, number(28, 0x7FFFFFFE)},
        {PatternRefusal::Reserved1, number(32, 1)},
        {PatternRefusal::Reserved1, number(32, 0x80000000)},
        {PatternRefusal::Reserved2, number(36, 1)},
        {PatternRefusal::ModelSize, number(40, 0)},
        {PatternRefusal::ModelSize, number(40, static_cast<uint32_t>(Model().size()) + 1)},
        {PatternRefusal::ModelTooShort, modelOf(0)},
        {PatternRefusal::ModelTooShort, modelOf(15)},
        {PatternRefusal::ModelKind, flip(44)},
        {PatternRefusal::ModelVersion, flip(48)},
        {PatternRefusal::ModelLength, flip(52)},
        {PatternRefusal::ModelLength, modelOf(16)},
        {PatternRefusal::ModelChecksum, flip(56)},
        {PatternRefusal::ModelChecksum, flip(60)},
        {PatternRefusal::ModelChecksum,
         [](Bytes* block) {
             block->back() ^= 0x80U;
         }},
        {PatternRefusal::ModelMalformed, model([](Bytes* blob) {
             blob->push_back(0);
             BlobDamage::Reseal(blob);
         })},
        {PatternRefusal::ModelMalformed, model([](Bytes* blob) {
             blob->resize(velox::engine::BlobHeader::Size);
             BlobDamage::Reseal(blob);
         })},
    };
    for (std::size_t i = 0; i < cases.size(); ++i)
    {
        SCOPED_TRACE(testing::Message() << "case " << i << ", " << TextOf(cases[i].refusal).name);
        Bytes block = Make(Model(), Hundred);
        cases[i].spoil(&block);
        EXPECT_EQ(Read(block), cases[i].refusal);
    }
    for (const PatternRefusalText& text : PatternRefusalTexts)
    {
        EXPECT_TRUE(std::any_of(cases.begin(), cases.end(), [&](const Case& one) { return one.refusal == text.refusal; }))
            << text.name << " has no case";
    }
}

TEST(DspPattern, ThresholdsOfTheScalesEndsAreAccepted)
{
    EXPECT_EQ(Read(Make(Model(), 0)), std::nullopt);
    EXPECT_EQ(Read(Make(Model(), 65280)), std::nullopt);
}

TEST(DspPattern, ARefusalLeavesThePatternAsItIs)
{
    velox::firmware::DspPattern pattern;
    ASSERT_EQ(Read(Make(TinyLanguage::UserPhrase(), Hundred), &pattern), std::nullopt);
    Bytes bad = Make(TinyLanguage::Phrase(), 1);
    bad.back() ^= 1U;
    EXPECT_EQ(Read(bad, &pattern), PatternRefusal::ModelChecksum);
    EXPECT_EQ(pattern.threshold, Hundred);
    EXPECT_TRUE(pattern.model.speaker.has_value());
}

TEST(DspPattern, NoDamageGetsThrough)
{
    const Bytes good = Make(Model(), Hundred);
    velox::engine::RandomStream random(20261121);
    for (int round = 0; round < 400; ++round)
    {
        SCOPED_TRACE(round);
        const auto place = static_cast<std::size_t>(random.Integer(0, static_cast<int64_t>(good.size()) - 1));
        Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(place));
        EXPECT_NE(Read(cut), std::nullopt);
        if (place < 24 || place > 27) // a threshold is as good as another
        {
            Bytes flipped = good;
            flipped[place] ^= static_cast<uint8_t>(1U << static_cast<unsigned>(random.Integer(0, 7)));
            EXPECT_NE(Read(flipped), std::nullopt);
        }
    }
}

} // namespace DspPatternTests

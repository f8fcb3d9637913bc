#include "firmware/PatternRefusal.h"

#include <gmock/gmock.h>

#include <set>

namespace PatternRefusalTests
{

using namespace velox::firmware;
using testing::EndsWith;
using testing::Not;

TEST(PatternRefusal, EveryOneHasItsOwnText)
{
    std::set<std::string_view> names;
    std::set<std::string_view> sentences;
    for (std::size_t i = 0; i < PatternRefusalTexts.size(); ++i)
    {
        const PatternRefusalText& text = PatternRefusalTexts[i];
        SCOPED_TRACE(text.name);
        EXPECT_EQ(static_cast<std::size_t>(text.refusal), i + 1) << "TextOf relies on the order";
        EXPECT_EQ(&TextOf(text.refusal), &text);
        EXPECT_THAT(std::string(text.sentence), EndsWith("."));
        EXPECT_FALSE(text.field.empty());
        names.insert(text.name);
        sentences.insert(text.sentence);
    }
    EXPECT_EQ(names.size(), PatternRefusalTexts.size());
    EXPECT_EQ(sentences.size(), PatternRefusalTexts.size());
    EXPECT_EQ(PatternRefusalTexts.back().refusal, PatternRefusal::ModelMalformed);
}

TEST(PatternRefusal, OffsetsAreThoseOfTheFields)
{
    const auto offset = [](PatternRefusal refusal) {
        return TextOf(refusal).offset;
    };
    EXPECT_EQ(offset(PatternRefusal::Cut), 0U);
    EXPECT_EQ(offset(PatternRefusal::ForeignDetector), 4U);
    EXPECT_EQ(offset(PatternRefusal::Signature), 0x14U);
    EXPECT_EQ(offset(PatternRefusal::ThresholdBelowScale), 0x18U);
    EXPECT_EQ(offset(PatternRefusal::Limit), 0x1CU);
    EXPECT_EQ(offset(PatternRefusal::Reserved1), 0x20U);
    EXPECT_EQ(offset(PatternRefusal::Reserved2), 0x24U);
    EXPECT_EQ(offset(PatternRefusal::ModelSize), 0x28U);
    EXPECT_EQ(offset(PatternRefusal::ModelKind), 0x2CU);
    EXPECT_EQ(offset(PatternRefusal::ModelVersion), 0x30U);
    EXPECT_EQ(offset(PatternRefusal::ModelLength), 0x34U);
    EXPECT_EQ(offset(PatternRefusal::ModelChecksum), 0x38U);
}

} // namespace PatternRefusalTests

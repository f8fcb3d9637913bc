#include "tests/library/configuration/Lines.h"
#include "tests/support/ReaderTest.h"
#include "tests/support/Table.h"

#include <gmock/gmock.h>

#include <memory>

namespace GetPredefinedModelTests
{

using namespace ConfigurationLines;
using testing::ElementsAre;
using testing::IsEmpty;

using Damage = ConfigurationDamage;

class GetPredefinedModel : public ReaderTest, public testing::WithParamInterface<Damage>
{
protected:
    /// A lookup that fails, or finds no language, and leaves what the caller had.
    void ExpectOutputsLeft(uint16_t languageId, HRESULT result)
    {
        uint8_t mark = 0;
        uint8_t* data = &mark;
        uint32_t size = 4711;
        EXPECT_EQ(reader.GetPredefinedModel(languageId, &data, &size), result);
        EXPECT_EQ(data, &mark);
        EXPECT_EQ(size, 4711U);
    }
};

TEST_F(GetPredefinedModel, GivesTheLanguagesFirmwareModel)
{
    uint8_t* data = nullptr;
    uint32_t size = 0;
    EXPECT_EQ(reader.GetPredefinedModel(1040, &data, &size), S_OK);
    const std::unique_ptr<uint8_t[]> owner(data);
    EXPECT_EQ(std::string(data, data + size), "firmware 1040");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetPredefinedModel, UnknownLanguageIsNoFailureAndGivesNothing)
{
    ExpectOutputsLeft(1031, S_OK);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_P(GetPredefinedModel, DamageFails)
{
    GetParam().inflict(configuration);
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(
    Damages, GetPredefinedModel,
    testing::Values(Damage{"no element", [](auto& damaged) { damaged.ReplaceInXml("<fwBlob>fw_1033.bin</fwBlob>", ""); },
                           NotGot("GetPredefinedModel", "predefined model XML element")},
                    Damage{"no name", [](auto& damaged) { damaged.ReplaceInXml("fw_1033.bin", ""); },
                           NotGot("GetPredefinedModel", "predefined model file name")},
                    Damage{"no file", [](auto& damaged) { damaged.RemoveFile("fw_1033.bin"); }, FileNotOpened("fw_1033.bin")},
                    Damage{"empty file", [](auto& damaged) { damaged.WriteFile("fw_1033.bin", ""); }, FileEmpty("fw_1033.bin")}),
    RowName());

} // namespace GetPredefinedModelTests

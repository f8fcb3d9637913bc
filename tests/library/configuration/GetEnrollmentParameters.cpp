#include "tests/library/configuration/Lines.h"
#include "tests/support/ReaderTest.h"
#include "tests/support/Table.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

namespace GetEnrollmentParametersTests
{

using namespace ConfigurationLines;
using testing::IsEmpty;

const std::string Operation = "GetEnrollmentParameters";

using Steps = std::vector<std::function<void(const TestConfiguration&)>>;

Steps Remove(const std::string& model)
{
    return {[=](const TestConfiguration& configuration) {
        configuration.RemoveFile(model + "_1033.bin");
    }};
}

Steps Empty(const std::string& model)
{
    return {[=](const TestConfiguration& configuration) {
        configuration.WriteFile(model + "_1033.bin", "");
    }};
}

Steps TakeElement(const std::string& element)
{
    return {[=](const TestConfiguration& configuration) {
        configuration.ReplaceInXml("<" + element + ">", "<other>");
        configuration.ReplaceInXml("</" + element + ">", "</other>");
    }};
}

Steps TakeText(const std::string& element)
{
    return {[=](const TestConfiguration& configuration) {
        configuration.ReplaceInXml("<" + element + ">", "<" + element + "/><" + element + ">");
    }};
}

Steps operator+(Steps first, const Steps& rest)
{
    first.insert(first.end(), rest.begin(), rest.end());
    return first;
}

/// What happens to the models of 1033, one after the other, and what is loaded all the same.
struct Damage
{
    const char* description;
    Steps steps;
    HRESULT result;
    std::string loaded; ///< of "kp am zn"
    Lines lines;
};

class GetEnrollmentParameters : public ReaderTest, public testing::WithParamInterface<Damage>
{
protected:
    /// Looks at the blocks' first bytes; they carry no length.
    static void ExpectModels(const uint8_t* keyphrase, const uint8_t* acoustic, const uint8_t* znorm, const std::string& id)
    {
        EXPECT_EQ(std::string(keyphrase, keyphrase + 14), "keyphrase " + id);
        EXPECT_EQ(std::string(acoustic, acoustic + 13), "acoustic " + id);
        EXPECT_EQ(std::string(znorm, znorm + 10), "znorm " + id);
    }

    void ExpectModels(const std::string& id) const
    {
        ExpectModels(parameters.keyphraseModel, parameters.acousticModel, parameters.znormPopulation, id);
        EXPECT_EQ(parameters.reservedBlob, nullptr);
    }

    void ExpectLoaded(const std::string& models) const
    {
        EXPECT_EQ(parameters.keyphraseModel != nullptr, models.find("kp") != std::string::npos);
        EXPECT_EQ(parameters.acousticModel != nullptr, models.find("am") != std::string::npos);
        EXPECT_EQ(parameters.znormPopulation != nullptr, models.find("zn") != std::string::npos);
    }

    EnrollmentParameters parameters;
};

TEST_F(GetEnrollmentParameters, LoadsTheLanguagesThreeModels)
{
    EXPECT_EQ(reader.GetEnrollmentParameters(1040, &parameters), S_OK);
    ExpectModels("1040");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetEnrollmentParameters, UnknownLanguageIsNoFailureAndLoadsNothing)
{
    EXPECT_EQ(reader.GetEnrollmentParameters(1031, &parameters), S_OK);
    ExpectLoaded("");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetEnrollmentParameters, NeitherConstraintsNorThresholdsAreNeeded)
{
    configuration.WriteXml("<r directory='" + configuration.Directory() +
                           "'><a id='1033'><znormPopulation>zn_1033.bin</znormPopulation><acousticModel>am_1033.bin"
                           "</acousticModel><keyphraseModel>kp_1033.bin</keyphraseModel></a></r>");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), S_OK);
    ExpectModels("1033");
}

TEST_P(GetEnrollmentParameters, OnlyTheLastLoadsResultCountsAndAnElementThatIsNotThereEndsTheLoading)
{
    for (const auto& step : GetParam().steps)
    {
        step(configuration);
    }
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), GetParam().result);
    ExpectLoaded(GetParam().loaded);
    EXPECT_EQ(logger.lines, GetParam().lines);
}

const LogLine NoKeyphrase = FileNotOpened("kp_1033.bin");
const LogLine NoAcoustic = FileNotOpened("am_1033.bin");

INSTANTIATE_TEST_SUITE_P(
    Damages, GetEnrollmentParameters,
    testing::Values(
        Damage{"no keyphrase file", Remove("kp"), S_OK, "am zn", NoKeyphrase},
        Damage{"no acoustic file", Remove("am"), S_OK, "kp zn", NoAcoustic},
        Damage{"no znorm file", Remove("zn"), E_FAIL, "kp am", FileNotOpened("zn_1033.bin")},
        Damage{"empty keyphrase file", Empty("kp"), S_OK, "am zn", FileEmpty("kp_1033.bin")},
        Damage{"empty acoustic file", Empty("am"), S_OK, "kp zn", FileEmpty("am_1033.bin")},
        Damage{"empty znorm file", Empty("zn"), E_FAIL, "kp am", FileEmpty("zn_1033.bin")},
        Damage{"no keyphrase and empty acoustic file", Remove("kp") + Empty("am"), S_OK, "zn",
               NoKeyphrase + FileEmpty("am_1033.bin")},
        Damage{"no acoustic and empty znorm file", Remove("am") + Empty("zn"), E_FAIL, "kp",
               NoAcoustic + FileEmpty("zn_1033.bin")},
        Damage{"no keyphrase element", TakeElement("keyphraseModel"), E_FAIL, "",
               NotGot(Operation, "keyphrase model XML element")},
        Damage{"no acoustic element", TakeElement("acousticModel"), E_FAIL, "kp",
               NotGot(Operation, "acoustic model XML element")},
        Damage{"no znorm element", TakeElement("znormPopulation"), E_FAIL, "kp am",
               NotGot(Operation, "znorm population XML element")},
        Damage{"no keyphrase name", TakeText("keyphraseModel"), E_FAIL, "", NotGot(Operation, "keyphrase model file name")},
        Damage{"no acoustic name", TakeText("acousticModel"), E_FAIL, "kp", NotGot(Operation, "acoustic model file name")},
        Damage{"no znorm name", TakeText("znormPopulation"), E_FAIL, "kp am", NotGot(Operation, "znorm population file name")},
        Damage{"no keyphrase file and no acoustic element", Remove("kp") + TakeElement("acousticModel"), E_FAIL, "",
               NoKeyphrase + NotGot(Operation, "acoustic model XML element")}),
    RowName());

TEST_F(GetEnrollmentParameters, FirstOfTwoEqualElementsCounts)
{
    configuration.ReplaceInXml("<keyphraseModel>", "<keyphraseModel>kp_1040.bin</keyphraseModel><keyphraseModel>");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), S_OK);
    EXPECT_EQ(std::string(parameters.keyphraseModel, parameters.keyphraseModel + 14), "keyphrase 1040");
}

TEST_F(GetEnrollmentParameters, SecondLoadIntoTheSameMembersDropsTheirBlocksIsKept)
{
    ASSERT_EQ(reader.GetEnrollmentParameters(1033, &parameters), S_OK);
    // The test's own hold on what the library drops below.
    const std::unique_ptr<uint8_t[]> keyphrase(parameters.keyphraseModel);
    const std::unique_ptr<uint8_t[]> acoustic(parameters.acousticModel);
    const std::unique_ptr<uint8_t[]> znorm(parameters.znormPopulation);

    ASSERT_EQ(reader.GetEnrollmentParameters(1040, &parameters), S_OK);
    ExpectModels(keyphrase.get(), acoustic.get(), znorm.get(), "1033");
    ExpectModels("1040");
}

} // namespace GetEnrollmentParametersTests

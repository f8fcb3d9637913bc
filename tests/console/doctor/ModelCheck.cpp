#include "console/doctor/ModelCheck.h"

#include "console/inspect/Inspection.h"
#include "engine/models/AcousticModel.h"
#include "tests/console/support/InspectionSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velox::console;
using InspectionSamples::Bytes;

TEST(ModelCheck, EveryModelIsGoodInItsPlaceOnly)
{
    const struct
    {
        std::string_view element;
        Bytes bytes;
        Severity severity;
        bool engineRefuses;
    } cases[]{
        {"keyphraseModel", InspectionSamples::FirmwareModel(), Severity::Good, false},
        {"keyphraseModel", InspectionSamples::PhraseModel(), Severity::Good, false},
        {"keyphraseModel", InspectionSamples::AcousticModel(), Severity::Error, true},
        {"acousticModel", InspectionSamples::AcousticModel(), Severity::Good, false},
        {"acousticModel", InspectionSamples::FirmwareModel(), Severity::Error, true},
        {"znormPopulation", InspectionSamples::Population(), Severity::Good, false},
        {"znormPopulation", InspectionSamples::AcousticModel(), Severity::Error, true},
        {"fwBlob", InspectionSamples::FirmwareModel(), Severity::Good, false},
        {"fwBlob", InspectionSamples::UserModel(), Severity::Warning, false},
        {"fwBlob", InspectionSamples::Population(), Severity::Error, false},
        {"fwBlob", InspectionSamples::FromText("another engine's"), Severity::Note, false},
    };
    for (const auto& own : cases)
    {
        const ModelVerdict verdict = CheckModelFile(own.element, Inspect(own.bytes));
        SCOPED_TRACE(testing::Message() << own.element << " " << verdict.message);
        EXPECT_EQ(verdict.severity, own.severity);
        EXPECT_EQ(verdict.engineRefuses, own.engineRefuses);
    }
}

TEST(ModelCheck, DamagedModelIsRefusedWithThePlace)
{
    Bytes damaged = InspectionSamples::AcousticModel();
    damaged.pop_back();
    const ModelVerdict verdict = CheckModelFile("acousticModel", Inspect(damaged));
    EXPECT_EQ(verdict.severity, Severity::Error);
    EXPECT_TRUE(verdict.engineRefuses);
    EXPECT_THAT(verdict.message, testing::HasSubstr("is damaged at 0x0008, Length"));
}

TEST(ModelCheck, ModelsOfOnePhraseAgree)
{
    const Inspection phrase = Inspect(InspectionSamples::FirmwareModel());
    const Inspection acoustic = Inspect(InspectionSamples::AcousticModel());
    const Inspection population = Inspect(InspectionSamples::Population());
    EXPECT_EQ(CheckModelsAgree(&phrase, &acoustic, &population).severity, Severity::Good);
    EXPECT_EQ(CheckModelsAgree(nullptr, nullptr, nullptr).severity, Severity::Good);
}

TEST(ModelCheck, PopulationOfAnotherPhraseCannotEnroll)
{
    velox::engine::Population other;
    other.hours = 1.0;
    other.peaks.push_back({-1.0F, {5, 5}, std::vector<velox::engine::MelFrame>(10)});
    const Inspection acoustic = Inspect(InspectionSamples::AcousticModel());
    const Inspection population = Inspect(WritePopulation(other));
    const ModelVerdict verdict = CheckModelsAgree(nullptr, &acoustic, &population);
    EXPECT_EQ(verdict.severity, Severity::Error);
    EXPECT_TRUE(verdict.engineRefuses);
    EXPECT_EQ(verdict.message, "acoustic model and population are of different phrases: 4 and 2 states.");
}

TEST(ModelCheck, ModelsOfTwoEnginesAreWarnedOf)
{
    const Inspection acoustic = Inspect(InspectionSamples::AcousticModel());
    const Inspection foreign = Inspect(InspectionSamples::FromText("znorm 1033"));
    EXPECT_EQ(CheckModelsAgree(nullptr, &acoustic, &foreign).severity, Severity::Warning);
    EXPECT_EQ(CheckModelsAgree(&foreign, nullptr, &foreign).severity, Severity::Good) << "all of another engine";
}

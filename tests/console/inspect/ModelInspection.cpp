#include "console/inspect/Inspection.h"

#include "engine/models/Population.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/engine/support/BlobDamage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace ModelInspectionTests
{

using namespace velox::console;
using InspectionSamples::Bytes;

namespace engine = velox::engine;

/// A kind of model, and whether the engine's own reader takes it.
struct ModelCase
{
    std::string name;
    FileKind kind;
    Bytes (*make)();
    bool (*engineTakes)(const Bytes& bytes);
};

template <typename Model, engine::Status (*Read)(const uint8_t*, Model*)>
bool Takes(const Bytes& bytes)
{
    Model model;
    return Read(bytes.data(), &model) == engine::Status::Success;
}

/// As a session takes what an enrollment ends with.
bool TakesEnrolled(const Bytes& bytes)
{
    engine::Status status = engine::Status::Success;
    engine::BlobReader reader(engine::BlobKind::PhraseModel, bytes.data(), &status);
    engine::PhraseModel model;
    return status == engine::Status::Success && engine::ReadNestedPhraseModel(&reader, &model) == engine::Status::Success &&
           reader.Finish() == engine::Status::Success;
}

const ModelCase Cases[]{
    {"Firmware", FileKind::FirmwareModel, InspectionSamples::FirmwareModel, Takes<engine::PhraseModel, engine::ReadPhraseModel>},
    {"User", FileKind::FirmwareModel, InspectionSamples::UserModel, Takes<engine::PhraseModel, engine::ReadPhraseModel>},
    {"Acoustic", FileKind::AcousticModel, InspectionSamples::AcousticModel,
     Takes<engine::AcousticModel, engine::ReadAcousticModel>},
    {"Phrase", FileKind::PhraseModel, InspectionSamples::PhraseModel, TakesEnrolled},
    {"Population", FileKind::Population, InspectionSamples::Population, Takes<engine::Population, engine::ReadPopulation>},
};

class ModelInspection : public testing::TestWithParam<ModelCase>
{
};

void ExpectTheSameVerdict(const ModelCase& model, const Bytes& bytes)
{
    const Inspection inspection = Inspect(bytes);
    const InspectedField* error = inspection.FirstError();
    EXPECT_EQ(error == nullptr, model.engineTakes(bytes))
        << (error == nullptr ? "inspect finds nothing" : error->path + ": " + error->error);
}

TEST_P(ModelInspection, VerdictIsTheEnginesWhenABitIsChangedAndTheChecksumMadeToFit)
{
    constexpr int Rounds = 300;
    const Bytes good = GetParam().make();
    engine::RandomStream random(20261121);
    for (int i = 0; i < Rounds; ++i)
    {
        // Half of the rounds hit the beginning, where the counts stand.
        const int64_t last = static_cast<int64_t>(good.size()) - 1;
        const auto place =
            static_cast<std::size_t>(random.Integer(engine::BlobHeader::Size, i % 2 == 0 ? last : std::min<int64_t>(last, 1000)));
        SCOPED_TRACE(place);
        Bytes changed = good;
        changed[place] ^= static_cast<uint8_t>(1U << static_cast<unsigned>(random.Integer(0, 7)));
        BlobDamage::Reseal(&changed);
        ExpectTheSameVerdict(GetParam(), changed);
    }
}

TEST_P(ModelInspection, VerdictIsTheEnginesForEveryWordSetToAnExtreme)
{
    constexpr std::size_t Words = 250;
    const Bytes good = GetParam().make();
    for (std::size_t place = engine::BlobHeader::Size; place + 4 <= std::min(good.size(), 4 * Words); place += 4)
    {
        for (const uint32_t value : {0U, 1U, 129U, 0x7FC00000U, 0x80000000U, 0xFFFFFFFFU})
        {
            SCOPED_TRACE(testing::Message() << place << " = " << value);
            Bytes changed = good;
            BlobDamage::PutU32(&changed, place, value);
            BlobDamage::Reseal(&changed);
            ExpectTheSameVerdict(GetParam(), changed);
        }
    }
}

TEST_P(ModelInspection, VerdictIsTheEnginesWhenTheModelIsCutAndTheHeaderMadeToFit)
{
    const Bytes good = GetParam().make();
    for (std::size_t size = engine::BlobHeader::Size; size < good.size(); size += size < 500 ? 1 : 211)
    {
        SCOPED_TRACE(size);
        Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        BlobDamage::Reseal(&cut);
        ExpectTheSameVerdict(GetParam(), cut);
    }
}

TEST_P(ModelInspection, HeaderFaultsAreToldApart)
{
    const struct
    {
        std::size_t offset;
        uint32_t value;
        std::string path;
        std::string message;
    } faults[]{
        {4, 3, "Version", "3, but the stand-in engine's version is 2"},
        {8, 15, "Length", "15, but there are"},
        {8, 100000, "Length", "100000, but there are"},
        {8, 20, "Length", "20, but there are"},
        {12, 1, "Checksum", "some were changed"},
    };
    for (const auto& fault : faults)
    {
        SCOPED_TRACE(fault.message);
        Bytes damaged = GetParam().make();
        ASSERT_LT(damaged.size(), 100000U);
        BlobDamage::PutU32(&damaged, fault.offset, fault.value);
        const Inspection inspection = Inspect(damaged);
        const InspectedField* error = inspection.FirstError();
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->path, fault.path);
        EXPECT_EQ(error->offset, fault.offset);
        EXPECT_THAT(error->error, testing::HasSubstr(fault.message));
        EXPECT_GE(inspection.fields.size(), 5U) << "what was read is shown";
    }
}

TEST_P(ModelInspection, BytesBehindTheModelAreAnError)
{
    Bytes longer = GetParam().make();
    const std::size_t size = longer.size();
    longer.resize(size + 3);
    const Inspection inspection = Inspect(longer);
    EXPECT_EQ(inspection.FirstError()->path, "Length");
    ASSERT_NE(inspection.Find("(rest)"), nullptr);
    EXPECT_EQ(inspection.Find("(rest)")->offset, size);
    EXPECT_NE(inspection.Find("(rest)")->error, "");
}

INSTANTIATE_TEST_SUITE_P(Kinds, ModelInspection, testing::ValuesIn(Cases), [](const auto& test) { return test.param.name; });

TEST(ModelInspection, HeaderIsShownFieldByFieldAndTheRestAsBytes)
{
    const Bytes model = InspectionSamples::UserModel();
    const Inspection user = Inspect(model);
    ASSERT_EQ(user.fields.size(), 5U);
    EXPECT_EQ(user.Find("Kind")->value, "\"VWOV\"");
    EXPECT_EQ(user.Find("Version")->value, "2");
    EXPECT_EQ(user.Find("Length")->value, std::to_string(model.size()));
    EXPECT_EQ(user.Find("Checksum")->offset, 12U);
    EXPECT_EQ(user.Find("Data")->offset, 16U);
    EXPECT_EQ(user.Find("Data")->size, model.size() - 16);
}

TEST(ModelInspection, WhatTheReadModelTellsIsKept)
{
    const auto fact = [](const Inspection& inspection, std::string_view key) {
        const auto found = std::ranges::find(inspection.facts, key, &Fact::key);
        return found == inspection.facts.end() ? "" : found->text;
    };
    const Inspection user = Inspect(InspectionSamples::UserModel());
    EXPECT_TRUE(user.ofUser);
    EXPECT_EQ(user.states, 4U);
    EXPECT_EQ(fact(user, "phraseSeconds"), "0.60 s");
    EXPECT_EQ(fact(user, "user"), "a user's model");
    EXPECT_EQ(fact(Inspect(InspectionSamples::FirmwareModel()), "user"), "for anybody");
    EXPECT_TRUE(Inspect(InspectionSamples::PhraseModel()).ofUser);
    EXPECT_EQ(Inspect(InspectionSamples::AcousticModel()).states, 4U);
    const Inspection population = Inspect(InspectionSamples::Population());
    EXPECT_EQ(population.states, 4U);
    EXPECT_EQ(fact(population, "peaks"), "3 peaks");
    EXPECT_EQ(fact(population, "voices"), "0 voices");
    EXPECT_NE(fact(population, "hours"), "");
}

TEST(ModelInspection, ContentsThatTheEngineRefusesAreWrong)
{
    Bytes model = InspectionSamples::AcousticModel();
    BlobDamage::PutU32(&model, 16, 0xFFFFFFFF); // the length of the model inside
    BlobDamage::Reseal(&model);
    const Inspection inspection = Inspect(model);
    EXPECT_EQ(inspection.FirstError()->path, "Data");
    EXPECT_THAT(inspection.FirstError()->error, testing::HasSubstr("the engine refuses it: status 106 MalformedBlob"));
}

} // namespace ModelInspectionTests

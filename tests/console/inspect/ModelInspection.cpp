#include "console/inspect/ModelInspection.h"

#include "console/inspect/Inspection.h"
#include "engine/models/AcousticModel.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/engine/support/BlobDamage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using namespace velox::console;
using InspectionSamples::Bytes;

namespace
{

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

const ModelCase Cases[]{
    {"Firmware", FileKind::FirmwareModel, InspectionSamples::FirmwareModel, Takes<engine::PhraseModel, engine::ReadPhraseModel>},
    {"User", FileKind::FirmwareModel, InspectionSamples::UserModel, Takes<engine::PhraseModel, engine::ReadPhraseModel>},
    {"Acoustic", FileKind::AcousticModel, InspectionSamples::AcousticModel,
     Takes<engine::AcousticModel, engine::ReadAcousticModel>},
    {"Population", FileKind::Population, InspectionSamples::Population, Takes<engine::Population, engine::ReadPopulation>},
};

class ModelInspection : public testing::TestWithParam<ModelCase>
{
};

void ExpectTheSameVerdict(const ModelCase& model, const Bytes& bytes)
{
    const Inspection inspection = Inspect(bytes);
    EXPECT_EQ(inspection.errors.empty(), model.engineTakes(bytes))
        << (inspection.errors.empty() ? "inspect finds nothing"
                                      : inspection.errors[0].path + ": " + inspection.errors[0].message);
}

} // namespace

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
        {4, 2, "Version", "2, but the stand-in engine's version is 1"},
        {8, 15, "Length", "15 must lie between 16 and"},
        {8, 100000, "Length", "100000, but there are only"},
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
        ASSERT_FALSE(inspection.errors.empty());
        EXPECT_EQ(inspection.errors[0].path, fault.path);
        EXPECT_EQ(inspection.errors[0].offset, fault.offset);
        EXPECT_THAT(inspection.errors[0].message, testing::HasSubstr(fault.message));
    }
}

TEST_P(ModelInspection, FieldsAreReadOnAfterAChecksumThatIsWrong)
{
    Bytes damaged = GetParam().make();
    const std::size_t fields = Inspect(damaged).fields.size();
    damaged[12] ^= 1U;
    EXPECT_EQ(Inspect(damaged).fields.size(), fields);
}

TEST_P(ModelInspection, BytesBehindTheModelAreAnError)
{
    Bytes longer = GetParam().make();
    const std::size_t size = longer.size();
    longer.resize(size + 3);
    const Inspection inspection = Inspect(longer);
    ASSERT_EQ(inspection.errors.size(), 2U); // the length, and the bytes
    EXPECT_EQ(inspection.errors[1].offset, size);
    EXPECT_EQ(inspection.errors[1].path, "(rest)");
}

INSTANTIATE_TEST_SUITE_P(Kinds, ModelInspection, testing::ValuesIn(Cases), [](const auto& test) { return test.param.name; });

TEST(ModelInspection, FieldsAreThoseOfTheFormat)
{
    const Inspection user = Inspect(InspectionSamples::UserModel());
    EXPECT_EQ(user.Find("Kind")->value, "\"VWOV\"");
    EXPECT_EQ(user.Find("states")->value, "4");
    EXPECT_THAT(user.Find("meanDuration")->meaning, testing::HasSubstr("0.60 s"));
    EXPECT_EQ(user.Find("network.layer[0].kernel")->value, "3");
    EXPECT_EQ(user.Find("network.layer[0].dilation")->value, "2");
    EXPECT_EQ(user.Find("hasSpeaker")->value, "1 (a user's model)");
    EXPECT_NE(user.Find("speaker.user.state[3].means"), nullptr);
    EXPECT_EQ(user.Find("speaker.user.state[4].means"), nullptr);
    EXPECT_EQ(user.Find("speaker.user.state[3].means")->group, "speaker.user.state[*]");

    EXPECT_NE(Inspect(InspectionSamples::AcousticModel()).Find("phrase.network.layers"), nullptr);
    EXPECT_NE(Inspect(InspectionSamples::PhraseModel()).Find("firmware.speaker.threshold"), nullptr);
    EXPECT_EQ(Inspect(InspectionSamples::Population()).Find("peaks")->value, "3");
}

TEST(ModelInspection, ErrorInsideANestedModelHasItsWholePath)
{
    Bytes model = InspectionSamples::AcousticModel();
    const std::size_t offset = Inspect(model).Find("phrase.network.layer[0].kernel")->offset;
    BlobDamage::PutU32(&model, offset, 17);
    const Inspection inspection = Inspect(model);
    ASSERT_EQ(inspection.errors.size(), 3U); // both checksums, and the number
    EXPECT_EQ(inspection.errors[2].path, "phrase.network.layer[0].kernel");
    EXPECT_EQ(inspection.errors[2].offset, offset);
    EXPECT_EQ(inspection.errors[2].message, "17 must lie between 1 and 16.");
}

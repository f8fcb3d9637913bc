#include "tests/console/support/InspectionSamples.h"

#include "tests/engine/support/TinyLanguage.h"

namespace InspectionSamples
{

using velox::console::FileKind;
using namespace velox::engine;

void PutU32(Bytes* bytes, std::size_t offset, uint32_t value)
{
    for (std::size_t i = 0; i < sizeof(value); ++i)
    {
        (*bytes)[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

Bytes FromText(std::string_view text)
{
    return {text.begin(), text.end()};
}

std::string ToText(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

namespace
{

constexpr std::size_t ArmingHead = 44;
constexpr std::size_t ResultSize = 60;

/// A block of zeros with size and GUID.
Bytes Block(std::size_t size)
{
    constexpr uint8_t Guid[]{0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};
    Bytes block(size);
    PutU32(&block, 0, static_cast<uint32_t>(size));
    std::copy(std::begin(Guid), std::end(Guid), block.begin() + 4);
    return block;
}

} // namespace

Bytes ArmingPattern(const Bytes& model)
{
    Bytes block = Block(ArmingHead);
    PutU32(&block, 0, static_cast<uint32_t>(ArmingHead + model.size()));
    PutU32(&block, 20, 0xAA550001);
    PutU32(&block, 24, 192);
    PutU32(&block, 28, 0x7FFFFFFF);
    PutU32(&block, 40, static_cast<uint32_t>(model.size()));
    block.insert(block.end(), model.begin(), model.end());
    return block;
}

Bytes DetectionResult(std::size_t extra)
{
    Bytes block = Block(ResultSize + extra);
    PutU32(&block, 28, 10'000'000);
    PutU32(&block, 36, 18'000'000);
    block[48] = 1;
    block[53] = 230;
    return block;
}

Bytes FirmwareModel()
{
    return WritePhraseModel(TinyLanguage::Phrase());
}

Bytes UserModel()
{
    return WritePhraseModel(TinyLanguage::UserPhrase());
}

Bytes AcousticModel()
{
    return WriteAcousticModel(TinyLanguage::Acoustic());
}

Bytes Population()
{
    velox::engine::Population few = TinyLanguage::Background();
    few.peaks.resize(3); // as good as all: tests damage every byte
    return WritePopulation(few);
}

Bytes PhraseModel()
{
    BlobWriter writer(BlobKind::PhraseModel);
    writer.Nested(UserModel());
    return writer.Finish();
}

std::vector<Sample> All()
{
    return {{FileKind::ArmingPattern, "arming pattern with a foreign model", ArmingPattern(FromText("firmware 1033"))},
            {FileKind::ArmingPattern, "arming pattern with a user's model", ArmingPattern(UserModel())},
            {FileKind::DetectionResult, "detection result", DetectionResult()},
            {FileKind::AcousticModel, "acoustic model", AcousticModel()},
            {FileKind::Population, "population", Population()},
            {FileKind::PhraseModel, "phrase model", PhraseModel()},
            {FileKind::FirmwareModel, "firmware model", FirmwareModel()},
            {FileKind::FirmwareModel, "user model", UserModel()}};
}

} // namespace InspectionSamples

#include "console/hosting/StandInModels.h"

#include "console/text/WriteWhole.h"

namespace velox::console
{

namespace
{

using engine::Status;

engine::Status ReadEnrolledModel(std::span<const uint8_t> bytes, engine::PhraseModel* model)
{
    Status status = Status::Success;
    engine::BlobReader reader(engine::BlobKind::PhraseModel, bytes.data(), &status);
    if (status == Status::Success)
    {
        status = engine::ReadNestedPhraseModel(&reader, model);
    }
    return status == Status::Success ? reader.Finish() : status;
}

template <typename Model>
std::unique_ptr<Model> ReadModelFile(const std::filesystem::path& file)
{
    std::error_code error;
    auto model = std::make_unique<Model>();
    const bool read = std::filesystem::is_regular_file(file, error) && ReadModel(ReadWhole(file), model.get()) == Status::Success;
    return read ? std::move(model) : nullptr;
}

} // namespace

bool IsWholeModel(std::span<const uint8_t> bytes)
{
    return bytes.size() >= engine::BlobHeader::Size && engine::BlobLength(bytes.data()) == bytes.size();
}

Status ReadModel(std::span<const uint8_t> bytes, engine::PhraseModel* model)
{
    if (!IsWholeModel(bytes))
    {
        return Status::MalformedBlob;
    }
    return engine::IsBlob(bytes.data(), engine::BlobKind::PhraseModel) ? ReadEnrolledModel(bytes, model)
                                                                       : engine::ReadPhraseModel(bytes.data(), model);
}

Status ReadModel(std::span<const uint8_t> bytes, engine::AcousticModel* model)
{
    return IsWholeModel(bytes) ? engine::ReadAcousticModel(bytes.data(), model) : Status::MalformedBlob;
}

Status ReadModel(std::span<const uint8_t> bytes, engine::Population* model)
{
    return IsWholeModel(bytes) ? engine::ReadPopulation(bytes.data(), model) : Status::MalformedBlob;
}

StandInModels ReadStandInModels(const ConfiguredLanguage& language)
{
    return {ReadModelFile<engine::PhraseModel>(language.keyphraseModel),
            ReadModelFile<engine::AcousticModel>(language.acousticModel),
            ReadModelFile<engine::Population>(language.znormPopulation)};
}

} // namespace velox::console

#include "engine/models/AcousticModel.h"

#include "engine/models/MixtureBlob.h"

namespace velox::engine
{

std::vector<uint8_t> WriteAcousticModel(const AcousticModel& model)
{
    BlobWriter writer(BlobKind::AcousticModel);
    writer.Nested(WritePhraseModel(model.phrase));
    WriteMixtures(model.generic.states, &writer);
    return writer.Finish();
}

Status ReadAcousticModel(const uint8_t* blob, AcousticModel* model)
{
    Status status = Status::Success;
    BlobReader reader(BlobKind::AcousticModel, blob, &status);
    if (status != Status::Success)
    {
        return status;
    }
    AcousticModel read;
    status = ReadNestedPhraseModel(&reader, &read.phrase);
    if (status != Status::Success)
    {
        return status;
    }
    auto mixtures = ReadMixtures(read.phrase.states.States(), &reader);
    if (!mixtures || reader.Finish() != Status::Success)
    {
        return Status::MalformedBlob;
    }
    read.generic.states = std::move(*mixtures);
    *model = std::move(read);
    return Status::Success;
}

} // namespace velox::engine

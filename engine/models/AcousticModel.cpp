#include "engine/models/AcousticModel.h"

#include "engine/models/MixtureBlob.h"

#include <algorithm>
#include <cmath>

namespace velox::engine
{

namespace
{

constexpr uint32_t MostFrames = 2000;
/// Of a score or a feature; none that was measured comes near.
constexpr float MostMeasured = 1e4F;

} // namespace

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

bool Population::Fits(const AcousticModel& model) const
{
    return std::all_of(peaks.begin(), peaks.end(),
                       [&](const Peak& peak) { return peak.counts.size() == model.phrase.states.States(); });
}

std::vector<uint8_t> WritePopulation(const Population& population)
{
    BlobWriter writer(BlobKind::Population);
    writer.F32(static_cast<float>(population.hours));
    writer.U32(static_cast<uint32_t>(population.peaks.size()));
    for (const Population::Peak& peak : population.peaks)
    {
        writer.F32(peak.factors);
        writer.U32(static_cast<uint32_t>(peak.counts.size()));
        for (const int32_t count : peak.counts)
        {
            writer.U32(static_cast<uint32_t>(count));
        }
        for (const MelFrame& feature : peak.features)
        {
            writer.Quantised(feature);
        }
    }
    return writer.Finish();
}

Status ReadPopulation(const uint8_t* blob, Population* population)
{
    Status status = Status::Success;
    BlobReader reader(BlobKind::Population, blob, &status);
    if (status != Status::Success)
    {
        return status;
    }
    Population read;
    read.hours = static_cast<double>(reader.F32());
    const uint32_t peaks = reader.Count(Population::MostPeaks);
    bool valid = read.hours > 0.0 && peaks > 0;
    for (uint32_t i = 0; i < peaks && valid; ++i)
    {
        Population::Peak peak;
        peak.factors = reader.F32();
        peak.counts.resize(reader.Count(StateModel::MostStates));
        uint32_t frames = 0;
        for (int32_t& count : peak.counts)
        {
            const uint32_t own = reader.Count(MostFrames);
            valid = valid && own > 0;
            count = static_cast<int32_t>(own);
            frames += own;
        }
        valid = valid && frames <= MostFrames;
        peak.features.resize(valid ? frames : 0);
        for (MelFrame& feature : peak.features)
        {
            reader.Quantised(feature);
            valid =
                valid && std::all_of(feature.begin(), feature.end(), [](float value) { return std::abs(value) <= MostMeasured; });
        }
        valid = valid && std::abs(peak.factors) <= MostMeasured;
        read.peaks.push_back(std::move(peak));
    }
    if (!valid || reader.Finish() != Status::Success)
    {
        return Status::MalformedBlob;
    }
    *population = std::move(read);
    return Status::Success;
}

} // namespace velox::engine

#include "engine/models/Population.h"

#include <algorithm>
#include <cmath>

namespace velox::engine
{

namespace
{

constexpr uint32_t MostFrames = 2000;
/// Of a score or a feature; none that was measured comes near.
constexpr float MostMeasured = 1e4F;
constexpr float MostSample = 1.001F; // quantised

bool AreMeasured(std::span<const float> values)
{
    return std::ranges::all_of(values, [](float value) { return std::abs(value) <= MostMeasured; });
}

void WritePlaces(const std::vector<Population::Place>& places, BlobWriter* writer)
{
    writer->U32(static_cast<uint32_t>(places.size()));
    for (const Population::Place& place : places)
    {
        writer->F32(place.factors);
        writer->U32(static_cast<uint32_t>(place.counts.size()));
        for (const int32_t count : place.counts)
        {
            writer->U32(static_cast<uint32_t>(count));
        }
        for (const MelFrame& feature : place.features)
        {
            writer->Quantised(feature);
        }
    }
}

/// @return false when it cannot be a place
bool ReadPlace(BlobReader* reader, Population::Place* place)
{
    place->factors = reader->F32();
    place->counts.resize(reader->Count(StateModel::MostStates));
    uint32_t frames = 0;
    for (int32_t& count : place->counts)
    {
        const uint32_t own = reader->Count(MostFrames);
        if (own == 0)
        {
            return false;
        }
        count = static_cast<int32_t>(own);
        frames += own;
    }
    if (frames > MostFrames || !AreMeasured(std::span(&place->factors, 1)))
    {
        return false;
    }
    place->features.resize(frames);
    return std::ranges::all_of(place->features, [reader](MelFrame& feature) {
        reader->Quantised(feature);
        return AreMeasured(feature);
    });
}

bool ReadPlaces(uint32_t most, BlobReader* reader, std::vector<Population::Place>* places)
{
    places->resize(reader->Count(most));
    return std::ranges::all_of(*places, [reader](Population::Place& place) { return ReadPlace(reader, &place); });
}

/// @return false when a talker is mute, or a sample lies outside of [-1, 1]
bool ReadTalkers(BlobReader* reader, std::vector<std::vector<float>>* talkers)
{
    talkers->resize(reader->Count(Population::MostTalkers));
    return std::ranges::all_of(*talkers, [reader](std::vector<float>& talker) {
        talker.resize(reader->Count(Population::MostTalkerSamples));
        reader->Quantised(talker);
        return !talker.empty() && std::ranges::all_of(talker, [](float sample) { return std::abs(sample) <= MostSample; });
    });
}

} // namespace

bool Population::Fits(const AcousticModel& model) const
{
    const auto fits = [&](const Place& place) {
        return place.counts.size() == model.phrase.states.States();
    };
    return std::ranges::all_of(peaks, fits) && std::ranges::all_of(speakers, fits);
}

std::vector<uint8_t> WritePopulation(const Population& population)
{
    BlobWriter writer(BlobKind::Population);
    writer.F32(static_cast<float>(population.hours));
    WritePlaces(population.peaks, &writer);
    WritePlaces(population.speakers, &writer);
    writer.U32(static_cast<uint32_t>(population.talkers.size()));
    for (const std::vector<float>& talker : population.talkers)
    {
        writer.U32(static_cast<uint32_t>(talker.size()));
        writer.Quantised(talker);
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
    const bool valid = read.hours > 0.0 && ReadPlaces(Population::MostPeaks, &reader, &read.peaks) && !read.peaks.empty() &&
                       ReadPlaces(Population::MostSpeakers, &reader, &read.speakers) && ReadTalkers(&reader, &read.talkers);
    if (!valid || reader.Finish() != Status::Success)
    {
        return Status::MalformedBlob;
    }
    *population = std::move(read);
    return Status::Success;
}

} // namespace velox::engine

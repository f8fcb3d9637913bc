#include "engine/models/PhraseModel.h"

#include "engine/models/MixtureBlob.h"

#include <algorithm>
#include <cmath>

namespace velox::engine
{

namespace
{

constexpr uint32_t MostLayers = 16;
constexpr uint32_t MostUnits = 256;

// What cannot be learned; within these bounds all that is computed from a model stays finite.
constexpr float MostParameter = 1e4F;
constexpr float LeastDeviation = 1e-3F;
constexpr float LeastDuration = 0.01F;

bool IsBounded(std::span<const float> values)
{
    return std::all_of(values.begin(), values.end(), [](float value) { return std::abs(value) <= MostParameter; });
}

bool IsBounded(float value)
{
    return std::abs(value) <= MostParameter;
}

/// @param least  above 0
bool AreAtLeast(std::span<const float> values, float least)
{
    return std::all_of(values.begin(), values.end(), [least](float value) { return value >= least && value <= MostParameter; });
}

std::span<const float> Values(const Eigen::MatrixXf& matrix)
{
    return {matrix.data(), static_cast<std::size_t>(matrix.size())};
}

std::span<float> Values(Eigen::MatrixXf& matrix)
{
    return {matrix.data(), static_cast<std::size_t>(matrix.size())};
}

std::span<float> Values(Eigen::VectorXf& vector)
{
    return {vector.data(), static_cast<std::size_t>(vector.size())};
}

void WriteNetwork(const Network& network, BlobWriter* writer)
{
    writer->U32(static_cast<uint32_t>(network.layers.size()));
    for (const NetworkLayer& layer : network.layers)
    {
        writer->U32(static_cast<uint32_t>(layer.kernel));
        writer->U32(static_cast<uint32_t>(layer.dilation));
        writer->U32(static_cast<uint32_t>(layer.weights.rows()));
        writer->Quantised(Values(layer.weights));
        writer->F32s(Values(Eigen::MatrixXf(layer.bias)));
    }
}

/// Reads the layers; each one's inputs are the outputs of the one before.
Network ReadNetwork(BlobReader* reader)
{
    Network network;
    auto inputs = static_cast<uint32_t>(MelChannels);
    const uint32_t layers = reader->Count(MostLayers);
    for (uint32_t i = 0; i < layers; ++i)
    {
        NetworkLayer layer;
        layer.kernel = static_cast<int>(reader->Count(MostLayers));
        layer.dilation = static_cast<int>(reader->Count(MostLayers));
        const uint32_t outputs = reader->Count(MostUnits);
        layer.weights.resize(outputs, static_cast<Eigen::Index>(inputs) * layer.kernel);
        layer.bias.resize(outputs);
        reader->Quantised(Values(layer.weights));
        reader->F32s(Values(layer.bias));
        network.layers.push_back(std::move(layer));
        inputs = outputs;
    }
    return network;
}

bool NetworkFits(const Network& network, std::size_t states)
{
    for (const NetworkLayer& layer : network.layers)
    {
        const bool bounded =
            IsBounded(Values(layer.weights)) && IsBounded({layer.bias.data(), layer.bias.data() + layer.bias.size()});
        if (layer.kernel == 0 || layer.dilation == 0 || layer.weights.size() == 0 || !bounded)
        {
            return false;
        }
    }
    return !network.layers.empty() && static_cast<std::size_t>(network.layers.back().weights.rows()) == states + 1;
}

void WriteTail(const BackgroundTail& tail, BlobWriter* writer)
{
    writer->F32(tail.start);
    writer->F32(tail.slope);
}

BackgroundTail ReadTail(BlobReader* reader)
{
    const float start = reader->F32();
    return {start, reader->F32()};
}

void WriteSpeaker(const SpeakerModel& speaker, BlobWriter* writer)
{
    writer->F32(speaker.threshold);
    WriteMixtures(speaker.generic, writer);
    WriteMixtures(speaker.user, writer);
}

/// @return nothing when a mixture is not valid
std::optional<SpeakerModel> ReadSpeaker(std::size_t states, BlobReader* reader)
{
    const float threshold = reader->F32();
    auto generic = ReadMixtures(states, reader);
    auto user = generic ? ReadMixtures(states, reader) : std::nullopt;
    if (!user)
    {
        return std::nullopt;
    }
    return SpeakerModel{std::move(*generic), std::move(*user), threshold};
}

bool IsTail(const BackgroundTail& tail)
{
    return IsBounded(tail.start) && IsBounded(tail.slope) && tail.slope >= BackgroundTail::LeastSlope;
}

bool NumbersFit(PhraseModel& model)
{
    return IsBounded(model.statistics.startShape) && IsBounded(model.statistics.mean) &&
           AreAtLeast(model.statistics.deviation, LeastDeviation) && AreAtLeast(model.states.meanDuration, LeastDuration) &&
           IsBounded(model.states.logPrior) && IsTail(model.searchTail) && IsBounded(Values(model.judge.weights)) &&
           IsBounded(model.judge.bias) && IsTail(model.tail) && (!model.speaker || IsBounded(model.speaker->threshold));
}

} // namespace

std::vector<uint8_t> WritePhraseModel(const PhraseModel& model)
{
    BlobWriter writer(BlobKind::Firmware);
    writer.F32s(model.statistics.startShape);
    writer.F32s(model.statistics.mean);
    writer.F32s(model.statistics.deviation);
    writer.U32(static_cast<uint32_t>(model.states.States()));
    writer.F32s(model.states.meanDuration);
    writer.F32s(model.states.logPrior);
    WriteNetwork(model.network, &writer);
    WriteTail(model.searchTail, &writer);
    writer.F32s(Values(Eigen::MatrixXf(model.judge.weights)));
    writer.F32(model.judge.bias);
    WriteTail(model.tail, &writer);
    writer.U32(model.speaker.has_value() ? 1 : 0);
    if (model.speaker)
    {
        WriteSpeaker(*model.speaker, &writer);
    }
    return writer.Finish();
}

Status ReadPhraseModel(const uint8_t* blob, PhraseModel* model)
{
    Status header = Status::Success;
    BlobReader reader(BlobKind::Firmware, blob, &header);
    if (header != Status::Success)
    {
        return header;
    }

    PhraseModel read;
    reader.F32s(read.statistics.startShape);
    reader.F32s(read.statistics.mean);
    reader.F32s(read.statistics.deviation);
    const uint32_t states = reader.Count(StateModel::MostStates);
    read.states.meanDuration.resize(states);
    read.states.logPrior.resize(states + 1);
    reader.F32s(read.states.meanDuration);
    reader.F32s(read.states.logPrior);
    read.network = ReadNetwork(&reader);
    read.searchTail = ReadTail(&reader);
    read.judge.weights.resize(PhraseModel::PathFeatures);
    reader.F32s(Values(read.judge.weights));
    read.judge.bias = reader.F32();
    read.tail = ReadTail(&reader);
    const bool user = reader.Count(1) == 1;
    if (user)
    {
        read.speaker = ReadSpeaker(states, &reader);
    }

    const bool whole = reader.Finish() == Status::Success && states > 0 && read.speaker.has_value() == user;
    if (!whole || !NetworkFits(read.network, states) || !NumbersFit(read))
    {
        return Status::MalformedBlob;
    }
    *model = std::move(read);
    return Status::Success;
}

Status ReadNestedPhraseModel(BlobReader* reader, PhraseModel* model)
{
    const std::span<const uint8_t> bytes = reader->Nested();
    const bool whole = bytes.size() >= BlobHeader::Size && BlobLength(bytes.data()) == bytes.size();
    return whole ? ReadPhraseModel(bytes.data(), model) : Status::MalformedBlob;
}

} // namespace velox::engine

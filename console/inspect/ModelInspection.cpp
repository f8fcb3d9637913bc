#include "console/inspect/ModelInspection.h"

#include "console/text/Words.h"
#include "engine/models/AcousticModel.h"
#include "engine/sound/Cepstrum.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace velox::console
{

namespace
{

using namespace velox::engine;
using enum FieldReader::Numbers;

// The engine's bounds, beside those that its headers give.
constexpr uint32_t MostLayers = 16;
constexpr uint32_t MostUnits = 256;
constexpr uint32_t MostComponents = 256;
constexpr uint32_t MostFrames = 2000;
constexpr double FramesPerSecond = 100.0;

struct ModelKind
{
    FileKind file;
    BlobKind blob;
    std::string_view signature;
};

constexpr std::array ModelKinds{ModelKind{FileKind::AcousticModel, BlobKind::AcousticModel, "VWAM"},
                                ModelKind{FileKind::Population, BlobKind::Population, "VWZN"},
                                ModelKind{FileKind::PhraseModel, BlobKind::PhraseModel, "VWPM"},
                                ModelKind{FileKind::FirmwareModel, BlobKind::Firmware, "VWOV"}};

const ModelKind& Kind(FileKind kind)
{
    return *std::find_if(ModelKinds.begin(), ModelKinds.end(), [&](const ModelKind& own) { return own.file == kind; });
}

/// Reads a model's header. @return how many of the bytes behind it are the model's
std::size_t InspectHeader(const ModelKind& kind, FieldReader* reader)
{
    const std::size_t available = reader->Left();
    const std::span<const uint8_t> whole = reader->Ahead(available);
    const std::string_view signature = AsText(reader->Bytes("Kind", 4, FileKindName(kind.file)));
    reader->Describe(fmt::format("\"{}\"", signature));
    if (signature != kind.signature)
    {
        reader->Stop(fmt::format("Must be \"{}\".", kind.signature));
    }
    const uint32_t version = reader->U32("Version", "of the stand-in engine's format");
    if (version != BlobHeader::Version)
    {
        reader->Stop(fmt::format("{}, but the stand-in engine's version is {}: damaged, or made for another engine.", version,
                                 BlobHeader::Version));
    }
    reader->Expect(true, {});
    const uint32_t length = reader->U32("Length", "of the whole model in bytes");
    if (length < BlobHeader::Size || length > BlobHeader::LargestBlob)
    {
        reader->Stop(fmt::format("{} must lie between {} and {}.", length, BlobHeader::Size, BlobHeader::LargestBlob));
    }
    reader->Expect(length <= available, fmt::format("{}, but there are only {} bytes: cut.", length, available));
    reader->Expect(length >= available, fmt::format("{}, but there are {} bytes.", length, available));
    const uint32_t checksum = reader->Hex32("Checksum", "CRC-32 of the bytes behind it");
    if (length <= available)
    {
        const uint32_t own = Crc32(whole.subspan(BlobHeader::Size, length - BlobHeader::Size));
        reader->Expect(own == checksum, fmt::format("The bytes behind it give 0x{:08X}: some were changed.", own));
    }
    return std::min<std::size_t>(length, available) - BlobHeader::Size;
}

void InspectNetwork(uint32_t states, FieldReader* reader)
{
    const FieldReader::Section network(reader, "network");
    const uint32_t layers = reader->Count("layers", 1, MostLayers, "of the neural network");
    auto inputs = static_cast<uint32_t>(MelChannels);
    for (uint32_t i = 0; i < layers; ++i)
    {
        const FieldReader::Section layer(reader, fmt::format("layer[{}]", i));
        const uint32_t kernel = reader->Count("kernel", 1, MostLayers, "inputs that it looks at");
        reader->Count("dilation", 1, MostLayers, "frames between them");
        const uint32_t outputs = reader->Count("outputs", 1, MostUnits, "values that it gives");
        if (i + 1 == layers)
        {
            reader->Expect(outputs == states + 1,
                           fmt::format("The last layer gives {} values, but {} states and the background need {}.", outputs,
                                       states, states + 1));
        }
        reader->Quantised("weights", 1, std::size_t{outputs} * inputs * kernel, "quantised to 16 bits");
        reader->F32s("bias", outputs, "one for each output");
        inputs = outputs;
    }
}

/// @param name  whose mixtures they are
void InspectMixtures(std::string_view name, uint32_t states, FieldReader* reader)
{
    constexpr auto Dimensions = static_cast<uint32_t>(CepstralFrameSize);
    const FieldReader::Section section(reader, name);
    const uint32_t components = reader->Count("components", 1, MostComponents, "of each state's mixture");
    reader->Count("dimensions", Dimensions, Dimensions, "of a cepstral frame");
    reader->F32s("variances", std::size_t{components} * Dimensions, "shared by all states", Positive);
    const FieldReader::Group group(reader, "state[*]");
    for (uint32_t i = 0; i < states; ++i)
    {
        const FieldReader::Section state(reader, fmt::format("state[{}]", i));
        reader->F32s("weights", components, "of the mixture's components", Positive);
        reader->Quantised("means", 1, std::size_t{components} * Dimensions, "quantised to 16 bits");
    }
}

void InspectSpeaker(uint32_t states, FieldReader* reader)
{
    const FieldReader::Section section(reader, "speaker");
    reader->F32("threshold", "the user's own, folded into the score");
    InspectMixtures("generic", states, reader);
    InspectMixtures("user", states, reader);
}

/// @return the number of states
uint32_t InspectFirmwareModel(FieldReader* reader)
{
    reader->F32s("startMean", MelChannels, "where each channel's running mean starts");
    reader->F32s("mean", MelChannels, "of the features");
    reader->F32s("deviation", MelChannels, "of the features", Positive);
    const uint32_t states = reader->Count("states", 1, StateModel::MostStates, "that the phrase is cut into");
    const std::vector<float> durations = reader->F32s("meanDuration", states, "frames in each state", Positive);
    reader->Explain(fmt::format("frames in each state: the phrase lasts {:.2f} s",
                                std::accumulate(durations.begin(), durations.end(), 0.0) / FramesPerSecond));
    reader->F32s("logPrior", std::size_t{states} + 1, "of each state, and last of the background");
    InspectNetwork(states, reader);
    reader->F32("tailStart", "where the background's highest scores begin");
    reader->F32s("nearCheck.weights", NearPhraseCheck::Features, "of the near-phrase check");
    reader->F32("nearCheck.bias", "of the near-phrase check");
    reader->F32("nearCheck.cut", "least value that passes");
    const bool user = reader->Count("hasSpeaker", 0, 1, "1: a user's model, 0: anybody's") == 1;
    reader->Describe(user ? "1 (a user's model)" : "0 (for anybody)");
    if (user)
    {
        InspectSpeaker(states, reader);
    }
    return states;
}

/// A model as a whole: its header, and what `contents` reads, which must be all that the header promises.
template <typename Contents>
auto InspectWhole(FileKind kind, FieldReader* reader, Contents contents)
{
    const std::size_t contentSize = InspectHeader(Kind(kind), reader);
    const auto result = [&] {
        const FieldReader::Bounds bounds(reader, contentSize);
        const auto read = contents(reader);
        reader->ExpectEnd("The model's fields end before its length does.");
        return read;
    }();
    reader->ExpectEnd("These bytes lie behind the model's end.");
    return result;
}

/// A firmware model that stands in another model, behind its length.
/// @return the number of states
uint32_t InspectNested(std::string_view name, FieldReader* reader)
{
    const FieldReader::Section section(reader, name);
    const uint32_t size = reader->U32("Size", "of the model inside, in bytes");
    reader->Expect(size <= reader->Left(), fmt::format("{}, but only {} bytes follow.", size, reader->Left()));
    const FieldReader::Bounds bounds(reader, size);
    return InspectWhole(FileKind::FirmwareModel, reader, InspectFirmwareModel);
}

uint32_t InspectAcousticModel(FieldReader* reader)
{
    const uint32_t states = InspectNested("phrase", reader);
    InspectMixtures("generic", states, reader);
    return states;
}

uint32_t InspectPhraseModel(FieldReader* reader)
{
    return InspectNested("firmware", reader);
}

/// @return the number of peaks
uint32_t InspectPopulation(FieldReader* reader)
{
    reader->F32("hours", "of background speech", Positive);
    const uint32_t peaks = reader->Count("peaks", 1, static_cast<uint32_t>(Population::MostPeaks), "places most like the phrase");
    const FieldReader::Group group(reader, "peak[*]");
    for (uint32_t i = 0; i < peaks; ++i)
    {
        const FieldReader::Section peak(reader, fmt::format("peak[{}]", i));
        reader->F32("score", "of the decoder");
        const uint32_t states = reader->Count("states", 0, StateModel::MostStates, "of the phrase");
        const std::vector<uint32_t> counts = reader->U32s("stateFrames", states, 1, MostFrames, "frames in each state");
        const uint64_t frames = std::accumulate(counts.begin(), counts.end(), uint64_t{0});
        if (frames > MostFrames)
        {
            reader->Stop(fmt::format("{} frames together, but {} are the most.", frames, MostFrames));
        }
        reader->Quantised("features", frames, MelChannels, "of each frame, quantised to 16 bits");
    }
    return peaks;
}

} // namespace

FileKind RecogniseModel(std::span<const uint8_t> bytes)
{
    constexpr std::size_t SignatureSize = 4;
    const std::string_view signature = AsText(bytes.first(std::min(bytes.size(), SignatureSize)));
    const auto found =
        std::find_if(ModelKinds.begin(), ModelKinds.end(), [&](const ModelKind& kind) { return kind.signature == signature; });
    return found == ModelKinds.end() ? FileKind::Unknown : found->file;
}

void InspectModel(FileKind kind, FieldReader* reader)
{
    switch (kind)
    {
    case FileKind::AcousticModel:
        InspectWhole(kind, reader, InspectAcousticModel);
        break;
    case FileKind::Population:
        InspectWhole(kind, reader, InspectPopulation);
        break;
    case FileKind::PhraseModel:
        InspectWhole(kind, reader, InspectPhraseModel);
        break;
    default:
        InspectWhole(FileKind::FirmwareModel, reader, InspectFirmwareModel);
        break;
    }
}

void InspectOpaqueModel(std::string_view name, FieldReader* reader)
{
    constexpr std::size_t VersionOffset = 4;
    const std::span<const uint8_t> ahead = reader->Ahead(BlobHeader::Size);
    const bool standIn = ahead.size() == BlobHeader::Size && RecogniseModel(ahead) == FileKind::FirmwareModel &&
                         ahead[VersionOffset] == BlobHeader::Version && ahead[VersionOffset + 1] == 0;
    if (standIn)
    {
        const FieldReader::Section section(reader, name);
        InspectModel(FileKind::FirmwareModel, reader);
        return;
    }
    reader->Bytes(name, reader->Left(), "not of the stand-in engine: only its own engine understands it");
}

} // namespace velox::console

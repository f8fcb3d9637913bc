#include "console/hosting/StandInModels.h"
#include "console/inspect/Inspection.h"
#include "console/text/StatusText.h"
#include "console/text/Wording.h"
#include "engine/base/AudioFormat.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace velox::console
{

namespace
{

using engine::BlobHeader;
using engine::BlobKind;
using engine::Status;
using Form = FieldForm;

constexpr std::pair<BlobKind, FileKind> ModelKinds[]{{BlobKind::AcousticModel, FileKind::AcousticModel},
                                                     {BlobKind::Population, FileKind::Population},
                                                     {BlobKind::PhraseModel, FileKind::PhraseModel},
                                                     {BlobKind::Firmware, FileKind::FirmwareModel}};

constexpr std::size_t VersionOffset = 4;
constexpr std::size_t ChecksumOffset = 12;
constexpr FieldLayout HeaderFields[]{{"Kind", 0, 4, Form::Text, "kind of model"},
                                     {"Version", VersionOffset, 4, Form::Number, "of the stand-in engine's format"},
                                     {"Length", 8, 4, Form::Number, "of the whole model in bytes"},
                                     {"Checksum", ChecksumOffset, 4, Form::Hexadecimal, "CRC-32 of the bytes behind it"}};

/// Lets the engine read it, and keeps what can be told of it.
Status ReadFacts(FileKind kind, std::span<const uint8_t> bytes, Inspection* inspection)
{
    engine::AcousticModel acoustic;
    engine::PhraseModel& phrase = acoustic.phrase;
    engine::Population population;
    const Status status = kind == FileKind::Population      ? ReadModel(bytes, &population)
                          : kind == FileKind::AcousticModel ? ReadModel(bytes, &acoustic)
                                                            : ReadModel(bytes, &phrase);
    if (status != Status::Success)
    {
        return status;
    }
    const std::vector<float>& durations = phrase.states.meanDuration;
    const std::size_t peaks = population.peaks.size();
    std::size_t states = peaks == 0 ? durations.size() : population.peaks.front().counts.size();
    for (const engine::Population::Place& peak : population.peaks)
    {
        states = peak.counts.size() == states ? states : 0; // peaks of different phrases are of none
    }
    inspection->states = states;
    inspection->ofUser = phrase.speaker.has_value();
    inspection->facts = {{"states", states, "phrase of", Counted(states, "state")}};
    if (peaks > 0)
    {
        inspection->facts.push_back({"hours", population.hours, "background of", fmt::format("{:.2f} h", population.hours)});
        inspection->facts.push_back({"peaks", peaks, "", Counted(peaks, "peak")});
        inspection->facts.push_back({"voices", population.speakers.size(), "", Counted(population.speakers.size(), "voice")});
        return status;
    }
    const double seconds = std::accumulate(durations.begin(), durations.end(), 0.0) / engine::FramesPerSecond;
    inspection->facts.push_back({"phraseSeconds", seconds, "about", fmt::format("{:.2f} s", seconds)});
    inspection->facts.push_back({"user", inspection->ofUser, "", inspection->ofUser ? "a user's model" : "for anybody"});
    return status;
}

} // namespace

FileKind RecogniseModel(std::span<const uint8_t> bytes)
{
    const auto* const found = std::ranges::find_if(ModelKinds, [&](const auto& kind) {
        return bytes.size() >= sizeof(BlobKind) && engine::IsBlob(bytes.data(), kind.first);
    });
    return found == std::end(ModelKinds) ? FileKind::Unknown : found->second;
}

void InspectModel(std::span<const uint8_t> bytes, Inspection* inspection, std::size_t offset, std::string_view name)
{
    const std::span<const uint8_t> model = bytes.subspan(offset);
    const FileKind kind = RecogniseModel(model);
    const bool hasHeader = model.size() >= BlobHeader::Size;
    const uint32_t version = hasHeader ? firmware::ReadUnsigned<uint32_t>(model, VersionOffset) : 0;
    if (!name.empty() && (kind != FileKind::FirmwareModel || version != BlobHeader::Version))
    {
        inspection->AddBytes(std::string(name), bytes, offset, bytes.size(),
                             "not of the stand-in engine: only its own engine understands it");
        return;
    }
    const std::string prefix = name.empty() ? "" : fmt::format("{}.", name);
    if (!inspection->Add(HeaderFields, bytes, offset, prefix))
    {
        return;
    }
    const std::size_t length = engine::BlobLength(model.data());
    const std::size_t end = std::clamp(length, BlobHeader::Size, model.size());
    const uint32_t checksum = engine::Crc32(model.first(end).subspan(BlobHeader::Size));
    inspection->AddBytes(prefix + "Data", bytes, offset + BlobHeader::Size, offset + end, "only an engine understands it");
    inspection->AddBytes(prefix + "(rest)", bytes, offset + end, bytes.size(), "belongs to no field",
                         "these bytes lie behind the model's end");
    if (version != BlobHeader::Version)
    {
        inspection->Expect(false, prefix + "Version",
                           fmt::format("{}, but the stand-in engine's version is {}: damaged, or made for another engine",
                                       version, BlobHeader::Version));
        return;
    }
    const bool whole = IsWholeModel(model);
    const bool unchanged = checksum == firmware::ReadUnsigned<uint32_t>(model, ChecksumOffset);
    inspection->Expect(whole, prefix + "Length", fmt::format("{}, but there are {} bytes", length, model.size()));
    inspection->Expect(unchanged || length > model.size(), prefix + "Checksum",
                       fmt::format("the bytes behind it give 0x{:08X}: some were changed", checksum));
    if (whole && unchanged)
    {
        const Status status = ReadFacts(kind, model, inspection);
        inspection->Expect(status == Status::Success, prefix + (end > BlobHeader::Size ? "Data" : "Length"),
                           "the engine refuses it: status " + EngineStatusText(static_cast<uint32_t>(status)));
    }
}

} // namespace velox::console

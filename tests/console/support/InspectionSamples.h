#pragma once

#include "console/inspect/Inspection.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Files of every kind that inspect reads.
namespace InspectionSamples
{

using Bytes = std::vector<uint8_t>;

void PutU32(Bytes* bytes, std::size_t offset, uint32_t value);
Bytes FromText(std::string_view text);
std::string ToText(const Bytes& bytes);

/// For {00112233-4455-6677-8899-AABBCCDDEEFF}, a threshold of 0.75.
Bytes ArmingPattern(const Bytes& model);
/// For the same detector: keyword 1, counts 10000000 to 18000000, score 230 (0.90). @param extra  bytes of the firmware's own
Bytes DetectionResult(std::size_t extra = 0);
Bytes FirmwareModel();
Bytes UserModel();
Bytes AcousticModel();
Bytes Population();
Bytes PhraseModel();

struct Sample
{
    velox::console::FileKind kind;
    std::string name;
    Bytes bytes;
};

/// One of each kind, without threshold files, and an arming pattern with a foreign and with a user's model.
std::vector<Sample> All();

} // namespace InspectionSamples

#pragma once

#include "console/hosting/ConsoleLogger.h"
#include "console/hosting/DetectorOptions.h"

#include <VeloxHwKwsImpl.h>

#include <memory>
#include <span>
#include <vector>

namespace velox::console
{

/// What an operation of the library gave, and what it logged meanwhile.
struct Answer
{
    int32_t result = S_OK;
    std::vector<LoggedLine> lines;

    bool Succeeded() const
    {
        return result == S_OK;
    }

    /// @param operation  what was tried, "Arming language 1033"
    /// @throws CommandFailure that explains why it failed, if it did
    void Require(const std::string& operation) const;
};

struct CapabilitiesAnswer : Answer
{
    bool supportsUserModels = false;
    std::vector<uint32_t> keywordIds;
    std::vector<uint16_t> languages;
    uint32_t samplesPerSecond = 0;
    uint32_t channels = 0;
    uint32_t bitsPerSample = 0;
};

struct ArmingAnswer : Answer
{
    std::vector<uint8_t> pattern; ///< exactly as the library returns it
    bool usedUserModel = false;   ///< the stream held one; everybody's was used otherwise
};

struct DetectionAnswer : Answer
{
    uint32_t keywordId = 0;
    uint16_t language = 0;
    bool isUserMatch = false;
    uint64_t keywordStart = 0;
    uint64_t keywordEnd = 0;
};

/// The library's adapter, as an OEM adapter holds it; or the registered OEM adapter, as Windows holds that.
class Detector
{
public:
    /// @throws CommandFailure for a GUID that is none, a path that the process's code page cannot hold, a log file that cannot be
    ///     written, or an adapter that cannot be created
    Detector(const DetectorOptions& options, const LogOptions& log);

    CapabilitiesAnswer GetCapabilities();
    Answer Verify(uint16_t language, std::span<const float> samples);
    Answer Train(IStream* userModel, uint16_t language, std::span<const std::span<const float>> takes);
    ArmingAnswer Arm(IStream* userModel, uint16_t language);
    /// @throws CommandFailure BadInput for a block that is shorter than it says
    DetectionAnswer Parse(IStream* userModel, std::span<const uint8_t> block);

private:
    using Adapter = KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl;

    ConsoleLogger logger;
    std::unique_ptr<Adapter> adapter; // deleted through its virtual destructor
};

} // namespace velox::console

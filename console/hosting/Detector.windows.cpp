#include "console/hosting/Detector.h"

#include "console/hosting/ConfigurationXml.h"
#include "console/hosting/LogExplanation.h"
#include "console/hosting/NarrowPath.h"
#include "console/hosting/RegisteredAdapter.h"
#include "console/hosting/UserModelStream.h"
#include "console/text/CommandFailure.h"
#include "console/text/LastError.h"
#include "console/text/StatusText.h"
#include "console/text/Utf8Path.h"
#include "oemadapter/windows/ComPointer.h"

#include <mfapi.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace velox::console
{

namespace
{

constexpr uint32_t Keyword = 1;

struct TaskMemoryFree
{
    void operator()(void* memory) const
    {
        CoTaskMemFree(memory);
    }
};
template <typename Element>
using TaskMemory = std::unique_ptr<Element, TaskMemoryFree>;

/// What the library looks for, too.
bool BeginsAsUserModel(IStream* stream)
{
    constexpr std::array<uint8_t, 4> Signature{'V', 'W', 'O', 'V'};
    const std::vector<uint8_t> content = Content(stream);
    return content.size() >= Signature.size() && std::equal(Signature.begin(), Signature.end(), content.begin());
}

GUID ParseGuid(const std::string& text)
{
    GUID guid{};
    const std::wstring wide = PathFromUtf8(text).wstring();
    const std::wstring braced = wide.starts_with(L'{') ? wide : L"{" + wide + L"}";
    if (IIDFromString(braced.c_str(), &guid) != S_OK)
    {
        throw CommandFailure(ExitCode::Usage, "\"" + text + "\" is not a GUID.",
                             "Give it as {3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}.");
    }
    return guid;
}

/// @throws CommandFailure BadConfiguration for a file that the library could not load either
std::string ConfigurationPath(const std::string& file)
{
    tinyxml2::XMLDocument ignored;
    RequireConfigurationXml(PathFromUtf8(file), &ignored);
    const std::optional<std::string> narrow = NarrowPath(PathFromUtf8(file));
    if (!narrow)
    {
        throw CommandFailure(ExitCode::BadConfiguration,
                             "The library cannot open " + file + ": its code page " + std::to_string(GetACP()) +
                                 " lacks a letter of this path.",
                             "Put the configuration file into a folder with a plain name.");
    }
    return *narrow;
}

/// The library is loaded at its first call, so that doctor can tell what is missing. It stays loaded as long as the process
/// lives.
void RequireLibrary()
{
    if (LoadLibraryW(L"VeloxHwKwsImpl.dll") == nullptr)
    {
        throw CommandFailure(ExitCode::LibraryFailure,
                             "VeloxHwKwsImpl.dll, or a DLL that it needs, cannot be loaded (" + LastError() + ").",
                             "velox-kws doctor tells what is missing.");
    }
}

void CheckBuffer(HRESULT result)
{
    if (result != S_OK)
    {
        throw CommandFailure(ExitCode::LibraryFailure, "No buffer for a recording: " + ResultText(result) + ".",
                             "Is the recording very long? Is Media Foundation installed?");
    }
}

/// A recording as the library takes it: a Media Foundation buffer of 32-bit float samples, 16 kHz mono.
oemadapter::ComPointer<IMFMediaBuffer> MakeRecording(std::span<const float> samples)
{
    const auto size = static_cast<DWORD>(samples.size_bytes());
    IMFMediaBuffer* made = nullptr;
    CheckBuffer(MFCreateMemoryBuffer(size, &made));
    oemadapter::ComPointer<IMFMediaBuffer> buffer(made);
    BYTE* bytes = nullptr;
    CheckBuffer(buffer->Lock(&bytes, nullptr, nullptr));
    std::memcpy(bytes, samples.data(), size);
    CheckBuffer(buffer->Unlock());
    CheckBuffer(buffer->SetCurrentLength(size));
    return buffer;
}

template <typename Element>
std::vector<Element> TakeBuffer(Element* buffer, uint32_t count)
{
    const TaskMemory<Element> owned(buffer);
    return buffer == nullptr ? std::vector<Element>() : std::vector<Element>(buffer, buffer + count);
}

uint32_t Attribute(IMFMediaType* format, const GUID& name)
{
    UINT32 value = 0;
    format->GetUINT32(name, &value);
    return value;
}

} // namespace

void Answer::Require(const std::string& operation) const
{
    if (!Succeeded())
    {
        throw ExplainFailure(operation, result, lines);
    }
}

Detector::Detector(const DetectorOptions& options, const LogOptions& log) : logger(log)
{
    const GUID id = ParseGuid(options.detectorId);
    const std::string configuration = ConfigurationPath(options.configuration);
    if (options.through == ThroughAdapter)
    {
        adapter = std::make_unique<RegisteredAdapter>(id, &logger);
        return;
    }
    RequireLibrary();
    logger.Begin();
    adapter.reset(KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl(&logger, configuration,
                                                                                         "velox-kws " VELOX_VERSION, id)
                      .release());
    logger.TakeLines();
}

CapabilitiesAnswer Detector::GetCapabilities()
{
    CapabilitiesAnswer answer;
    int32_t supportsUserModels = 0;
    uint32_t* keywordIds = nullptr;
    uint32_t keywordCount = 0;
    uint16_t* languages = nullptr;
    uint32_t languageCount = 0;
    IMFMediaType* format = nullptr;
    logger.Begin();
    answer.result =
        adapter->GetCapabilities(&supportsUserModels, &keywordIds, &keywordCount, &languages, &languageCount, &format);
    answer.lines = logger.TakeLines();
    answer.supportsUserModels = supportsUserModels != 0;
    answer.keywordIds = TakeBuffer(keywordIds, keywordCount);
    answer.languages = TakeBuffer(languages, languages == nullptr ? 0 : languageCount);
    if (const oemadapter::ComPointer<IMFMediaType> owned(format); owned)
    {
        answer.samplesPerSecond = Attribute(format, MF_MT_AUDIO_SAMPLES_PER_SECOND);
        answer.channels = Attribute(format, MF_MT_AUDIO_NUM_CHANNELS);
        answer.bitsPerSample = Attribute(format, MF_MT_AUDIO_BITS_PER_SAMPLE);
    }
    return answer;
}

Answer Detector::Verify(uint16_t language, std::span<const float> samples)
{
    const oemadapter::ComPointer<IMFMediaBuffer> recording = MakeRecording(samples);
    logger.Begin();
    const HRESULT result = adapter->VerifyUserKeyword(nullptr, Keyword, language, 0, recording.get());
    return {result, logger.TakeLines()};
}

Answer Detector::Train(IStream* userModel, uint16_t language, std::span<const std::span<const float>> takes)
{
    std::vector<oemadapter::ComPointer<IMFMediaBuffer>> owned;
    std::vector<IMFMediaBuffer*> recordings;
    for (const std::span<const float> take : takes)
    {
        owned.push_back(MakeRecording(take));
        recordings.push_back(owned.back().get());
    }
    const std::vector<int32_t> keywordEnds(takes.size(), 0); // not known
    logger.Begin();
    const HRESULT result = adapter->ComputeAndAddUserModelData(userModel, {Keyword, language}, keywordEnds.data(),
                                                               recordings.data(), static_cast<uint32_t>(recordings.size()));
    return {result, logger.TakeLines()};
}

ArmingAnswer Detector::Arm(IStream* userModel, uint16_t language)
{
    const KeywordSelector selector{Keyword, language};
    uint8_t* block = nullptr;
    ArmingAnswer answer;
    logger.Begin();
    answer.result = adapter->BuildArmingPatternData(userModel, &selector, 1, &block);
    answer.lines = logger.TakeLines();
    uint32_t length = 0; // the block's first field
    if (answer.Succeeded())
    {
        std::memcpy(&length, block, sizeof(length));
        answer.usedUserModel = BeginsAsUserModel(userModel);
    }
    answer.pattern = TakeBuffer(block, length);
    return answer;
}

DetectionAnswer Detector::Parse(IStream* userModel, std::span<const uint8_t> block)
{
    uint32_t length = 0;
    std::memcpy(&length, block.data(), std::min(sizeof(length), block.size()));
    if (block.size() < sizeof(length) || block.size() < length)
    {
        throw CommandFailure(ExitCode::BadInput, "The result block is shorter than it says.", "Save the block again, whole.");
    }
    DetectionAnswer answer;
    BOOL isUserMatch = FALSE;
    logger.Begin();
    answer.result =
        adapter->ParseDetectionResultData(userModel, reinterpret_cast<const DetectionResult*>(block.data()), &answer.keywordId,
                                          &answer.language, &isUserMatch, &answer.keywordStart, &answer.keywordEnd);
    answer.isUserMatch = isUserMatch != FALSE;
    answer.lines = logger.TakeLines();
    return answer;
}

} // namespace velox::console

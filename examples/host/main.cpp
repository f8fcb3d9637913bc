// velox-host: a host of the library, as small as a useful one can be. It does what an OEM adapter does, in the same order: it
// asks for the capabilities, verifies a user's takes, trains a user model from those that are good, arms the firmware with it,
// and parses what the firmware reports.
//
//   velox-host CONFIGURATION LANGUAGE RESULT-BLOCK TAKE.wav...
//
// LANGUAGE is a LANGID, for example 1033. The user's model goes to user.model in the current folder, what arms the firmware to
// arming.pattern; RESULT-BLOCK holds what the firmware reported. The keyword engine, VeloxWovSDK.dll, lies beside the program.
// The exit code is 0 when all of it was done, 1 when something failed, 2 for a wrong command line.
#include "Wav.h"

#include <VeloxHwKwsImpl.h>

#include <mfapi.h>
#include <shlwapi.h>

#include <cstdarg>
#include <cstdio>
#include <memory>

namespace
{

using Adapter = KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl;

constexpr uint32_t Keyword = 1; // the one that there is

/// The detector that this host serves. It stands in every arming pattern, and the firmware repeats it in what it reports.
constexpr GUID DetectorId{0x6F1D3A52, 0x8C47, 0x4E0B, {0x9A, 0x61, 0x2D, 0x5B, 0x7C, 0x90, 0xE3, 0x14}};

// Ownership: blocks that the library hands out are freed with CoTaskMemFree, COM objects released.
struct TaskMemory
{
    void operator()(void* block) const
    {
        CoTaskMemFree(block);
    }
};
struct Release
{
    void operator()(IUnknown* object) const
    {
        object->Release();
    }
};
using Stream = std::unique_ptr<IStream, Release>;
using Buffer = std::unique_ptr<IMFMediaBuffer, Release>;

std::string Name(HRESULT result)
{
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08X", static_cast<unsigned int>(result));
    return text;
}

void Check(const char* step, HRESULT result)
{
    std::printf("%s: %s\n", step, Name(result).c_str());
    if (result != S_OK)
    {
        throw std::runtime_error(std::string(step) + " failed; the log above tells why, when docs/registry.md is followed");
    }
}

/// The host's logger. The library calls it from the thread that called the library, and never deletes it. Which lines are shown
/// and where they go is the logger's business: the library only says what the registry asks for.
class Logger : public IVeloxKeywordDetectorLogger
{
public:
    void Log(uint32_t level, uint32_t, const std::string& message) override
    {
        problems += level <= VeloxLogLevel::Failure ? 1 : 0;
        if (level <= threshold)
        {
            std::fprintf(stderr, "  | %u %s\n", static_cast<unsigned int>(level), message.c_str());
        }
    }
    void LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status) override
    {
        Log(level, source, message + " Status: " + Name(status));
    }
    void LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code) override
    {
        Log(level, source, message + " Engine status: " + std::to_string(code));
    }
    void LogFormat(uint32_t level, uint32_t source, const char* format, ...) override
    {
        char text[1024]; // longer lines are cut
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof(text), format, arguments);
        va_end(arguments);
        Log(level, source, text);
    }
    void SetLevel(uint32_t level) override
    {
        threshold = level;
    }
    void SetLogToFile(bool) override
    {
        // This host's log goes to its standard error output only.
    }

    int problems = 0;

private:
    uint32_t threshold = VeloxLogLevel::Warning; // until the library has read the registry
};

/// The place of a user's model. A real host is handed a stream for each user; here it lies on a file.
Stream OpenStream(const wchar_t* file, bool anew)
{
    IStream* stream = nullptr;
    const DWORD mode = STGM_READWRITE | (anew ? STGM_CREATE : 0);
    if (SHCreateStreamOnFileEx(file, mode, FILE_ATTRIBUTE_NORMAL, anew, nullptr, &stream) != S_OK)
    {
        throw std::runtime_error("The user's stream cannot be opened");
    }
    return Stream(stream);
}

/// A recording as the library takes it: 32-bit float samples in a Media Foundation buffer, which it locks only during a call.
Buffer MakeBuffer(const std::vector<float>& samples)
{
    const auto size = static_cast<DWORD>(samples.size() * sizeof(float));
    IMFMediaBuffer* made = nullptr;
    if (MFCreateMemoryBuffer(size, &made) != S_OK)
    {
        throw std::runtime_error("There is no memory for a recording");
    }
    Buffer buffer(made);
    BYTE* bytes = nullptr;
    buffer->Lock(&bytes, nullptr, nullptr);
    std::memcpy(bytes, samples.data(), size);
    buffer->Unlock();
    buffer->SetCurrentLength(size);
    return buffer;
}

/// Step 1: which languages can be detected, and how the audio has to come.
void ShowCapabilities(Adapter& adapter)
{
    int32_t supportsUserModels = 0;
    uint32_t *keywords = nullptr, keywordCount = 0, languageCount = 0;
    uint16_t* languages = nullptr;
    IMFMediaType* format = nullptr;
    Check("GetCapabilities",
          adapter.GetCapabilities(&supportsUserModels, &keywords, &keywordCount, &languages, &languageCount, &format));
    const std::unique_ptr<uint32_t, TaskMemory> ownKeywords(keywords);
    const std::unique_ptr<uint16_t, TaskMemory> ownLanguages(languages);
    const std::unique_ptr<IMFMediaType, Release> ownFormat(format);

    UINT32 rate = 0;
    format->GetUINT32(MF_MT_AUDIO_SAMPLES_PER_SECOND, &rate);
    std::printf("  %u samples per second; user models: %d; languages:", rate, supportsUserModels);
    for (uint32_t i = 0; i < languageCount; ++i)
    {
        std::printf(" %u", languages[i]);
    }
    std::printf("\n");
}

/// Step 2: the takes that hold the key phrase. The others would be asked for again.
std::vector<Buffer> AcceptedTakes(Adapter& adapter, const Logger& logger, uint16_t language,
                                  const std::vector<std::string>& files)
{
    constexpr int32_t EndNotKnown = 0; // else the byte at which the phrase ends
    std::vector<Buffer> accepted;
    for (const std::string& file : files)
    {
        Buffer take = MakeBuffer(ReadWav(file));
        const int problemsBefore = logger.problems;
        const HRESULT result = adapter.VerifyUserKeyword(nullptr, Keyword, language, EndNotKnown, take.get());
        // E_FAIL has two meanings, which only the log tells apart: without an error line the phrase was not found.
        const bool notFound = result == E_FAIL && logger.problems == problemsBefore;
        std::printf("VerifyUserKeyword %s: %s%s\n", file.c_str(), Name(result).c_str(), notFound ? ", not the key phrase" : "");
        if (result == S_OK)
        {
            accepted.push_back(std::move(take));
        }
        else if (!notFound)
        {
            throw std::runtime_error("Verifying failed; the log above tells why, when docs/registry.md is followed");
        }
    }
    return accepted;
}

/// Step 3: the user's model replaces what the stream holds.
void Train(Adapter& adapter, uint16_t language, const std::vector<Buffer>& takes)
{
    std::vector<IMFMediaBuffer*> recordings;
    for (const Buffer& take : takes)
    {
        recordings.push_back(take.get());
    }
    const std::vector<int32_t> ends(recordings.size(), 0);
    const Stream stream = OpenStream(L"user.model", true);
    Check("ComputeAndAddUserModelData",
          adapter.ComputeAndAddUserModelData(stream.get(), {Keyword, language}, ends.data(), recordings.data(),
                                             static_cast<uint32_t>(recordings.size())));
}

/// Step 4: what arms the firmware, with the user's model or, where the stream holds none, the language's predefined one.
void Arm(Adapter& adapter, IStream* userModel, uint16_t language)
{
    const KeywordSelector selector{Keyword, language};
    uint8_t* block = nullptr;
    Check("BuildArmingPatternData", adapter.BuildArmingPatternData(userModel, &selector, 1, &block));
    const std::unique_ptr<uint8_t, TaskMemory> pattern(block);
    uint32_t length = 0; // the block's first field
    std::memcpy(&length, block, sizeof(length));
    std::ofstream("arming.pattern", std::ios::binary).write(reinterpret_cast<const char*>(block), length);
    std::printf("  arming.pattern: %u bytes, for the audio driver\n", static_cast<unsigned int>(length));
}

/// Step 5: what the firmware reported. Language and user match are those of this adapter's last arming.
void Parse(Adapter& adapter, IStream* userModel, const std::vector<uint8_t>& block)
{
    // The library relies on the length that stands in the block: compare it with what there is.
    uint32_t length = 0;
    std::memcpy(&length, block.data(), block.size() < sizeof(length) ? 0 : sizeof(length));
    if (block.size() < sizeof(length) || length > block.size())
    {
        throw std::runtime_error("The result block is shorter than it says");
    }
    uint32_t keyword = 0;
    uint16_t language = 0;
    BOOL isUser = FALSE;
    uint64_t start = 0, end = 0;
    Check("ParseDetectionResultData",
          adapter.ParseDetectionResultData(userModel, reinterpret_cast<const DetectionResult*>(block.data()), &keyword, &language,
                                           &isUser, &start, &end));
    std::printf("  keyword %u, language %u, user's model %d, from %llu to %llu\n", static_cast<unsigned int>(keyword), language,
                isUser, static_cast<unsigned long long>(start), static_cast<unsigned long long>(end));
}

void Run(const std::string& configuration, uint16_t language, const std::string& resultBlock,
         const std::vector<std::string>& takes)
{
    Logger logger; // outlives the adapter
    // The factory's own deleter would free the adapter's storage without its destructor: take it out, and delete it as it should
    // be.
    const std::unique_ptr<Adapter> adapter(KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl(
                                               &logger, configuration, "velox-host 1.0", DetectorId)
                                               .release());
    ShowCapabilities(*adapter);
    const std::vector<Buffer> accepted = AcceptedTakes(*adapter, logger, language, takes);
    if (accepted.empty())
    {
        throw std::runtime_error("No take holds the key phrase");
    }
    Train(*adapter, language, accepted);
    const Stream userModel = OpenStream(L"user.model", false);
    Arm(*adapter, userModel.get(), language);
    Parse(*adapter, userModel.get(), ReadFileBytes(resultBlock));
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 5)
    {
        std::fputs("usage: velox-host CONFIGURATION LANGUAGE RESULT-BLOCK TAKE.wav...\n", stderr);
        return 2;
    }
    try
    {
        std::setvbuf(stdout, nullptr, _IONBF, 0); // in step with the log
        Run(arguments[1], static_cast<uint16_t>(std::stoul(arguments[2])), arguments[3], {arguments + 4, arguments + count});
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "velox-host: %s\n", error.what());
        return 1;
    }
}

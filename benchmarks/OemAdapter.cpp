// What the OEM adapter adds to the library: each operation through the adapter, beside the same operation of the library alone.
#include "oemadapter/adapter/OemAdapter.h"

#include "benchmarks/Measurement.h"
#include "benchmarks/SilentLogger.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/windows/TaskMemory.h"
#include "tests/oemadapter/support/Environment.native.h"
#include "tests/oemadapter/support/PcmTake.h"
#include "tests/support/ScriptedRecording.h"
#include "tests/support/ScriptedStream.h"
#include "tests/support/TestConfiguration.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <vector>

namespace
{

using velox::oemadapter::ComPointer;
using velox::oemadapter::TaskMemory;

constexpr double Goal = 1.05;
constexpr uint16_t Language = 1033;
constexpr std::size_t SamplesPerSecond = 16000;
constexpr std::size_t ModelSize = 128 * 1024;

void Require(bool done, const char* what)
{
    if (!done)
    {
        throw std::runtime_error(what);
    }
}

/// The library alone and behind the adapter, with the same configuration, and what both are called with.
struct Chain
{
    Chain()
    {
        // The adapter looks for its configuration file beside its module.
        const std::string beside = configuration.Directory() + "\\VeloxKwsConfig.xml";
        std::filesystem::copy_file(configuration.Path(), beside);
        const std::string module = configuration.Directory() + "\\VeloxOemAdapter.dll";
        modulePath = std::u16string(module.begin(), module.end());
        void* made = nullptr;
        Require(velox::oemadapter::OemAdapter::Create(detector, IID_IKeywordDetectorOemAdapter, &made) == S_OK, "no adapter");
        first.reset(static_cast<IKeywordDetectorOemAdapter*>(made));
        Require(first->QueryInterface(IID_IEventDetectorOemAdapter, &made) == S_OK, "no second generation");
        second.reset(static_cast<IEventDetectorOemAdapter*>(made));
        const velox::oemadapter::AdapterSettings settings;
        selector.Event.EventId = settings.eventId;
        selector.Event.ProviderId = settings.eventProviderId;
        selector.LangId = Language;
        result.Size = sizeof(result);
        result.PatternType = velox::oemadapter::DetectorId;
        result.KeywordIdFw = 1;
    }

    TestConfiguration configuration;
    SilentLogger logger;
    VeloxKeywordDetectorAdapterImpl library{&logger, configuration.Path(), "bench", velox::oemadapter::DetectorId};
    velox::oemadapter::Detector detector;
    ComPointer<IKeywordDetectorOemAdapter> first;
    ComPointer<IEventDetectorOemAdapter> second;
    DETECTIONEVENTSELECTOR selector{};

    ScriptedRecording recording{std::vector<float>(2 * SamplesPerSecond, 0.25F)};
    PcmTake pcm{std::vector<int16_t>(2 * SamplesPerSecond, 8192)};
    ScriptedStream stream{"VWOV" + std::string(ModelSize - 4, 'm')};
    DetectionResult result{};
};

// Each operation of the library, and of both generations.

void Announce(Chain& chain)
{
    int32_t userModels = 0;
    uint32_t* keywords = nullptr;
    uint32_t keywordCount = 0;
    uint16_t* languages = nullptr;
    uint32_t languageCount = 0;
    IMFMediaType* format = nullptr;
    Require(chain.library.GetCapabilities(&userModels, &keywords, &keywordCount, &languages, &languageCount, &format) == S_OK,
            "the library announces nothing");
    const TaskMemory<uint32_t> ownedKeywords(keywords);
    const TaskMemory<uint16_t> ownedLanguages(languages);
    const ComPointer<IMFMediaType> ownedFormat(format);
}

void AnnounceFirst(Chain& chain)
{
    BOOL userModels = FALSE;
    KEYWORDID* keywords = nullptr;
    ULONG keywordCount = 0;
    LANGID* languages = nullptr;
    ULONG languageCount = 0;
    IMFMediaType* format = nullptr;
    Require(chain.first->GetCapabilities(&userModels, &keywords, &keywordCount, &languages, &languageCount, &format) == S_OK,
            "the adapter announces nothing");
    const TaskMemory<KEYWORDID> ownedKeywords(keywords);
    const TaskMemory<LANGID> ownedLanguages(languages);
    const ComPointer<IMFMediaType> ownedFormat(format);
}

void Verify(Chain& chain)
{
    Require(chain.library.VerifyUserKeyword(&chain.stream, 1, Language, 0, &chain.recording) == E_FAIL, "not verified");
}

void VerifyFirst(Chain& chain)
{
    Require(FAILED(chain.first->VerifyUserKeyword(&chain.stream, KwVoiceAssistant, Language, 0, &chain.recording)),
            "not verified");
}

void VerifySecond(Chain& chain)
{
    Require(FAILED(chain.second->VerifyUserEventData(nullptr, chain.pcm.Format(), chain.selector, -1)), "not verified");
}

void Build(Chain& chain)
{
    chain.stream.calls.clear();
    const KeywordSelector selector{1, Language};
    uint8_t* block = nullptr;
    Require(chain.library.BuildArmingPatternData(&chain.stream, &selector, 1, &block) == S_OK, "nothing is built");
    const TaskMemory<uint8_t> owned(block);
}

void BuildFirst(Chain& chain)
{
    chain.stream.calls.clear();
    KEYWORDSELECTOR selector{KwVoiceAssistant, Language};
    SOUNDDETECTOR_PATTERNHEADER* block = nullptr;
    Require(chain.first->BuildArmingPatternData(&chain.stream, &selector, 1, &block) == S_OK, "nothing is built");
    const TaskMemory<SOUNDDETECTOR_PATTERNHEADER> owned(block);
}

void BuildSecond(Chain& chain)
{
    chain.stream.calls.clear();
    SOUNDDETECTOR_PATTERNHEADER* block = nullptr;
    Require(chain.second->BuildArmingPatternData(&chain.stream, &chain.selector, 1, &block) == S_OK, "nothing is built");
    const TaskMemory<SOUNDDETECTOR_PATTERNHEADER> owned(block);
}

void Parse(Chain& chain)
{
    uint32_t keyword = 0;
    uint16_t language = 0;
    BOOL isUserMatch = FALSE;
    uint64_t start = 0;
    uint64_t end = 0;
    Require(chain.library.ParseDetectionResultData(&chain.stream, &chain.result, &keyword, &language, &isUserMatch, &start,
                                                   &end) == S_OK,
            "nothing is parsed");
}

void ParseFirst(Chain& chain)
{
    KEYWORDID keyword = KwInvalid;
    LANGID language = 0;
    BOOL isUserMatch = FALSE;
    ULONG64 start = 0;
    ULONG64 end = 0;
    Require(chain.first->ParseDetectionResultData(&chain.stream, reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(&chain.result),
                                                  &keyword, &language, &isUserMatch, &start, &end) == S_OK,
            "nothing is parsed");
}

void ParseSecond(Chain& chain)
{
    SOUNDDETECTOR_PATTERNHEADER* context = nullptr;
    DETECTIONEVENTSELECTOR selector{};
    EVENTACTION action{};
    ULONG64 start = 0;
    ULONG64 end = 0;
    WCHAR* text = nullptr;
    Require(chain.second->ParseDetectionResultData(&chain.stream, reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(&chain.result),
                                                   &context, &selector, &action, &start, &end, &text) == S_OK,
            "nothing is parsed");
    const TaskMemory<WCHAR> owned(text);
}

} // namespace

void RegisterOemAdapter()
{
    const auto chain = std::make_shared<Chain>();
    // What is parsed was armed, through each.
    Build(*chain);
    BuildFirst(*chain);
    const struct
    {
        const char* name;
        void (*work)(Chain&);
        void (*floor)(Chain&);
    } operations[] = {{"GetCapabilities, first generation", AnnounceFirst, Announce},
                      {"Verify 2 s, first generation", VerifyFirst, Verify},
                      {"Verify 2 s, second generation", VerifySecond, Verify},
                      {"Build, 128 kB user model, first generation", BuildFirst, Build},
                      {"Build, 128 kB user model, second generation", BuildSecond, Build},
                      {"Parse, first generation", ParseFirst, Parse},
                      {"Parse, second generation", ParseSecond, Parse}};
    for (const auto& operation : operations)
    {
        Register({std::string("Adapter: ") + operation.name, Goal, [chain, operation] { operation.work(*chain); },
                  [chain, operation] {
                      operation.floor(*chain);
                  }});
    }
}

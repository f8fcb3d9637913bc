#include "tests/oemadapter/support/Conversation.h"

#include "oemadapter/windows/TaskMemory.h"
#include "tests/oemadapter/support/OemAdapterOutputs.h"
#include "tests/oemadapter/support/PcmTake.h"
#include "tests/support/MediaBuffer.h"

namespace
{

using velox::oemadapter::TaskMemory;

constexpr LANGID Language = 1033;
constexpr std::size_t TakeLength = 1600;

std::vector<int16_t> Loud()
{
    return std::vector<int16_t>(TakeLength, 31000);
}

std::vector<int16_t> Quiet()
{
    return std::vector<int16_t>(TakeLength, 30);
}

MediaBuffer FloatTake(const std::vector<int16_t>& samples)
{
    std::vector<float> floats;
    for (const int16_t sample : samples)
    {
        floats.push_back(static_cast<float>(sample) / 32768.0F);
    }
    return MakeMediaBuffer(floats);
}

/// Detector, threshold and model of a pattern, without what counts utterances.
std::string TakePattern(SOUNDDETECTOR_PATTERNHEADER* pattern)
{
    if (pattern == nullptr)
    {
        return "none";
    }
    const TaskMemory<SOUNDDETECTOR_PATTERNHEADER> owned(pattern);
    const auto* bytes = reinterpret_cast<const char*>(pattern);
    const std::string model(bytes + 44, bytes + pattern->Size);
    return std::string(bytes + 4, bytes + 40) + model.substr(0, model.find(", made from"));
}

} // namespace

void SpeakWithFirst(IKeywordDetectorOemAdapter* adapter, IStream* stream, Conversation* conversation)
{
    std::vector<HRESULT>& results = conversation->results;
    KeywordCapabilities capabilities;
    results.push_back(capabilities.Get(adapter));
    conversation->answers.push_back(capabilities.Text());

    const MediaBuffer loud = FloatTake(Loud());
    const MediaBuffer quiet = FloatTake(Quiet());
    for (const auto& take : {loud.get(), quiet.get()})
    {
        results.push_back(adapter->VerifyUserKeyword(stream, KwVoiceAssistant, Language, 0, take));
    }
    IMFMediaBuffer* takes[] = {loud.get(), loud.get()};
    LONG ends[] = {0, -1};
    results.push_back(adapter->ComputeAndAddUserModelData(stream, {KwVoiceAssistant, Language}, ends, takes, 2));

    KEYWORDSELECTOR selector{KwVoiceAssistant, Language};
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    results.push_back(adapter->BuildArmingPatternData(stream, &selector, 1, &pattern));
    conversation->answers.push_back(TakePattern(pattern));

    std::vector<uint8_t> block = ResultBlock();
    KeywordDetection detection;
    results.push_back(detection.Parse(adapter, stream, reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(block.data())));
    conversation->answers.push_back(detection.Text());
}

void SpeakWithSecond(IEventDetectorOemAdapter* adapter, IStream* stream, Conversation* conversation)
{
    std::vector<HRESULT>& results = conversation->results;
    EventCapabilities capabilities;
    results.push_back(capabilities.Get(adapter));
    conversation->answers.push_back(capabilities.Text());

    DETECTIONEVENT* events = nullptr;
    ULONG count = 0;
    results.push_back(adapter->GetCapabilitiesForLanguage(Language, &events, &count));
    DETECTIONEVENTSELECTOR selector{};
    selector.Event = *events;
    selector.LangId = Language;
    CoTaskMemFree(events);

    PcmTake loud(Loud());
    PcmTake quiet(Quiet());
    for (PcmTake* take : {&loud, &quiet})
    {
        results.push_back(adapter->VerifyUserEventData(nullptr, take->Format(), selector, -1));
    }
    WAVEFORMATEX* takes[] = {loud.Format(), loud.Format()};
    LONG ends[] = {0, -1};
    results.push_back(adapter->ComputeAndAddUserModelData(stream, selector, ends, takes, 2));

    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    results.push_back(adapter->BuildArmingPatternData(stream, &selector, 1, &pattern));
    conversation->answers.push_back(TakePattern(pattern));

    std::vector<uint8_t> block = ResultBlock();
    EventDetection detection;
    results.push_back(detection.Parse(adapter, stream, reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(block.data())));
    conversation->answers.push_back(detection.Text());
    adapter->ReportOSDetectionResult(detection.selector, detection.action);
}

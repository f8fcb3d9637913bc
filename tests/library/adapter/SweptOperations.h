#pragma once

#include "DetectionResult.h"
#include "tests/library/adapter/Lines.h"
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/CapabilitiesOutputs.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedRecording.h"
#include "tests/support/ScriptedStream.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <utility>

/// The adapter's operations as the sweep of faults runs them, each with its inputs, its outputs and what may become of them.
namespace Swept
{

using Adapter = VeloxKeywordDetectorAdapterImpl;

/// Longer than what a string object holds itself: the wrapper, whose destructor is never run, loses it.
inline constexpr std::string_view Constraints = "memory=160k;channels=1;latency=20ms;profile=low-power";
inline constexpr std::string_view Model =
    "VWOV lpe data, of a length that no other block of a run has, so that its loss tells itself";
inline constexpr std::string_view UserModel =
    "VWOV user's model, of a length that no other block of a run has, either, for the same reason";
inline constexpr std::string_view FormerContent =
    "a former content that is longer than the model which replaces it, so that a stream that was only cut is seen as such";

/// What a caller sees of one run, and what the adapter then remembers of its armings.
struct Outcome
{
    std::optional<HRESULT> result; ///< none: a std::bad_alloc reached the caller
    std::string outputs;
    Lines lines;
    std::vector<std::string> engineCalls;
    bool userModelArmed;
    uint16_t armedLanguageId;

    bool Logged(const LogLine& line) const
    {
        return std::count(lines.begin(), lines.end(), line) > 0;
    }
};

/// A result of an operation's table and the line that it ends with.
using Ending = std::pair<HRESULT, LogLine>;

/// Amounts of heap one of which a run has lost.
using Losses = std::array<std::size_t, 2>;

/// Heap that a block of this size takes.
inline std::size_t HeapCost(std::size_t size)
{
    const std::size_t before = AllocatedBytes();
    const std::unique_ptr<uint8_t[]> block(new uint8_t[size]);
    return AllocatedBytes() - before;
}

// Each operation with its inputs and outputs. Run() is the call itself, which may be made again; Outputs() shows what it wrote;
// Check() compares that with the operation's table; KeptLosses() lists what the run may have lost.

/// The endings of an operation that needs the engine, up to the wrapper's.
inline std::vector<Ending> RequestEndings(const std::string& operation)
{
    using namespace RequestLines;
    return {{E_FAIL, LanguageNotChecked(operation)},
            {E_FAIL, ParametersNotCreated(operation)},
            {E_FAIL, NotGathered(operation, "enrollment parameters")},
            {E_FAIL, NotGathered(operation, "detection parameters")},
            {E_FAIL, NotGathered(operation, "platform constraints")},
            {E_FAIL, WrapperNotCreated(operation)}};
}

/// An engine session may stay open only when it never became open for the wrapper, whose guard begins there.
inline bool OpeningWasCutShort(const Outcome& outcome)
{
    return !outcome.Logged(WrapperLines::OpenExit);
}

/// The text that a wrapper loses. Before the engine was told the text, there may have been no wrapper yet; one that could not be
/// read for want of memory is empty.
inline Losses WrapperLosses(const Outcome& outcome)
{
    const std::size_t text = HeapCost(Constraints.size() + 1);
    const std::string call = "VWoVSetAttribute(19, \"" + std::string(Constraints) + "\")";
    return {std::count(outcome.engineCalls.begin(), outcome.engineCalls.end(), call) > 0 ? text : 0, text};
}

class Verification
{
public:
    Verification()
    {
        ScriptedEngine& engine = GetScriptedEngine();
        // The score vector grows at the second frame; the key phrase is found at the first flush step.
        engine.steps = {EngineStep{}, EngineStep{{0.0F, 0.25F}}, EngineStep{{0.5F, 0.875F}}};
        engine.flushSteps = 2;
    }

    HRESULT Run(Adapter& adapter)
    {
        return adapter.VerifyUserKeyword(nullptr, 1, 1033, 0, &recording);
    }

    static std::string Outputs()
    {
        return {};
    }

    static std::vector<Ending> Endings()
    {
        std::vector<Ending> endings = RequestEndings(RequestLines::Verifying);
        endings.push_back({S_OK, RequestLines::Detected});
        endings.push_back({E_FAIL, RequestLines::NotDetected});
        endings.push_back({E_FAIL, RequestLines::NotVerified});
        return endings;
    }

    void Check(const Outcome& outcome, const Adapter& /*adapter*/) const
    {
        EXPECT_EQ(recording.OpenLocks(), 0);
        EXPECT_FALSE(recording.unlockedWithoutLock);
        // A session whose opening failed is closed; one whose opening an exception ended is not.
        const bool mayStayOpen = !outcome.result && OpeningWasCutShort(outcome);
        EXPECT_LE(GetScriptedEngine().openSessions.size(), mayStayOpen ? 1U : 0U);
    }

    static Losses KeptLosses(const Outcome& outcome)
    {
        return WrapperLosses(outcome);
    }

private:
    ScriptedRecording recording{std::vector<float>(200)};
};

class Computation
{
public:
    Computation()
    {
        GetScriptedEngine().lpeData = Model;
    }

    HRESULT Run(Adapter& adapter)
    {
        IMFMediaBuffer* recordings[]{&first, &second};
        const int32_t positions[]{0, 400};
        return adapter.ComputeAndAddUserModelData(&stream, {1, 1033}, positions, recordings, 2);
    }

    std::string Outputs() const
    {
        return stream.Content();
    }

    static std::vector<Ending> Endings()
    {
        std::vector<Ending> endings = RequestEndings(RequestLines::Computing);
        endings.push_back({S_OK, RequestLines::ComputeExit});
        endings.push_back({E_FAIL, RequestLines::NotTrained(E_FAIL)});
        endings.push_back({E_FAIL, RequestLines::NotTrained(E_OUTOFMEMORY)});
        endings.push_back({E_FAIL, RequestLines::NotWritten(STG_E_MEDIUMFULL)});
        return endings;
    }

    void Check(const Outcome& outcome, const Adapter& /*adapter*/) const
    {
        for (const ScriptedRecording* recording : {&first, &second})
        {
            EXPECT_EQ(recording->OpenLocks(), 0);
            EXPECT_FALSE(recording->unlockedWithoutLock);
        }
        // Kept: the training does not release a session that could not be opened.
        EXPECT_LE(GetScriptedEngine().openSessions.size(), OpeningWasCutShort(outcome) ? 1U : 0U);
        if (outcome.result == S_OK)
        {
            EXPECT_EQ(outcome.outputs, Model);
        }
        else
        {
            EXPECT_THAT(outcome.outputs, testing::AnyOf(FormerContent, FormerContent.substr(0, Model.size()), Model));
        }
    }

    static Losses KeptLosses(const Outcome& outcome)
    {
        Losses losses = WrapperLosses(outcome);
        if (outcome.result && outcome.Logged(RequestLines::NotWritten(STG_E_MEDIUMFULL)))
        {
            for (std::size_t& loss : losses)
            {
                loss += HeapCost(Model.size());
            }
        }
        return losses;
    }

private:
    ScriptedStream stream{FormerContent};
    ScriptedRecording first{std::vector<float>(200)};
    ScriptedRecording second{std::vector<float>(300)};
};

/// Arming with the user model of the stream, or without one.
template <bool WithUserModel>
class Arming
{
public:
    Arming() = default;
    Arming(const Arming&) = delete;
    Arming& operator=(const Arming&) = delete;
    ~Arming()
    {
        CoTaskMemFree(block);
    }

    HRESULT Run(Adapter& adapter)
    {
        CoTaskMemFree(std::exchange(block, nullptr));
        const KeywordSelector selector{1, 1033};
        return adapter.BuildArmingPatternData(&stream, &selector, 1, &block);
    }

    std::string Outputs() const
    {
        uint32_t size = 0;
        if (block != nullptr)
        {
            std::memcpy(&size, block, sizeof(size));
        }
        return {block, block + size};
    }

    static std::vector<Ending> Endings()
    {
        using namespace ArmingLines;
        return {{S_OK, Success},
                {E_FAIL, LanguageNotChecked},
                {E_FAIL, PredefinedModelFailed},
                {E_FAIL, UserModelFailed},
                {STG_E_MEDIUMFULL, UserModelFailed},
                {E_FAIL, ParametersFailed},
                {E_OUTOFMEMORY, WithoutMemory}};
    }

    void Check(const Outcome& outcome, const Adapter& adapter) const
    {
        if (outcome.result != S_OK)
        {
            // An exception of the last line comes when the pattern has been handed over.
            EXPECT_TRUE(outcome.outputs.empty() || (!outcome.result && IsPattern(outcome.outputs, adapter)));
            return;
        }
        EXPECT_TRUE(IsPattern(outcome.outputs, adapter));
        EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), 1033);
    }

    static Losses KeptLosses(const Outcome& outcome)
    {
        // The model's block of a failed read.
        const bool readFailed = std::any_of(outcome.lines.begin(), outcome.lines.end(), [](const LogLine& line) {
            return line.text.starts_with("[GetUserModelFromIStream] Reading user model data failed.");
        });
        const std::size_t loss = outcome.result && readFailed ? HeapCost(UserModel.size()) : 0;
        return {loss, loss};
    }

private:
    /// A whole pattern with the model that the adapter says it armed.
    static bool IsPattern(const std::string& bytes, const Adapter& adapter)
    {
        const bool userModel = PrivateAccess::UserModelArmed(adapter);
        const std::string_view model = userModel ? UserModel : std::string_view("firmware 1033");
        std::array<uint32_t, 11> head{};
        if (bytes.size() != sizeof(head) + model.size() || (userModel && !WithUserModel))
        {
            return false;
        }
        std::memcpy(head.data(), bytes.data(), sizeof(head));
        // A number that cannot be extracted for want of memory reads as 0, like one that is not there.
        const bool knownThreshold = head[6] == (userModel ? 128U : 192U) || head[6] == 0;
        return head[0] == bytes.size() && std::memcmp(&head[1], &DetectorId, sizeof(GUID)) == 0 && head[5] == 0xAA550001 &&
               knownThreshold && head[7] == 0x7FFFFFFF && head[8] == 0 && head[9] == 0 && head[10] == model.size() &&
               bytes.substr(sizeof(head)) == model;
    }

    ScriptedStream stream{WithUserModel ? UserModel : std::string_view()};
    uint8_t* block = nullptr;
};

class Parsing
{
public:
    HRESULT Run(Adapter& adapter)
    {
        const DetectionResult block{.Size = DetectionResultMinSize,
                                    .PatternType = DetectorId,
                                    .KeywordStart = 1000,
                                    .KeywordEnd = 2000,
                                    .KeywordIdFw = 1,
                                    .KpdScore = {1, 2}};
        return adapter.ParseDetectionResultData(&stream, &block, &keywordId, &languageId, &isUserMatch, &keywordStart,
                                                &keywordEnd);
    }

    std::string Outputs() const
    {
        std::string text;
        for (const uint64_t value : Values())
        {
            text += std::to_string(value) + " ";
        }
        return text;
    }

    static std::vector<Ending> Endings()
    {
        return {{S_OK, ParsingLines::Success}, {E_FAIL, ParsingLines::ParametersFailed}};
    }

    void Check(const Outcome& outcome, const Adapter& /*adapter*/) const
    {
        constexpr std::array<uint64_t, 5> Parsed{1, 1040, 1, 1000, 2000};
        const std::array<uint64_t, 5> values = Values();
        for (std::size_t i = 0; i < values.size(); ++i)
        {
            // Before an exception some may have been written.
            EXPECT_TRUE((outcome.result != E_FAIL && values[i] == Parsed[i]) ||
                        (outcome.result != S_OK && values[i] == Untouched))
                << "output " << i << " is " << values[i];
        }
        EXPECT_TRUE(stream.calls.empty());
    }

    static Losses KeptLosses(const Outcome& /*outcome*/)
    {
        return {};
    }

private:
    static constexpr uint16_t Untouched = 4711;

    std::array<uint64_t, 5> Values() const
    {
        return {keywordId, languageId, static_cast<uint64_t>(isUserMatch), keywordStart, keywordEnd};
    }

    ScriptedStream stream{UserModel};
    uint32_t keywordId = Untouched;
    uint16_t languageId = Untouched;
    BOOL isUserMatch = Untouched;
    uint64_t keywordStart = Untouched;
    uint64_t keywordEnd = Untouched;
};

class CapabilitiesQuery
{
public:
    HRESULT Run(Adapter& adapter)
    {
        freedKeywordIds = nullptr;
        const HRESULT result = outputs.emplace().Get(adapter);
        if (result == E_OUTOFMEMORY && outputs->KeywordIdsWritten() && outputs->LanguageIdsWritten() &&
            outputs->languageIds == nullptr)
        {
            // Kept: the keyword buffer was freed and its address stays.
            freedKeywordIds = std::exchange(outputs->keywordIds, nullptr);
        }
        return result;
    }

    std::string Outputs() const
    {
        std::string text = std::to_string(outputs->supportsUserModels) + ", " + std::to_string(outputs->keywordCount) + ":";
        if (outputs->KeywordIdsWritten())
        {
            text += freedKeywordIds != nullptr       ? " freed"
                    : outputs->keywordIds == nullptr ? " null"
                                                     : " " + std::to_string(outputs->keywordIds[0]);
        }
        text += ", " + std::to_string(outputs->languageCount) + ":";
        if (outputs->LanguageIdsWritten())
        {
            text += outputs->languageIds == nullptr ? " null" : "";
            for (uint32_t i = 0; outputs->languageIds != nullptr && i < outputs->languageCount && i < MostLanguages; ++i)
            {
                // The buffer is filled only when the query went on to the format.
                text += outputs->supportsUserModels == 1 ? " " + std::to_string(outputs->languageIds[i]) : " ?";
            }
        }
        return text + (outputs->audioFormat != nullptr ? ", format" : "");
    }

    static std::vector<Ending> Endings()
    {
        using namespace CapabilityLines;
        return {{S_OK, Success},
                {E_OUTOFMEMORY, Success},
                {MF_E_INVALIDMEDIATYPE, Success},
                {E_OUTOFMEMORY, NoKeywordBuffer},
                {E_FAIL, NoCount},
                {E_OUTOFMEMORY, NoLanguageBuffer},
                {E_FAIL, NoIds}};
    }

    void Check(const Outcome& outcome, const Adapter& /*adapter*/) const
    {
        if (!outcome.result)
        {
            return;
        }
        const std::map<std::string, std::string> outputsOfLine{
            {CapabilityLines::NoKeywordBuffer.text, "4711, 4711: null, 4711:"},
            {CapabilityLines::NoCount.text, "4711, 1: 1, 4711:"},
            {CapabilityLines::NoLanguageBuffer.text, "4711, 1: freed, 4711: null"},
            {CapabilityLines::NoIds.text, "4711, 1: 1, 2: ? ?"},
            {CapabilityLines::Success.text, "1, 1: 1, 2: 1033 1040"}};
        EXPECT_EQ(outcome.outputs, outputsOfLine.at(outcome.lines.back().text) + (outcome.result == S_OK ? ", format" : ""));
    }

    static Losses KeptLosses(const Outcome& /*outcome*/)
    {
        return {};
    }

private:
    static constexpr uint32_t MostLanguages = 2;

    std::optional<CapabilitiesOutputs> outputs;
    const uint32_t* freedKeywordIds = nullptr;
};

} // namespace Swept

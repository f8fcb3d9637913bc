#include "tests/support/VerificationModel.h"

#include <array>
#include <cstdio>

namespace
{

constexpr uint32_t NothingLeft = 0xFFFFFFFF;

class Model
{
public:
    explicit Model(const VerificationScript& verificationScript) : script(verificationScript)
    {
        outcome.detected = script.detectedBefore;
    }

    VerificationOutcome Run()
    {
        outcome.succeeded = SetModelAndFeed();
        Call("VWoVDestroySession", "1");
        if (outcome.succeeded)
        {
            Add(Log(4, 1, "[CloseSession] Entry."));
            Call("VWoVDestroySession", "1");
            Add(Log(4, 1, "[VerifyKeyword] Exit."));
        }
        return outcome;
    }

private:
    void Add(const LogLine& line)
    {
        outcome.events.push_back(line);
    }

    template <typename... Arguments>
    void AddFormat(const char* format, Arguments... arguments)
    {
        std::array<char, 512> text{};
        std::snprintf(text.data(), text.size(), format, arguments...);
        Add(LogFormat(5, 1, text.data()));
    }

    /// @return the status that the script has for the call, 0 when it has none
    uint32_t Call(const std::string& function, const std::string& arguments)
    {
        outcome.events.emplace_back(function + "(" + arguments + ")");
        const auto answer = script.answers.find({function, ++calls[function]});
        return answer == script.answers.end() ? 0 : answer->second;
    }

    const EngineStep& Step() const
    {
        return 0 < stepsTaken && stepsTaken <= script.steps.size() ? script.steps[stepsTaken - 1] : script.laterStep;
    }

    float Threshold() const
    {
        return static_cast<float>(script.detection.preDefinedKpdSensitivity) / 256.0F;
    }

    bool SetModelAndFeed()
    {
        if (const uint32_t status = Call("VWoVSetModel", "1, \"keyphras\""); status != 0)
        {
            Add(LogWithCode(1, 1, "[VerifyKeyword] Failed to set keyphrase model.", status));
            return false;
        }
        if (const uint32_t status = Feed(); status != 0)
        {
            Add(LogWithCode(1, 1, "[VerifyKeyword] Failed to set feed recording to WoV SDK.", status));
            return false;
        }
        return true;
    }

    uint32_t Feed()
    {
        Add(Log(4, 1, "[FeedRecording] Entry."));
        Add(Log(5, 1, "[FeedRecording] Getting Scores size"));
        if (const uint32_t status = Call("VWoVGetScores", "1, null, 0"); status != 0)
        {
            Add(LogWithCode(2, 0, "[FeedRecording] Failed to get the scores array size.", status));
            return status;
        }
        room = script.scoreCount;
        outcome.events.emplace_back("Lock");
        Add(Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: " + std::to_string(script.samples)));
        FeedFrames();
        Add(Log(5, 1, "[FeedRecording] Ended feeding frames"));
        Flush();
        if (outcome.detected)
        {
            Judge();
        }
        outcome.events.emplace_back("Unlock");
        Add(Log(4, 1, "[FeedRecording] Exit."));
        return 0;
    }

    void FeedFrames()
    {
        const int64_t keywordEnd = script.keywordEndBytePos / 2;
        int64_t fed = 0;
        for (int64_t start = 0;; start += script.frameSize)
        {
            ++fed;
            if (const uint32_t status = Call("VWoVFeedAudioFrame", "1, " + std::to_string(script.frameSize)); status != 0)
            {
                Add(LogWithCode(2, 1, "[FeedRecording] Failed to feed frames.", status));
                return;
            }
            ++stepsTaken;
            const uint32_t scores = Scores();
            if (scores != 0 && scores != NothingLeft)
            {
                Add(LogWithCode(3, 1, "[FeedRecording] Failed to get scores.", scores));
            }
            const uint32_t quality = Quality();
            if (quality != 0)
            {
                Add(LogWithCode(3, 1, "[FeedRecording] Failed to get VAD quality.", quality));
            }
            if (quality == 0 && outcome.detected)
            {
                return;
            }
            const bool oneEmptyFrameTooMany = script.frameSize == 0 && fed > script.samples;
            if (start + script.frameSize > script.samples || (keywordEnd > 0 && 2 * start >= keywordEnd) || oneEmptyFrameTooMany)
            {
                return;
            }
        }
    }

    void Flush()
    {
        for (;;)
        {
            uint32_t status = Call("VWoVFlush", "1");
            if (status == 0 && flushStepsTaken == script.flushSteps)
            {
                status = NothingLeft;
            }
            if (status == 0)
            {
                // A scripted refusal is not a step.
                ++flushStepsTaken;
                ++stepsTaken;
                if (const uint32_t scores = Scores(); scores != 0)
                {
                    Add(LogWithCode(3, 1, "[FeedRecording] Failed to get scores.", scores));
                }
                status = Quality();
                if (status != 0)
                {
                    Add(LogWithCode(3, 1, "[FeedRecording] Failed to get VAD quality.", status));
                }
            }
            if (status == 0 && outcome.detected)
            {
                return;
            }
            if (status != 0)
            {
                if (status != NothingLeft)
                {
                    Add(LogWithCode(3, 1, "[FeedRecording] Flush failed.", status));
                }
                return;
            }
        }
    }

    /// One reading of the scores into a buffer with room for `room` of them.
    uint32_t ReadScores(std::vector<float>* scores)
    {
        const uint32_t status = Call("VWoVGetScores", room == 0 ? "1, null, 0" : "1, buffer, " + std::to_string(room));
        if (status != 0)
        {
            return status;
        }
        if (room == 0)
        {
            // The engine only reports how many there are.
            return 0;
        }
        if (Step().scores.size() > room)
        {
            required = static_cast<uint32_t>(Step().scores.size());
            return 2;
        }
        *scores = Step().scores;
        return 0;
    }

    uint32_t Scores()
    {
        std::vector<float> scores;
        required = room;
        uint32_t status = ReadScores(&scores);
        if (status == 2)
        {
            room = required;
            status = ReadScores(&scores);
        }
        for (std::size_t i = 0; status == 0 && i < scores.size(); ++i)
        {
            const bool before = outcome.detected;
            if (!before && scores[i] > Threshold())
            {
                outcome.detected = true;
                const auto samples = static_cast<float>(static_cast<uint64_t>(script.frameSize) * scoreCalls);
                AddFormat("[GetScores] Key phrase detected, KPD score(%f), time (%f).", static_cast<double>(scores[i]),
                          static_cast<double>(samples / 16000.0F));
            }
            if (before && Threshold() > scores[i])
            {
                outcome.detected = false;
            }
            if (scores[i] > best)
            {
                best = scores[i];
            }
            if (outcome.detected)
            {
                break;
            }
        }
        ++scoreCalls;
        return status;
    }

    uint32_t Quality()
    {
        uint32_t status = Call("VWoVGetIntOutput", "1, 2, buffer, 1");
        const int32_t flag = status == 0 ? Step().vadFlag : 0;
        if (status != 0)
        {
            Add(LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", status));
        }
        if (flag != 0)
        {
            return status;
        }
        status = Call("VWoVGetIntOutput", "1, 6, buffer, 1");
        if (status != 0)
        {
            Add(LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", status));
        }
        qualitySum += status == 0 ? Step().vadQuality : 0;
        ++qualityCount;
        return status;
    }

    void Judge()
    {
        AddFormat("[FeedRecording] Best score(%f), predefined KPD float threshold (%f).", static_cast<double>(best),
                  static_cast<double>(Threshold()));
        const int64_t quality = qualityCount == 0 ? 0 : qualitySum / qualityCount;
        AddFormat("[FeedRecording] Recording quality: %lu.", static_cast<unsigned long>(quality));
        // As unsigned numbers a negative quality is above every threshold, and a negative threshold above 2^31.
        const int64_t threshold = script.detection.qualityThreshold < 0
                                      ? int64_t{script.detection.qualityThreshold} + (int64_t{1} << 32)
                                      : int64_t{script.detection.qualityThreshold};
        if (quality >= 0 && quality < threshold)
        {
            Add(Log(4, 1, "[FeedRecording] Recording quality is too low. Returning false as a detection result."));
            outcome.detected = false;
        }
    }

    const VerificationScript& script;
    VerificationOutcome outcome;
    std::map<std::string, uint64_t> calls;
    std::size_t stepsTaken = 0;
    uint32_t flushStepsTaken = 0;
    uint32_t room = 0;
    uint32_t required = 0;
    uint64_t scoreCalls = 0;
    float best = -3.4028235e38F;
    int64_t qualitySum = 0;
    int64_t qualityCount = 0;
};

} // namespace

VerificationOutcome PredictVerification(const VerificationScript& script)
{
    return Model(script).Run();
}

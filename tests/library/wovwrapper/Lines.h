#pragma once

#include "tests/support/LogLine.h"

#include <cstdint>
#include <string>

/// What the wrapper logs and calls, with engine calls and the recording's in their order. A recording is scored by one score, the
/// frames have 150 samples, the flush has no step.
namespace WrapperLines
{

/// A call with the session's handle as its first argument.
inline LogLine Call(const std::string& function, uint32_t session, const std::string& arguments = "")
{
    return function + "(" + std::to_string(session) + (arguments.empty() ? "" : ", ") + arguments + ")";
}

inline LogLine Destroy(uint32_t session)
{
    return Call("VWoVDestroySession", session);
}

/// The question for the frame size, in a session of its own.
inline Lines Probe(uint32_t session)
{
    return Lines("VWoVInitSession()") + Call("VWoVGetIntOutput", session, "5, null, 0") +
           Call("VWoVGetIntOutput", session, "5, buffer, 1") + Destroy(session);
}

/// What the engine is told before a session. A model is known by its first bytes.
struct Settings
{
    std::string level = "3";
    std::string acousticModel = "acoustic";
    std::string znormPopulation = "znorm po";
    std::string keyphraseModel = "keyphras";
    std::string constraints = "memory=160k";
};

inline const LogLine OpenEntry = Log(4, 1, "[InitializeSession] Entry.");
inline const LogLine OpenExit = Log(4, 1, "[InitializeSession] Exit. Status: 0");
inline const LogLine CloseEntry = Log(4, 1, "[CloseSession] Entry.");

/// @param step of "set attribute - firmware constraints", "initialize session" and the like
inline LogLine NotOpened(const std::string& step, uint32_t status)
{
    return LogWithCode(1, 1, "[InitializeSession] Failed to " + step + ".", status);
}

/// A call of the opening that may be refused, and what its line calls it.
struct OpeningStep
{
    const char* function;
    uint64_t call;
    const char* name;
    bool opened; ///< the session has been created before it
};

inline constexpr OpeningStep OpeningSteps[]{{"VWoVSetAttribute", 1, "set attribute - firmware constraints", false},
                                            {"VWoVSetAttribute", 2, "set attribute - log level", false},
                                            {"VWoVSetBinAttribute", 1, "set attribute - acoustic model", false},
                                            {"VWoVSetBinAttribute", 2, "set attribute - ZNorm population", false},
                                            {"VWoVInitSession", 1, "initialize session", false},
                                            {"VWoVInit", 1, "initialize VAD", true},
                                            {"VWoVInit", 2, "initialize KPD", true}};

inline Lines Opening(uint32_t session, const Settings& settings = {})
{
    return OpenEntry + Lines{"VWoVSetAttribute(19, \"" + settings.constraints + "\")",
                             "VWoVSetAttribute(13, \"" + settings.level + "\")",
                             "VWoVSetBinAttribute(1, \"" + settings.acousticModel + "\")",
                             "VWoVSetBinAttribute(2, \"" + settings.znormPopulation + "\")",
                             "VWoVInitSession()",
                             Call("VWoVInit", session, "2"),
                             Call("VWoVInit", session, "4"),
                             OpenExit};
}

inline Lines Closing(uint32_t session)
{
    return CloseEntry + Destroy(session);
}

inline const LogLine FeedEntry = Log(4, 1, "[FeedRecording] Entry.");
inline const LogLine AllFed = Log(5, 1, "[FeedRecording] Ended feeding frames");
inline const LogLine FeedExit = Log(4, 1, "[FeedRecording] Exit.");
inline const Lines Unlocked = Lines("Unlock") + FeedExit;
inline const LogLine QualityTooLow =
    Log(4, 1, "[FeedRecording] Recording quality is too low. Returning false as a detection result.");

inline LogLine NotLocked(int32_t status)
{
    return Log(2, 0, "[FeedRecording] Failed to lock recording. Status = " + std::to_string(status));
}

inline LogLine NotUnlocked(int32_t status)
{
    return LogWithStatus(2, 1, "[FeedRecording] Failed to unlock recording.", status);
}

inline LogLine NotFed(uint32_t status)
{
    return LogWithCode(2, 1, "[FeedRecording] Failed to feed frames.", status);
}

inline LogLine NotFlushed(uint32_t status)
{
    return LogWithCode(3, 1, "[FeedRecording] Flush failed.", status);
}

inline LogLine NoScores(uint32_t status)
{
    return LogWithCode(3, 1, "[FeedRecording] Failed to get scores.", status);
}

inline LogLine NoScoreCount(uint32_t status)
{
    return LogWithCode(2, 0, "[FeedRecording] Failed to get the scores array size.", status);
}

inline LogLine NoVadOutput(uint32_t status)
{
    return LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", status);
}

inline Lines NoQuality(uint32_t status)
{
    return NoVadOutput(status) + LogWithCode(3, 1, "[FeedRecording] Failed to get VAD quality.", status);
}

/// The entry of a recording that is scored, up to the question for the number of scores.
inline Lines Scoring(uint32_t session)
{
    return FeedEntry + Log(5, 1, "[FeedRecording] Getting Scores size") + Call("VWoVGetScores", session, "null, 0");
}

inline LogLine ToFeed(uint64_t samples)
{
    return Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: " + std::to_string(samples));
}

inline LogLine Frame(uint32_t session)
{
    return Call("VWoVFeedAudioFrame", session, "150");
}

inline LogLine Flush(uint32_t session)
{
    return Call("VWoVFlush", session);
}

/// The look at the scores after a frame or a flush step, with what is logged between scores and quality.
inline Lines Look(uint32_t session, const Lines& between = {})
{
    return Call("VWoVGetScores", session, "buffer, 1") + between + Call("VWoVGetIntOutput", session, "2, buffer, 1") +
           Call("VWoVGetIntOutput", session, "6, buffer, 1");
}

/// @param score, seconds as printf writes them
inline LogLine Detected(const std::string& score, const std::string& seconds)
{
    return LogFormat(5, 1, "[GetScores] Key phrase detected, KPD score(" + score + "), time (" + seconds + ").");
}

/// @param score, threshold as printf writes them
inline Lines Judged(const std::string& score, const std::string& threshold, const std::string& quality)
{
    return LogFormat(5, 1, "[FeedRecording] Best score(" + score + "), predefined KPD float threshold (" + threshold + ").") +
           LogFormat(5, 1, "[FeedRecording] Recording quality: " + quality + ".");
}

/// What a verification feeds and calls, and how it is judged.
struct Verdict
{
    std::string score, threshold, seconds = "0.000000";
};

inline const LogLine VerifyEntry = Log(4, 1, "[VerifyKeyword] Entry.");
inline const LogLine VerifyExit = Log(4, 1, "[VerifyKeyword] Exit.");

/// A verification's start, with the setting of the model.
inline Lines Verifying(uint32_t session, const Settings& settings = {})
{
    return VerifyEntry + Opening(session, settings) + Call("VWoVSetModel", session, "\"" + settings.keyphraseModel + "\"");
}

/// A whole verification that detects in the last of the frames that it feeds.
inline Lines Detection(uint32_t session, const Settings& settings, uint64_t samples, int frames, const Verdict& verdict)
{
    Lines lines = Verifying(session, settings) + Scoring(session) + "Lock" + ToFeed(samples);
    for (int i = 1; i < frames; ++i)
    {
        lines = lines + Frame(session) + Look(session);
    }
    return lines + Frame(session) + Look(session, Detected(verdict.score, verdict.seconds)) + AllFed + Flush(session) +
           Judged(verdict.score, verdict.threshold, "100") + Unlocked + Destroy(session) + Closing(session) + VerifyExit;
}

inline const LogLine RecordingsEntry = Log(4, 1, "[FeedRecordingsForEnrollment] Entry.");
inline const LogLine RecordingsExit = Log(4, 1, "[FeedRecordingsForEnrollment] Exit.");
inline const std::string UtteranceRefused = "[FeedRecordingsForEnrollment] Failed to start utterance enrollment.";
inline const std::string UtteranceNotFinalized = "VWoVFinalizeEnrollmentUtterance failed!";

inline LogLine Begun(std::size_t number)
{
    return Log(5, 1, "[FeedRecordingsForEnrollment] Recording " + std::to_string(number));
}

inline LogLine Sent(std::size_t number)
{
    return Log(5, 1, "[FeedRecordingsForEnrollment] Recording " + std::to_string(number) + " was sent");
}

/// Recordings of these lengths, each an utterance.
inline Lines Utterances(uint32_t session, const std::vector<uint64_t>& lengths)
{
    Lines lines = RecordingsEntry;
    for (std::size_t i = 0; i < lengths.size(); ++i)
    {
        lines = lines + Begun(i + 1) + Call("VWoVStartEnrollmentUtterance", session, "0") + FeedEntry + "Lock" +
                ToFeed(lengths[i]) + Lines(lengths[i] / 150 + 1, Frame(session)) + AllFed + Flush(session) + Unlocked +
                Call("VWoVFinalizeEnrollmentUtterance", session) + Sent(i + 1);
    }
    return lines + RecordingsExit;
}

inline const LogLine FeedingBegins = Log(4, 1, "[TrainModel] Starting feeding data to WovSDK");
inline const LogLine EnrollmentFinalized = LogWithCode(5, 1, "[TrainModel] Enrollment finalized.", 0);
inline const LogLine TrainingWithoutMemory = Log(2, 1, "[TrainModel] Failed to allocate memory for model data.");

inline LogLine TrainExit(uint32_t status)
{
    return LogWithCode(4, 1, "[TrainModel] Exit.", status);
}

/// @param step of "initialize session", "start enrollment", "feed recordings" and the like
inline LogLine NotTrained(const std::string& step, uint32_t status)
{
    return LogWithCode(1, 1, "[TrainModel] Failed to " + step + ".", status);
}

inline LogLine PhraseModelSize(uint32_t size)
{
    return LogFormat(5, 1, "[TrainModel] Phrase model size: " + std::to_string(size) + ".");
}

inline LogLine LpeDataSize(uint32_t size)
{
    return LogFormat(5, 1, "[TrainModel] Created LPE data size: " + std::to_string(size) + ".");
}

/// A whole training from recordings of these lengths; the scripted engine's phrase model has 32 bytes, its LPE data 13.
inline Lines Training(uint32_t session, const std::vector<uint64_t>& lengths, const Settings& settings = {})
{
    return Opening(session, settings) + Call("VWoVStartEnrollment", session) + FeedingBegins + Utterances(session, lengths) +
           Call("VWoVFinalizeEnrollment", session) + EnrollmentFinalized + PhraseModelSize(32) +
           Call("VWoVSetModel", session, "\"phrase\"") + Call("VWoVPrepareLpeData", session, "null, 0") + LpeDataSize(13) +
           Call("VWoVPrepareLpeData", session, "buffer, 13") + Closing(session) + TrainExit(0) + Destroy(session);
}

} // namespace WrapperLines

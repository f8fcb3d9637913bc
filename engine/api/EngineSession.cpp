#include "engine/api/EngineSession.h"

#include "engine/enrollment/TakeReview.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace velox::engine
{

namespace
{

constexpr uint32_t VadComponent = 2;
constexpr uint32_t KpdComponent = 4;
constexpr float SampleStep = 1.0F / 32768.0F;
constexpr int32_t Q8 = 256;

/// The blob that an enrollment ends with: the user's firmware model behind the header of a phrase model.
std::vector<uint8_t> WrapPhraseModel(const std::vector<uint8_t>& firmware)
{
    BlobWriter writer(BlobKind::PhraseModel);
    writer.Nested(firmware);
    return writer.Finish();
}

/// The firmware model inside a phrase model; empty when there is none.
std::span<const uint8_t> UnwrapPhraseModel(const uint8_t* blob, Status* status)
{
    BlobReader reader(BlobKind::PhraseModel, blob, status);
    const std::span<const uint8_t> nested = reader.Nested();
    if (*status == Status::Success &&
        (reader.Finish() != Status::Success || nested.size() < BlobHeader::Size || BlobLength(nested.data()) != nested.size()))
    {
        *status = Status::MalformedBlob;
    }
    return nested;
}

} // namespace

EngineSession::EngineSession(EngineAttributes snapshot) : attributes(std::move(snapshot))
{
    takeSamples.reserve(MostTakeSeconds * SampleRate);
    takeFrames.reserve(MostTakeSeconds * SampleRate / FrameSize);
    attributes.Log(LogLevel::Information, "session opened" + std::string(attributes.acousticModel ? "" : ", no acoustic model") +
                                              (attributes.population ? "" : ", no population"));
}

Status EngineSession::InitComponent(uint32_t component)
{
    if (component == VadComponent)
    {
        vadReady = true;
        return Status::Success;
    }
    if (component != KpdComponent)
    {
        return Status::UnknownIdentifier;
    }
    if (!vadReady)
    {
        return Status::OrderViolated;
    }
    kpdReady = true;
    return Status::Success;
}

Status EngineSession::SetModel(const uint8_t* blob)
{
    if (!kpdReady || mode == Mode::Enrolling || mode == Mode::InUtterance)
    {
        return Status::OrderViolated;
    }
    Status status = Status::Success;
    const uint8_t* firmware = blob;
    if (IsBlob(blob, BlobKind::PhraseModel))
    {
        firmware = UnwrapPhraseModel(blob, &status).data();
    }
    auto read = std::make_unique<PhraseModel>();
    if (status == Status::Success)
    {
        status = ReadPhraseModel(firmware, read.get());
    }
    if (status != Status::Success)
    {
        attributes.LogOutcome(LogLevel::Error, "key-phrase model", status);
        return status;
    }
    firmwareModel.assign(firmware, firmware + BlobLength(firmware));
    detector.reset();
    model = std::move(read);
    StartListening();
    attributes.Log(LogLevel::Information, std::string("listening for ") + (model->speaker ? "a user's" : "everybody's") +
                                              " phrase of " + std::to_string(model->states.States()) + " states, " +
                                              std::to_string(firmwareModel.size()) + " bytes");
    return Status::Success;
}

void EngineSession::StartListening()
{
    detector = std::make_unique<PhraseDetector>(*model);
    mode = Mode::Listening;
    score = ScoreScale::Least;
    bestScore = ScoreScale::Least;
    scoreReady = false;
    sinceDetection = 0;
    bestDetection.reset();
    flushed = 0;
    judged = false;
    takeSamples.clear();
    takeFrames.clear();
}

/// What an enrollment needs.
Status EngineSession::CheckModels() const
{
    if (attributes.acousticModel == nullptr || attributes.population == nullptr)
    {
        return Status::NoModel;
    }
    return attributes.population->Fits(*attributes.acousticModel) ? Status::Success : Status::ModelsDisagree;
}

Status EngineSession::StartEnrollment()
{
    if (!kpdReady || mode != Mode::Idle)
    {
        return Status::OrderViolated;
    }
    const Status status = CheckModels();
    attributes.LogOutcome(LogLevel::Error, "enrollment started", status);
    if (status != Status::Success)
    {
        return status;
    }
    enrollment = std::make_unique<Enrollment>(*attributes.acousticModel, *attributes.population);
    mode = Mode::Enrolling;
    return Status::Success;
}

Status EngineSession::StartUtterance()
{
    if (mode != Mode::Enrolling)
    {
        return Status::OrderViolated;
    }
    takeSamples.clear();
    mode = Mode::InUtterance;
    return Status::Success;
}

Status EngineSession::FeedFrame(const int16_t* samples, uint32_t sampleCount)
{
    if (mode != Mode::Listening && mode != Mode::InUtterance)
    {
        return Status::OrderViolated;
    }
    if (sampleCount != FrameSize)
    {
        return Status::WrongFrameSize;
    }
    std::array<float, FrameSize> converted;
    std::transform(samples, samples + FrameSize, converted.begin(),
                   [](int16_t sample) { return static_cast<float>(sample) * SampleStep; });
    if (takeSamples.size() + FrameSize <= takeSamples.capacity())
    {
        takeSamples.insert(takeSamples.end(), converted.begin(), converted.end());
    }
    if (mode == Mode::Listening)
    {
        flushed = 0;
        judged = false;
        HearFrame(converted.data());
        if (const AnalysedFrame* frame = detector->LastFrame(); frame != nullptr && takeFrames.size() < takeFrames.capacity())
        {
            takeFrames.push_back(frame->logMel);
        }
    }
    return Status::Success;
}

void EngineSession::HearFrame(const float* samples)
{
    ++sinceDetection;
    if (sinceDetection > HeldFrames)
    {
        score = ScoreScale::Least;
    }
    if (const std::optional<Detection> detection = detector->Push(samples); detection && detection->score > score)
    {
        score = detection->score;
        sinceDetection = 0;
        if (!bestDetection || detection->score > bestDetection->score)
        {
            bestDetection = detection;
        }
    }
    scoreReady = detector->DecodedFrames() > 0;
    bestScore = std::max(bestScore, detector->FirstStageScore().value_or(ScoreScale::Least));
}

Status EngineSession::Flush()
{
    if (mode == Mode::InUtterance)
    {
        return Status::NothingLeft;
    }
    if (mode != Mode::Listening)
    {
        return Status::OrderViolated;
    }
    if (flushed >= detector->FlushFrames())
    {
        if (!judged)
        {
            JudgeTake();
            judged = true;
        }
        return Status::NothingLeft;
    }
    constexpr std::array<float, FrameSize> Silence{};
    HearFrame(Silence.data());
    scoreReady = true; // once the flush is under way, callers take a missing score for a failure
    ++flushed;
    return Status::Success;
}

void EngineSession::JudgeTake()
{
    const float phraseScore = bestDetection ? bestDetection->score : ScoreScale::Least;
    const TakeJudgement judgement = velox::engine::JudgeTake(takeFrames, takeSamples, model.get(), phraseScore);
    takeStatus = judgement.status;
    placeStart = bestDetection ? bestDetection->startSample : judgement.speechBegin;
    placeEnd = bestDetection ? bestDetection->endSample : judgement.speechEnd;
    attributes.LogOutcome(LogLevel::Warning,
                          "take heard, score " + std::to_string(phraseScore) + " in samples " + std::to_string(placeStart) +
                              " to " + std::to_string(placeEnd),
                          takeStatus);
}

Status EngineSession::FinalizeUtterance()
{
    if (mode != Mode::InUtterance)
    {
        return Status::OrderViolated;
    }
    mode = Mode::Enrolling;
    takeStatus = enrollment->AddTake(takeSamples);
    attributes.LogOutcome(LogLevel::Warning, "take of the enrollment", takeStatus);
    if (enrollment->LastTakeIsNear())
    {
        attributes.Log(LogLevel::Warning, "take of the enrollment: it may be another phrase, since a part of it does not fit");
    }
    // Callers give an enrollment up when its last take is refused; the others make a model wherever it stands.
    return enrollment->HasEnough() ? Status::Success : takeStatus;
}

Status EngineSession::FinalizeEnrollment(uint8_t** phraseModel)
{
    if (mode != Mode::Enrolling)
    {
        return Status::OrderViolated;
    }
    const Status status = MakePhraseModel();
    std::string what = "enrollment of " + std::to_string(enrollment->TakeCount()) + " takes";
    if (const auto odd = status == Status::TakesDisagree ? enrollment->OddTake() : std::nullopt)
    {
        what += ", take " + std::to_string(*odd) + " is unlike the others";
    }
    attributes.LogOutcome(LogLevel::Error, what, status);
    if (status == Status::Success)
    {
        *phraseModel = phraseModelBlob.data();
        mode = Mode::Enrolled;
    }
    return status;
}

Status EngineSession::MakePhraseModel()
{
    PhraseModel user;
    if (const Status status = enrollment->Finish(&user); status != Status::Success)
    {
        return status;
    }
    const std::vector<uint8_t> firmware = WritePhraseModel(user);
    if (firmware.size() > attributes.maxModelBytes)
    {
        return Status::ModelTooLarge;
    }
    phraseModelBlob = WrapPhraseModel(firmware);
    return Status::Success;
}

Status EngineSession::GetScores(float* scores, uint32_t* count) const
{
    if (model == nullptr)
    {
        return Status::NoModel;
    }
    const uint32_t room = *count;
    if (scores != nullptr && room > 0 && !scoreReady)
    {
        *count = 0;
        return Status::NothingLeft;
    }
    *count = 1;
    if (scores == nullptr)
    {
        return Status::Success;
    }
    if (room == 0)
    {
        return Status::BufferTooSmall;
    }
    *scores = score;
    return Status::Success;
}

Status EngineSession::GetIntOutput(uint32_t output, int32_t* values, uint32_t* count) const
{
    const AnalysedFrame* frame = detector == nullptr ? nullptr : detector->LastFrame();
    int32_t value = 0;
    switch (static_cast<Output>(output))
    {
    case Output::VadFlag:
        value = frame == nullptr || !frame->IsSpeech() ? 1 : 0;
        break;
    case Output::AudioFrameSize:
        value = static_cast<int32_t>(FrameSize);
        break;
    case Output::VadQuality:
        value = frame == nullptr ? 0 : static_cast<int32_t>(std::lround(NoiseFloor::Decibels(frame->aboveFloor)));
        break;
    case Output::TakeStatus:
        value = static_cast<int32_t>(takeStatus);
        break;
    case Output::PlaceStart:
        value = static_cast<int32_t>(placeStart);
        break;
    case Output::PlaceEnd:
        value = static_cast<int32_t>(placeEnd);
        break;
    case Output::BestScore:
        value = static_cast<int32_t>(bestScore * Q8);
        break;
    default:
        return Status::UnknownIdentifier;
    }
    if (values == nullptr)
    {
        *count = 1;
        return Status::Success;
    }
    if (*count == 0)
    {
        *count = 1;
        return Status::BufferTooSmall;
    }
    *count = 1;
    *values = value;
    return Status::Success;
}

Status EngineSession::PrepareLpeData(uint8_t* buffer, uint32_t* size) const
{
    if (firmwareModel.empty())
    {
        return Status::NoModel;
    }
    const auto needed = static_cast<uint32_t>(firmwareModel.size());
    if (buffer != nullptr && *size < needed)
    {
        *size = needed;
        return Status::BufferTooSmall;
    }
    *size = needed;
    if (buffer != nullptr)
    {
        std::memcpy(buffer, firmwareModel.data(), needed);
    }
    return Status::Success;
}

} // namespace velox::engine

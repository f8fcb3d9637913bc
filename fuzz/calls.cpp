// The fifteen functions in any order, with any arguments that a pointer can be checked for. Each call is one byte and its
// argument the next.
#include "engine/base/AudioFormat.h"
#include "engine/base/EngineErrors.h"
#include "fuzz/Target.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/engine/support/TinyLanguage.h"

#include <algorithm>
#include <array>
#include <vector>

using namespace velox::engine;

namespace
{

struct Models
{
    std::vector<uint8_t> acoustic = WriteAcousticModel(TinyLanguage::Acoustic());
    std::vector<uint8_t> population = WritePopulation(TinyLanguage::Background());
    std::vector<uint8_t> phrase = WritePhraseModel(TinyLanguage::Phrase());
    std::vector<uint8_t> user = WritePhraseModel(TinyLanguage::UserPhrase());
    std::vector<int16_t> audio = TinyLanguage::ToPcm(TinyLanguage::SayPhrase());

    const uint8_t* Choose(uint8_t argument) const
    {
        const std::array<const uint8_t*, 5> blobs{acoustic.data(), population.data(), phrase.data(), user.data(), nullptr};
        return blobs[argument % blobs.size()];
    }
};

/// Two sessions' handles, and one that never was.
class Caller
{
public:
    explicit Caller(const Models& callersModels) : models(callersModels)
    {
    }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;
    ~Caller()
    {
        for (const uint32_t handle : handles)
        {
            VWoVDestroySession(handle);
        }
    }

    /// One of the fifteen functions.
    void Call(uint8_t function, uint8_t argument)
    {
        using Step = void (Caller::*)(uint8_t argument);
        static constexpr std::array<Step, 15> Steps{
            &Caller::SetAttribute,
            &Caller::SetBinAttribute,
            &Caller::InitSession,
            &Caller::Init,
            &Caller::SetModel,
            &Caller::StartEnrollment,
            &Caller::StartUtterance,
            &Caller::Feed,
            &Caller::FinalizeUtterance,
            &Caller::FinalizeEnrollment,
            &Caller::GetScores,
            &Caller::GetIntOutput,
            &Caller::Flush,
            &Caller::PrepareLpeData,
            &Caller::DestroySession,
        };
        (this->*Steps[function % Steps.size()])(argument);
    }

private:
    /// The same status, which is one of those that the engine documents.
    static uint32_t Known(uint32_t status)
    {
        Expect(!TextOf(static_cast<Status>(status)).name.empty());
        return status;
    }

    static bool GivesBuffer(uint8_t argument)
    {
        return (argument & 2U) != 0;
    }

    uint32_t Session(uint8_t argument) const
    {
        constexpr uint32_t NeverGivenOut = 12345678;
        return (argument & 0x80U) != 0 ? NeverGivenOut : handles[argument & 1U];
    }

    void SetAttribute(uint8_t argument)
    {
        Known(VWoVSetAttribute(argument % 32, (argument & 64U) != 0 ? "max_model_bytes=9; x" : "3"));
    }

    void SetBinAttribute(uint8_t argument)
    {
        Known(VWoVSetBinAttribute(argument % 4, models.Choose(argument >> 2U)));
    }

    void InitSession(uint8_t argument)
    {
        uint32_t& handle = handles[argument & 1U];
        Known(VWoVDestroySession(handle));
        Expect(Known(VWoVInitSession(&handle)) == EngineStatus::Success && handle != 0);
    }

    void Init(uint8_t argument)
    {
        Known(VWoVInit(Session(argument), argument % 8));
    }

    void SetModel(uint8_t argument)
    {
        Known(VWoVSetModel(Session(argument), models.Choose(argument >> 2U)));
    }

    void StartEnrollment(uint8_t argument)
    {
        Known(VWoVStartEnrollment(Session(argument)));
    }

    void StartUtterance(uint8_t argument)
    {
        Known(VWoVStartEnrollmentUtterance(Session(argument), argument));
    }

    /// A tenth of the phrase's recording and more, or a frame of a wrong size.
    void Feed(uint8_t argument)
    {
        constexpr std::size_t MostFrames = 16;
        const uint32_t session = Session(argument);
        if ((argument & 64U) != 0)
        {
            Known(VWoVFeedAudioFrame(session, models.audio.data(), argument));
            return;
        }
        for (std::size_t i = 0; i < MostFrames; ++i)
        {
            Known(VWoVFeedAudioFrame(session, models.audio.data() + next, FrameSize));
            next = (next + FrameSize) % (models.audio.size() - FrameSize);
        }
    }

    void FinalizeUtterance(uint8_t argument)
    {
        Known(VWoVFinalizeEnrollmentUtterance(Session(argument)));
    }

    /// Rarely: a model takes as long as all other calls.
    void FinalizeEnrollment(uint8_t argument)
    {
        uint8_t* model = nullptr;
        if (argument % 32 < 2 && Known(VWoVFinalizeEnrollment(Session(argument), &model)) == EngineStatus::Success &&
            (argument & 64U) != 0)
        {
            Known(VWoVSetModel(Session(argument), model));
        }
    }

    void GetScores(uint8_t argument)
    {
        std::array<float, 3> scores{};
        uint32_t count = (argument >> 2U) % scores.size();
        const uint32_t status = Known(VWoVGetScores(Session(argument), GivesBuffer(argument) ? scores.data() : nullptr, &count));
        if (status == EngineStatus::Success && GivesBuffer(argument))
        {
            Expect(count == 1 && scores[0] >= 0.0F && scores[0] <= 255.0F);
        }
    }

    void GetIntOutput(uint8_t argument)
    {
        int32_t value = 0;
        uint32_t count = std::min((argument >> 2U) % 3U, 1U);
        Known(VWoVGetIntOutput(Session(argument), argument % 25, GivesBuffer(argument) ? &value : nullptr, &count));
        Expect(count <= 1);
    }

    void Flush(uint8_t argument)
    {
        Known(VWoVFlush(Session(argument)));
    }

    void PrepareLpeData(uint8_t argument)
    {
        uint8_t* const target = GivesBuffer(argument) ? buffer.data() : nullptr;
        uint32_t count = target == nullptr ? 0 : static_cast<uint32_t>(buffer.size());
        if (Known(VWoVPrepareLpeData(Session(argument), target, &count)) == EngineStatus::Success)
        {
            Expect(count > 0 && count <= buffer.size());
        }
    }

    void DestroySession(uint8_t argument)
    {
        Known(VWoVDestroySession(Session(argument)));
    }

    const Models& models;
    std::array<uint32_t, 2> handles{};
    std::vector<uint8_t> buffer = std::vector<uint8_t>(64 * 1024);
    std::size_t next = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    constexpr std::size_t MostCalls = 100;
    static const Models models;
    VWoVSetAttribute(EngineAttribute::LogLevel, "0");
    Caller caller(models);
    for (std::size_t i = 0; i + 1 < size && i < 2 * MostCalls; i += 2)
    {
        caller.Call(data[i], data[i + 1]);
    }
    return 0;
}

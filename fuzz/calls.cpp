// The fifteen functions in any order, with any arguments that a pointer can be checked for. Each call is one byte and its
// argument the next.
#include "engine/base/EngineErrors.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/engine/support/TinyLanguage.h"

#include <array>
#include <cstdlib>
#include <span>

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

    void Call(uint8_t function, uint8_t argument)
    {
        const std::size_t which = argument & 1U;
        const uint32_t session = (argument & 0x80U) != 0 ? 12345678U : handles[which];
        uint8_t* const lpe = (argument & 2U) != 0 ? buffer.data() : nullptr;
        uint32_t count = (argument >> 2U) % 3;
        float scores[3];
        int32_t value = 0;
        switch (function % 15)
        {
        case 0:
            VWoVSetAttribute(argument % 32, (argument & 64U) != 0 ? "max_model_bytes=9; x" : "3");
            break;
        case 1:
            VWoVSetBinAttribute(argument % 4, models.Choose(argument >> 2U));
            break;
        case 2:
            VWoVDestroySession(handles[which]);
            Expect(VWoVInitSession(&handles[which]) == 0 && handles[which] != 0);
            break;
        case 3:
            VWoVInit(session, argument % 8);
            break;
        case 4:
            VWoVSetModel(session, models.Choose(argument >> 2U));
            break;
        case 5:
            VWoVStartEnrollment(session);
            break;
        case 6:
            VWoVStartEnrollmentUtterance(session, argument);
            break;
        case 7:
            Feed(session, argument);
            break;
        case 8:
            VWoVFinalizeEnrollmentUtterance(session);
            break;
        case 9:
            // Rarely: a model takes as long as all other calls.
            if (uint8_t* model = nullptr;
                argument % 32 < 2 && VWoVFinalizeEnrollment(session, &model) == 0 && (argument & 64U) != 0)
            {
                VWoVSetModel(session, model);
            }
            break;
        case 10:
            if (VWoVGetScores(session, (argument & 2U) != 0 ? scores : nullptr, &count) == 0 && (argument & 2U) != 0)
            {
                Expect(count == 1 && scores[0] >= 0.0F && scores[0] <= 255.0F);
            }
            break;
        case 11:
            count = std::min(count, 1U);
            VWoVGetIntOutput(session, argument % 25, (argument & 2U) != 0 ? &value : nullptr, &count);
            break;
        case 12:
            VWoVFlush(session);
            break;
        case 13:
            count = lpe == nullptr ? 0 : static_cast<uint32_t>(buffer.size());
            VWoVPrepareLpeData(session, lpe, &count);
            break;
        default:
            VWoVDestroySession(session);
            break;
        }
    }

private:
    static void Expect(bool holds)
    {
        if (!holds)
        {
            std::abort();
        }
    }

    /// A tenth of the phrase's recording and more, or a frame of a wrong size.
    void Feed(uint32_t session, uint8_t argument)
    {
        constexpr std::size_t MostFrames = 16;
        if ((argument & 64U) != 0)
        {
            VWoVFeedAudioFrame(session, models.audio.data(), argument);
            return;
        }
        for (std::size_t i = 0; i < MostFrames; ++i)
        {
            VWoVFeedAudioFrame(session, models.audio.data() + next, FrameSize);
            next = (next + FrameSize) % (models.audio.size() - FrameSize);
        }
    }

    const Models& models;
    std::array<uint32_t, 2> handles{};
    std::vector<uint8_t> buffer = std::vector<uint8_t>(64 * 1024);
    std::size_t next = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

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

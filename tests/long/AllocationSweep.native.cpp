// The engine and the simulated DSP without memory: each operation is run with its n-th allocation failing, and with all from the
// n-th on, the matrix library's included. Nothing ends the process, the failure arrives at the caller in its own form, and the
// next run gives what an undisturbed one gives. Not part of the default run: scripts/endure. The argument is how many places of
// each operation are tried at most; the first hundred always are.
#include "engine/training/LanguageTrainer.h"
#include "firmware/DspSimulator.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace
{

/// Calls of malloc and its like while a run counts them, and which of them fail.
std::atomic<bool> counting = false;
std::atomic<int64_t> calls = 0;
int64_t firstFailing = 0;
int64_t lastFailing = 0;

bool Fails()
{
    if (!counting.load(std::memory_order_relaxed))
    {
        return false;
    }
    const int64_t call = ++calls;
    const bool fails = firstFailing <= call && call <= lastFailing;
    errno = fails ? ENOMEM : errno;
    return fails;
}

} // namespace

// glibc's own names for what these stand in front of.
extern "C"
{
    void* __libc_malloc(std::size_t size);
    void* __libc_calloc(std::size_t count, std::size_t size);
    void* __libc_realloc(void* block, std::size_t size);
    void* __libc_memalign(std::size_t alignment, std::size_t size);

    void* malloc(std::size_t size)
    {
        return Fails() ? nullptr : __libc_malloc(size);
    }
    void* calloc(std::size_t count, std::size_t size)
    {
        return Fails() ? nullptr : __libc_calloc(count, size);
    }
    void* realloc(void* block, std::size_t size)
    {
        return Fails() ? nullptr : __libc_realloc(block, size);
    }
    void* aligned_alloc(std::size_t alignment, std::size_t size)
    {
        return Fails() ? nullptr : __libc_memalign(alignment, size);
    }
}

namespace
{

using namespace velox;
using Bytes = std::vector<uint8_t>;

/// What an operation gives; nothing where there was no memory.
using Outcome = std::optional<Bytes>;

struct Operation
{
    const char* name;
    std::function<Outcome()> run;
};

/// A session's handle; destroyed with it.
class Session
{
public:
    Session()
    {
        VWoVInitSession(&handle);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session()
    {
        VWoVDestroySession(handle);
    }

    uint32_t handle = 0;
};

/// Turns statuses into an outcome: the first one that is no success ends it.
class Statuses
{
public:
    bool Succeeded(uint32_t status)
    {
        failed = failed || status != 0;
        return !failed;
    }
    Outcome With(Bytes bytes) const
    {
        return failed ? Outcome() : Outcome(std::move(bytes));
    }

private:
    bool failed = false;
};

struct Material
{
    Bytes acoustic = engine::WriteAcousticModel(TinyLanguage::Acoustic());
    Bytes population = engine::WritePopulation(TinyLanguage::Background());
    Bytes phrase = engine::WritePhraseModel(TinyLanguage::Phrase());
    std::vector<int16_t> take = TinyLanguage::ToPcm(TinyLanguage::SayPhrase());
    std::vector<float> sound = TinyLanguage::SayPhrase();
    engine::LanguageMaterial language = TinyLanguage::Material();
    Bytes pattern = HandMadePattern::Make(TinyLanguage::UserPhrase(), 100 * 256);
};

bool Feed(uint32_t session, const std::vector<int16_t>& take, Statuses* statuses)
{
    for (std::size_t start = 0; start + engine::FrameSize <= take.size(); start += engine::FrameSize)
    {
        if (!statuses->Succeeded(VWoVFeedAudioFrame(session, take.data() + start, engine::FrameSize)))
        {
            return false;
        }
    }
    return true;
}

Outcome Listen(const Material& material)
{
    Statuses statuses;
    const Session session;
    float score = 0.0F;
    if (statuses.Succeeded(session.handle == 0 ? 1 : 0) && statuses.Succeeded(VWoVInit(session.handle, EngineComponent::Vad)) &&
        statuses.Succeeded(VWoVInit(session.handle, EngineComponent::Kpd)) &&
        statuses.Succeeded(VWoVSetModel(session.handle, material.phrase.data())) &&
        Feed(session.handle, material.take, &statuses))
    {
        uint32_t count = 1;
        statuses.Succeeded(VWoVGetScores(session.handle, &score, &count));
    }
    return statuses.With(Bytes(reinterpret_cast<const uint8_t*>(&score), reinterpret_cast<const uint8_t*>(&score + 1)));
}

Outcome Enroll(const Material& material)
{
    Statuses statuses;
    if (!statuses.Succeeded(VWoVSetAttribute(EngineAttribute::FirmwareConstraints, "max_model_bytes=163840")) ||
        !statuses.Succeeded(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, material.acoustic.data())) ||
        !statuses.Succeeded(VWoVSetBinAttribute(EngineBinAttribute::ZnormPopulation, material.population.data())))
    {
        return std::nullopt;
    }
    const Session session;
    if (!statuses.Succeeded(session.handle == 0 ? 1 : 0) || !statuses.Succeeded(VWoVInit(session.handle, EngineComponent::Vad)) ||
        !statuses.Succeeded(VWoVInit(session.handle, EngineComponent::Kpd)) ||
        !statuses.Succeeded(VWoVStartEnrollment(session.handle)))
    {
        return std::nullopt;
    }
    for (uint32_t take = 0; take < 3; ++take)
    {
        if (!statuses.Succeeded(VWoVStartEnrollmentUtterance(session.handle, take)) ||
            !Feed(session.handle, material.take, &statuses) ||
            !statuses.Succeeded(VWoVFinalizeEnrollmentUtterance(session.handle)))
        {
            return std::nullopt;
        }
    }
    uint8_t* model = nullptr;
    if (!statuses.Succeeded(VWoVFinalizeEnrollment(session.handle, &model)))
    {
        return std::nullopt;
    }
    uint32_t size = 0;
    std::copy_n(model + PhraseModelSizeOffset, sizeof(size), reinterpret_cast<uint8_t*>(&size));
    return Bytes(model, model + size);
}

Outcome HearAsTheDsp(const Material& material)
{
    Bytes block;
    firmware::DspSimulator dsp(HandMadePattern::Detector);
    if (dsp.SetPattern(material.pattern) || !dsp.Arm())
    {
        return std::nullopt;
    }
    std::span<const float> sound = material.sound;
    while (!sound.empty())
    {
        if (const auto result = dsp.Hear(&sound))
        {
            const std::span<const uint8_t> bytes = result->Bytes();
            block.assign(bytes.begin(), bytes.end());
        }
    }
    return block;
}

Outcome LearnALanguage(const Material& material, int threads)
{
    engine::LanguageOptions options = TinyLanguage::QuickTraining();
    options.threads = threads;
    const std::optional<engine::LanguageModels> models = engine::TrainLanguage(material.language, options);
    return models ? Outcome(models->acousticModel) : std::nullopt;
}

/// One run with these calls failing. @return nothing for the operation's own refusal, or for std::bad_alloc
Outcome Run(const Operation& operation, int64_t first, int64_t last)
{
    calls = 0;
    firstFailing = first;
    lastFailing = last;
    counting = true;
    Outcome outcome;
    try
    {
        outcome = operation.run();
    }
    catch (const std::bad_alloc&)
    {
    }
    counting = false;
    return outcome;
}

constexpr int64_t Never = INT64_MAX;

/// @return whether every run ended as it should
bool Sweep(const Operation& operation, int64_t mostPlaces)
{
    const Outcome undisturbed = Run(operation, Never, Never);
    const int64_t places = calls;
    constexpr int64_t First = 100;
    const int64_t step = std::max<int64_t>(1, places / std::max<int64_t>(1, mostPlaces));
    int64_t runs = 0;
    int64_t failures = 0;
    bool good = undisturbed.has_value();
    for (int64_t place = 1; place <= places; place += place < First ? 1 : step)
    {
        for (const int64_t last : {place, Never})
        {
            const Outcome outcome = Run(operation, place, last);
            ++runs;
            failures += outcome ? 0 : 1;
            // What needed no memory after all, or got on without it, gives the same.
            good = good && (!outcome || outcome == undisturbed);
        }
        good = good && (place % First != 0 || Run(operation, Never, Never) == undisturbed);
    }
    good = good && Run(operation, Never, Never) == undisturbed;
    std::printf("%-36s %9lld allocations, %6lld runs, %6lld without an outcome: %s\n", operation.name,
                static_cast<long long>(places), static_cast<long long>(runs), static_cast<long long>(failures),
                good ? "as meant" : "WRONG");
    std::fflush(stdout);
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    const int64_t mostPlaces = argc > 1 ? std::atoll(argv[1]) : 200;
    const Material material;
    VWoVSetAttribute(EngineAttribute::LogLevel, "0");
    const Operation operations[] = {
        {"a session listens",
         [&] {
             return Listen(material);
         }},
        {"a user is enrolled",
         [&] {
             return Enroll(material);
         }},
        {"the simulated DSP is armed and hears",
         [&] {
             return HearAsTheDsp(material);
         }},
        {"a language is learned",
         [&] {
             return LearnALanguage(material, 1);
         }},
        {"a language is learned by two threads",
         [&] {
             return LearnALanguage(material, 2);
         }},
    };
    bool good = true;
    for (const Operation& operation : operations)
    {
        good = Sweep(operation, mostPlaces) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}

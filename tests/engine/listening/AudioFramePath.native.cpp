// What happens while a session is fed: nothing may be allocated or locked, and no file touched.
#include "engine/api/EngineSession.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/engine/support/CountedAllocations.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <mutex>
#include <string_view>

namespace
{

using namespace velox::engine;

std::atomic<int> locks = 0;

/// Read and write calls of the process so far, those of this function included, which are as many each time. The C library's
/// files have no virtual functions, on whose first call of a class the sanitizer writes to a pipe.
int64_t FileCalls()
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/proc/self/io", "r"), std::fclose);
    int64_t calls = 0;
    int64_t value = 0;
    for (char name[32]; std::fscanf(file.get(), "%31s %" SCNd64, name, &value) == 2;)
    {
        calls += name == std::string_view("syscr:") || name == std::string_view("syscw:") ? value : 0;
    }
    return calls;
}

} // namespace

/// Stands in front of the C library's, and counts.
extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex)
{
    static const auto next = reinterpret_cast<int (*)(pthread_mutex_t*)>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    ++locks;
    return next(mutex);
}

namespace
{

class AudioFramePath : public CountedAllocations
{
protected:
    void SetUp() override
    {
        CountedAllocations::SetUp();
        FileCalls(); // the first may read more
    }

    struct Figures
    {
        int allocations = 0;
        int locks = 0;
        int64_t fileCalls = 0;
        float best = 0.0F;
    };

    /// Feeds the phrase twice, frame by frame, and asks what callers ask after each; flushes, but for the last step, which judges
    /// the take. Calls for files count in the second time: in the first the sanitizer may make its own, one for a class.
    static Figures Count(const PhraseModel& model)
    {
        const std::vector<uint8_t> blob = WritePhraseModel(model);
        const std::vector<int16_t> pcm = TinyLanguage::ToPcm(TinyLanguage::SayPhrase());
        uint32_t session = 0;
        EXPECT_EQ(VWoVInitSession(&session), 0U);
        EXPECT_EQ(VWoVInit(session, EngineComponent::Vad), 0U);
        EXPECT_EQ(VWoVInit(session, EngineComponent::Kpd), 0U);
        EXPECT_EQ(VWoVSetModel(session, blob.data()), 0U);

        Figures figures;
        const auto ask = [&] {
            float score = 0.0F;
            int32_t value = 0;
            uint32_t count = 1;
            VWoVGetScores(session, &score, &count);
            count = 1;
            VWoVGetIntOutput(session, EngineOutput::VadFlag, &value, &count);
            VWoVGetIntOutput(session, EngineOutput::VadQuality, &value, &count);
            figures.best = std::max(figures.best, score);
        };
        const auto feed = [&] {
            const int allocationsBefore = allocations;
            const int locksBefore = locks;
            for (std::size_t start = 0; start + FrameSize <= pcm.size(); start += FrameSize)
            {
                VWoVFeedAudioFrame(session, pcm.data() + start, FrameSize);
                ask();
            }
            VWoVFlush(session);
            ask();
            figures.allocations += allocations - allocationsBefore;
            figures.locks += locks - locksBefore;
        };
        feed();
        const int64_t fileCallsEarlier = FileCalls();
        const int64_t fileCallsBefore = FileCalls();
        feed();
        figures.fileCalls = FileCalls() - fileCallsBefore - (fileCallsBefore - fileCallsEarlier);
        EXPECT_EQ(VWoVDestroySession(session), 0U);
        return figures;
    }
};

TEST_F(AudioFramePath, TheCountersCount)
{
    const int allocationsBefore = allocations;
    const std::vector<int> vector(100);
    const Eigen::MatrixXf matrix = Eigen::MatrixXf::Zero(10, 10);
    EXPECT_EQ(allocations - allocationsBefore, 2);

    std::mutex mutex;
    const int locksBefore = locks;
    const std::lock_guard lock(mutex);
    EXPECT_EQ(locks - locksBefore, 1);

    const int64_t earlier = FileCalls();
    const int64_t before = FileCalls();
    std::ofstream("/dev/null") << "one line\n";
    EXPECT_EQ(FileCalls() - before - (before - earlier), 1);
}

TEST_F(AudioFramePath, NothingIsAllocatedLockedOrWrittenWithAndWithoutTheSpeakerPart)
{
    for (const PhraseModel& model : {TinyLanguage::Phrase(), TinyLanguage::UserPhrase()})
    {
        SCOPED_TRACE(model.speaker ? "a user's" : "everybody's");
        const Figures figures = Count(model);
        EXPECT_EQ(figures.allocations, 0);
        EXPECT_EQ(figures.locks, 0);
        EXPECT_EQ(figures.fileCalls, 0);
        EXPECT_GT(figures.best, 0.0F) << "the second stage ran";
    }
}

TEST_F(AudioFramePath, NothingIsAllocatedInAnUtteranceOfAnEnrollment)
{
    EngineAttributes attributes;
    attributes.acousticModel = std::make_shared<AcousticModel>(TinyLanguage::Acoustic());
    attributes.population = std::make_shared<Population>(TinyLanguage::Background());
    EngineSession session(attributes);
    ASSERT_EQ(session.InitComponent(EngineComponent::Vad), Status::Success);
    ASSERT_EQ(session.InitComponent(EngineComponent::Kpd), Status::Success);
    ASSERT_EQ(session.StartEnrollment(), Status::Success);
    ASSERT_EQ(session.StartUtterance(), Status::Success);
    const std::vector<int16_t> frame(FrameSize, 100);
    const int before = allocations;
    for (std::size_t i = 0; i < EngineSession::MostTakeSeconds * 101; ++i)
    {
        session.FeedFrame(frame.data(), FrameSize);
    }
    EXPECT_EQ(allocations - before, 0);
}

} // namespace

#include "console/audio/SoundQueue.h"

#include <gmock/gmock.h>

#include <thread>

namespace SoundQueueTests
{

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using velox::console::SoundQueue;

std::vector<float> Fetched(SoundQueue* queue, std::chrono::milliseconds patience = 0ms)
{
    std::vector<float> sound{9.0F};
    queue->Fetch(patience, &sound);
    return sound;
}

TEST(SoundQueue, HandsOnAllThatCame)
{
    SoundQueue queue(8);
    queue.Put(std::vector{0.1F, 0.2F}, false);
    queue.Put(std::vector{0.3F}, false);
    EXPECT_THAT(Fetched(&queue), ElementsAre(0.1F, 0.2F, 0.3F));
    EXPECT_THAT(Fetched(&queue), IsEmpty());
    EXPECT_EQ(queue.Overruns(), 0U);
}

TEST(SoundQueue, LosesAndCountsWhatHasNoRoom)
{
    SoundQueue queue(3);
    const std::vector piece{0.1F, 0.2F};
    queue.Put(piece, false);
    queue.Put(piece, false);
    queue.Put(std::vector{0.3F}, false);
    EXPECT_THAT(Fetched(&queue), ElementsAre(0.1F, 0.2F, 0.3F));
    EXPECT_EQ(queue.Overruns(), 1U);
    queue.Put(piece, false);
    EXPECT_THAT(Fetched(&queue), ElementsAre(0.1F, 0.2F)) << "there is room again";
    EXPECT_EQ(queue.Overruns(), 1U);
}

TEST(SoundQueue, CountsWhatTheDeviceLost)
{
    SoundQueue queue(8);
    queue.Put(std::vector{0.1F}, true);
    EXPECT_THAT(Fetched(&queue), ElementsAre(0.1F));
    EXPECT_EQ(queue.Overruns(), 1U);
}

TEST(SoundQueue, WaitsForSoundAndNoLonger)
{
    SoundQueue queue(8);
    EXPECT_THAT(Fetched(&queue, 1ms), IsEmpty());
    std::jthread device([&queue] {
        std::this_thread::sleep_for(20ms);
        queue.Put(std::vector{0.5F}, false);
    });
    EXPECT_THAT(Fetched(&queue, 60s), ElementsAre(0.5F));
}

} // namespace SoundQueueTests

#include "engine/training/BackgroundPeaks.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace BackgroundPeaksTests
{

using namespace velox::engine;
using testing::SizeIs;

TEST(BackgroundPeaks, ShortRecordingsAreHeardOneAfterTheOther)
{
    // 1.1 s each: alone each would be a block of its own; together they are 11 s, or six blocks of two seconds.
    std::vector<std::vector<float>> recordings(10, TinyLanguage::SayPhrase());
    for (std::vector<float>& recording : recordings)
    {
        recording.erase(recording.begin(), recording.begin() + 4000);
        recording.resize(17600);
    }
    WorkerPool pool(2);
    EXPECT_THAT(FindBackgroundPeaks(TinyLanguage::Phrase(),
                                    std::vector<std::span<const float>>(recordings.begin(), recordings.end()), &pool),
                SizeIs(6));
}

} // namespace BackgroundPeaksTests

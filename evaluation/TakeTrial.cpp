#include "Listening.h"
#include "Trial.h"

namespace velox::evaluation
{

void TryTakes(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report)
{
    const auto threshold = static_cast<float>(language.blobs.preDefinedThreshold);
    const Condition clean{"clean", [](std::span<const float> clip, uint64_t) {
                              return WithSilence(clip);
                          }};
    Share missed;
    for (const Outcome& outcome : ListenToClips(language.keyphrase, judged.takes, clean, pool))
    {
        missed.Add(outcome.best.score < threshold);
    }
    report->Add(judged.phrase + ": take with the phrase refused", missed, 2.0);

    Share accepted;
    for (const auto* clips : {&judged.otherTakes, &judged.background})
    {
        for (const Outcome& outcome : ListenToClips(language.keyphrase, *clips, clean, pool))
        {
            accepted.Add(outcome.best.score >= threshold);
        }
    }
    report->Add(judged.phrase + ": take without the phrase accepted", accepted, 1.0);
}

} // namespace velox::evaluation

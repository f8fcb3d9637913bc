#include "evaluation/Listening.h"
#include "evaluation/Trial.h"

namespace velox::evaluation
{

void TryTakes(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report)
{
    const auto threshold = static_cast<float>(language.blobs.preDefinedThreshold);
    const Condition clean = CleanCondition();
    Share missed;
    for (const Outcome& outcome : ListenToClips(language.keyphrase, judged.takes, clean, judged.seed, pool))
    {
        missed.Add(outcome.best.score < threshold);
    }
    report->Add(judged.phrase + ": take with the phrase refused", missed, {2.0});

    Share accepted;
    for (const auto& [what, clips] :
         {std::pair{"take of another phrase", &judged.otherTakes}, std::pair{"recording of other speech", &judged.background}})
    {
        Share part;
        for (const Outcome& outcome : ListenToClips(language.keyphrase, *clips, clean, judged.seed, pool))
        {
            const bool wrong = outcome.best.score >= threshold;
            part.Add(wrong);
            accepted.Add(wrong);
            if (wrong)
            {
                report->Note("accepted as a take: " + outcome.clip->entry.path);
            }
        }
        report->Add(judged.phrase + ": " + what + " accepted", part, {});
    }
    report->Add(judged.phrase + ": take without the phrase accepted", accepted, {1.0});
}

} // namespace velox::evaluation

#include "console/takes/TakePage.h"

#include "console/audio/SampleTime.h"
#include "engine/sound/MelFilterbank.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

ReportCurve Curve(const engine::TakeReview& review, float engine::FrameReview::*value)
{
    ReportCurve curve;
    for (const engine::FrameReview& frame : review.frames)
    {
        curve.values.push_back(frame.*value);
    }
    return curve;
}

std::vector<ReportMark> Marks(const engine::TakeReview& review)
{
    using Kind = ReportMark::Kind;
    std::vector<ReportMark> marks;
    if (review.speechEnd > review.speechBegin)
    {
        marks.push_back({Kind::Speech, Seconds(review.speechBegin), Seconds(review.speechEnd), "speech"});
    }
    if (review.phrase)
    {
        marks.push_back({Kind::Phrase, Seconds(review.phrase->startSample), Seconds(review.phrase->endSample),
                         fmt::format("phrase, score {:.0f}", review.phrase->score)});
    }
    if (review.firstClipped)
    {
        const double first = Seconds(static_cast<int64_t>(*review.firstClipped));
        marks.push_back({Kind::Clipped, first, first, "first clipped sample"});
    }
    return marks;
}

ReportRecording Recording(const TakeReport& take)
{
    ReportRecording recording;
    recording.name = take.file;
    recording.conversion = take.audio.conversion;
    recording.seconds = take.audio.seconds;
    recording.tone = take.accepted ? Tone::Good : Tone::Bad;
    recording.verdict = take.accepted ? "Accepted" : "Refused";
    for (const Remark& remark : take.remarks)
    {
        recording.reasons.push_back(remark.text);
        recording.fixes.push_back(remark.fix);
    }
    recording.wave = WaveOf(take.audio.samples);
    recording.marks = Marks(take.review);
    recording.quality = Curve(take.review, &engine::FrameReview::quality);
    recording.score = Curve(take.review, &engine::FrameReview::score);
    recording.threshold = take.threshold;
    return recording;
}

std::vector<std::string> Row(const TakeReport& take)
{
    const engine::TakeReview& review = take.review;
    return {take.file,
            take.accepted ? "accepted" : "refused",
            fmt::format("{:.2f} s", take.audio.seconds),
            review.speechEnd > review.speechBegin ? fmt::format("{:.0f} dB", review.level) : "",
            take.logged.quality ? fmt::format("{} dB", *take.logged.quality) : "",
            take.logged.score ? fmt::format("{:.0f}", *take.logged.score) : ""};
}

} // namespace

Report TakePage(const std::string& command, const std::string& language, std::span<const TakeReport> takes,
                const Outcome& outcome)
{
    Report report;
    report.command = command;
    report.verdict = outcome.verdict;
    report.tone = outcome.exitCode == ExitCode::Success ? Tone::Good : Tone::Bad;
    report.facts.push_back({"Language", language});
    const auto known =
        std::find_if(takes.begin(), takes.end(), [](const TakeReport& take) { return take.threshold.has_value(); });
    if (known != takes.end())
    {
        report.facts.push_back({"Threshold", fmt::format("{:g}", *known->threshold), "a score must lie above it"});
    }
    report.table = ReportTable{"Takes", {"Recording", "Verdict", "Length", "Level", "Above the noise", "Score"}, {}};
    for (const TakeReport& take : takes)
    {
        report.table->rows.push_back(Row(take));
        if (take.readable)
        {
            report.recordings.push_back(Recording(take));
        }
    }
    return report;
}

} // namespace velox::console

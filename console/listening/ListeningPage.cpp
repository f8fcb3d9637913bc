#include "console/listening/ListeningPage.h"

#include "console/audio/SampleTime.h"
#include "console/listening/ListeningReport.h"
#include "console/text/LanguageName.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

ReportMark Mark(ReportMark::Kind kind, const firmware::Peak& peak)
{
    return {kind, Seconds(peak.detection.startSample), Seconds(peak.detection.endSample),
            fmt::format("score {:.1f}", ScoreOf(peak.score))};
}

std::vector<std::string> Row(const HeardFile& file, const firmware::Peak& peak, const std::string& what)
{
    return {file.name,
            ClockText(Seconds(peak.detection.startSample)),
            ClockText(Seconds(peak.detection.endSample)),
            fmt::format("{:.1f}", ScoreOf(peak.score)),
            fmt::format("{:.1f}", ScoreOf(file.heard.threshold)),
            what};
}

ReportTable Table(const std::vector<HeardFile>& files)
{
    ReportTable table{"What was heard", {"Recording", "Start", "End", "Score", "Threshold", "What came of it"}, {}};
    for (const HeardFile& file : files)
    {
        for (const HeardDetection& detection : file.heard.detections)
        {
            table.rows.push_back(Row(file, detection.peak, DetectionMeaning(detection)));
        }
        for (const firmware::Peak& miss : file.heard.nearMisses)
        {
            table.rows.push_back(Row(file, miss, "near miss: " + NearMissReason(miss, file.heard.threshold)));
        }
    }
    return table;
}

std::vector<ReportMark> Marks(const Heard& heard)
{
    std::vector<ReportMark> marks;
    for (const HeardDetection& detection : heard.detections)
    {
        marks.push_back(Mark(detection.Told() ? ReportMark::Kind::Phrase : ReportMark::Kind::Fault, detection.peak));
    }
    for (const firmware::Peak& miss : heard.nearMisses)
    {
        marks.push_back(Mark(ReportMark::Kind::NearMiss, miss));
    }
    if (heard.deafFrom)
    {
        marks.push_back({ReportMark::Kind::Fault, *heard.deafFrom, heard.seconds, "deaf after a reset"});
    }
    return marks;
}

ReportRecording Recording(const HeardFile& file)
{
    const Heard& heard = file.heard;
    const bool allTold =
        !heard.deafFrom && std::ranges::all_of(heard.detections, [](const HeardDetection& one) { return one.Told(); });
    ReportRecording recording;
    recording.name = file.name;
    recording.conversion = file.conversion;
    recording.seconds = heard.seconds;
    recording.tone = !allTold ? Tone::Bad : heard.detections.empty() ? Tone::Neutral : Tone::Good;
    recording.verdict =
        fmt::format("{} detection{}, {} near miss{}", heard.detections.size(), heard.detections.size() == 1 ? "" : "s",
                    heard.nearMisses.size(), heard.nearMisses.size() == 1 ? "" : "es");
    recording.wave = file.wave;
    recording.marks = Marks(heard);
    recording.quality = file.curves.quality;
    recording.score = file.curves.score;
    recording.threshold = ScoreOf(heard.threshold);
    return recording;
}

} // namespace

Report ListeningPage(const ListeningSubject& subject, const std::vector<HeardFile>& files, const Outcome& outcome)
{
    const Heard& first = files.front().heard;
    Report report;
    report.command = "listen";
    report.verdict = outcome.verdict;
    report.tone = outcome.exitCode == ExitCode::Success ? Tone::Good : Tone::Bad;
    report.facts = {{"Pattern", fmt::format("{}, {} bytes", subject.patternName, subject.patternSize)},
                    {"Language", LanguageText(subject.language)},
                    {"Model", first.userModel ? "a user's" : "everybody's"},
                    {"Threshold", fmt::format("{:g}", ScoreOf(first.threshold)),
                     "least score that fires; 100 is half a false alarm per hour"}};
    report.notes = subject.notes;
    report.notes.push_back(ListeningStatistics(files));
    report.table = Table(files);
    std::ranges::transform(files, std::back_inserter(report.recordings), Recording);
    return report;
}

} // namespace velox::console

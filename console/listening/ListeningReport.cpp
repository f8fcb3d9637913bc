#include "console/listening/ListeningReport.h"

#include "console/audio/SampleTime.h"
#include "console/text/FieldLine.h"
#include "console/text/LanguageName.h"
#include "console/text/StatusText.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace velox::console
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr double SecondsPerHour = 3600.0;
/// Of less audio a rate per hour says nothing.
constexpr double LeastForRate = SecondsPerHour / 10;

std::string Count(std::size_t number, std::string_view one, std::string_view many)
{
    return fmt::format("{} {}", number, number == 1 ? one : many);
}

std::string Duration(double seconds)
{
    return seconds < LeastForRate ? fmt::format("{:.1f} s", seconds) : fmt::format("{:.2f} h", seconds / SecondsPerHour);
}

std::string Place(const firmware::Peak& peak)
{
    return ClockText(Seconds(peak.detection.startSample)) + " to " + ClockText(Seconds(peak.detection.endSample));
}

std::string DetectionText(const HeardDetection& detection, uint32_t threshold, const Style& style)
{
    const std::string mark = detection.Told() ? style.Good("detected") : style.Bad("reported");
    return fmt::format("  {}  {}  score {:.1f}, threshold {:.1f}; {}\n", Place(detection.peak), mark,
                       ScoreOf(detection.peak.score), ScoreOf(threshold), DetectionMeaning(detection));
}

std::string NearMissText(const firmware::Peak& miss, uint32_t threshold, const Style& style)
{
    return fmt::format("  {}  {}  score {:.1f}, threshold {:.1f}; {}\n", Place(miss), style.Dim("near miss"), ScoreOf(miss.score),
                       ScoreOf(threshold), NearMissReason(miss, threshold));
}

/// A line of a file's text, in the order of the audio.
struct Line
{
    int64_t sample;
    std::string text;
};

std::string FileText(const HeardFile& file, const Style& style)
{
    const Heard& heard = file.heard;
    std::vector<Line> lines;
    for (std::size_t i = 0; i < heard.detections.size(); ++i)
    {
        std::string text = DetectionText(heard.detections[i], heard.threshold, style);
        if (!file.savedBlocks.empty())
        {
            text += fmt::format("    saved as {}\n", file.savedBlocks[i]);
        }
        lines.push_back({heard.detections[i].peak.detection.startSample, std::move(text)});
    }
    for (const firmware::Peak& miss : heard.nearMisses)
    {
        lines.push_back({miss.detection.startSample, NearMissText(miss, heard.threshold, style)});
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Line& one, const Line& other) { return one.sample < other.sample; });

    std::string text = fmt::format("{}: {}{}\n", style.Heading(file.name), Duration(heard.seconds),
                                   file.conversion.empty() ? "" : ", " + file.conversion);
    for (const Line& line : lines)
    {
        text += line.text;
    }
    if (heard.deafFrom)
    {
        text +=
            fmt::format("  {}  {} Nothing after it was heard ({}): pattern and arming are lost.\n", ClockText(*heard.deafFrom),
                        style.Bad("the DSP reset itself."), Duration(heard.seconds - *heard.deafFrom));
    }
    if (lines.empty() && !heard.deafFrom)
    {
        text += "  nothing\n";
    }
    return text;
}

/// All files together.
struct Statistics
{
    explicit Statistics(const std::vector<HeardFile>& files)
    {
        for (const HeardFile& file : files)
        {
            seconds += file.heard.seconds;
            reported += file.heard.detections.size();
            told += static_cast<std::size_t>(std::count_if(file.heard.detections.begin(), file.heard.detections.end(),
                                                           [](const HeardDetection& detection) { return detection.Told(); }));
            refused += static_cast<std::size_t>(
                std::count_if(file.heard.detections.begin(), file.heard.detections.end(),
                              [](const HeardDetection& detection) { return detection.parsed.result != 0; }));
            resets += file.heard.deafFrom ? 1U : 0U;
            nearMisses += file.heard.nearMisses.size();
            if (file.heard.highestSilent)
            {
                highestSilent = std::max(highestSilent.value_or(0), *file.heard.highestSilent);
            }
        }
    }

    double seconds = 0.0;
    std::size_t reported = 0;
    std::size_t told = 0;
    std::size_t refused = 0;
    std::size_t resets = 0;
    std::size_t nearMisses = 0;
    std::optional<uint16_t> highestSilent;
};

std::string Head(const ListeningSubject& subject, const Heard& heard)
{
    std::string text = FieldLine("Pattern", fmt::format("{}, {} bytes", subject.patternName, subject.patternSize)) +
                       FieldLine("Language", LanguageText(subject.language)) +
                       FieldLine("Model", heard.userModel ? "a user's" : "everybody's") +
                       FieldLine("Threshold", fmt::format("{:g}", ScoreOf(heard.threshold)));
    for (const std::string& note : subject.notes)
    {
        text += FieldLine("Note", note);
    }
    return text + "\n";
}

Json PeakJson(const firmware::Peak& peak, uint32_t threshold)
{
    return {{"start", Seconds(peak.detection.startSample)},
            {"end", Seconds(peak.detection.endSample)},
            {"score", ScoreOf(peak.score)},
            {"threshold", ScoreOf(threshold)},
            {"phraseScore", peak.detection.phraseScore}};
}

Json DetectionJson(const HeardFile& file, std::size_t number)
{
    const HeardDetection& detection = file.heard.detections[number];
    const ParsedBlock& parsed = detection.parsed;
    const bool accepted = parsed.result == 0;
    Json json = PeakJson(detection.peak, file.heard.threshold);
    json["result"] = ResultText(parsed.result);
    json["keywordId"] = accepted ? Json(parsed.keywordId) : Json(nullptr);
    json["language"] = accepted ? Json(parsed.language) : Json(nullptr);
    json["userMatch"] = accepted ? Json(parsed.isUserMatch) : Json(nullptr);
    json["keywordStart"] = accepted ? Json(parsed.keywordStart) : Json(nullptr);
    json["keywordEnd"] = accepted ? Json(parsed.keywordEnd) : Json(nullptr);
    json["block"] = file.savedBlocks.empty() ? Json(nullptr) : Json(file.savedBlocks[number]);
    return json;
}

Json FileJson(const HeardFile& file)
{
    const Heard& heard = file.heard;
    Json json{{"file", file.name},
              {"seconds", heard.seconds},
              {"conversion", file.conversion},
              {"threshold", ScoreOf(heard.threshold)},
              {"userModel", heard.userModel},
              {"detections", Json::array()},
              {"nearMisses", Json::array()},
              {"highestSilentScore", heard.highestSilent ? Json(ScoreOf(*heard.highestSilent)) : Json(nullptr)},
              {"deafFrom", heard.deafFrom ? Json(*heard.deafFrom) : Json(nullptr)}};
    for (std::size_t i = 0; i < heard.detections.size(); ++i)
    {
        json["detections"].push_back(DetectionJson(file, i));
    }
    for (const firmware::Peak& miss : heard.nearMisses)
    {
        Json peak = PeakJson(miss, heard.threshold);
        peak["reason"] = NearMissReason(miss, heard.threshold);
        json["nearMisses"].push_back(std::move(peak));
    }
    return json;
}

ExitCode CodeOf(const Statistics& all)
{
    return all.refused > 0 ? ExitCode::LibraryFailure : all.told > 0 ? ExitCode::Success : ExitCode::Refused;
}

std::string Verdict(const Statistics& all)
{
    const std::string heard = " in " + Duration(all.seconds);
    if (all.refused > 0)
    {
        return fmt::format("The library refused {} of {}{}.", all.refused, Count(all.reported, "result block", "result blocks"),
                           heard);
    }
    if (all.resets > 0)
    {
        return fmt::format("The DSP reset itself in {} and was deaf from then on.", Count(all.resets, "file", "files"));
    }
    if (all.told < all.reported)
    {
        return fmt::format("{} of {} named a keyword that was not armed.", all.reported - all.told,
                           Count(all.reported, "result block", "result blocks"));
    }
    return all.told > 0 ? Count(all.told, "detection", "detections") + heard + "." : "Nothing was detected" + heard + ".";
}

} // namespace

Outcome ListeningOutcome(const ListeningSubject& subject, const std::vector<HeardFile>& files, const Style& style)
{
    const Statistics all(files);
    Outcome outcome;
    outcome.text = Head(subject, files.front().heard);
    for (const HeardFile& file : files)
    {
        outcome.text += FileText(file, style);
        outcome.results.Add(FileJson(file));
    }
    outcome.text += "\n" + ListeningStatistics(files) + "\n";
    outcome.exitCode = CodeOf(all);
    outcome.verdict = Verdict(all);
    return outcome;
}

std::string DetectionMeaning(const HeardDetection& detection)
{
    const ParsedBlock& parsed = detection.parsed;
    if (parsed.result != 0)
    {
        return fmt::format("the library refuses the block: {} {}", ResultText(parsed.result), parsed.explanation);
    }
    if (parsed.keywordId == 0)
    {
        return "keyword id 0, no match: the block names a keyword that was not armed";
    }
    return fmt::format("{}, user match: {}, counter {} to {}", LanguageText(parsed.language), parsed.isUserMatch ? "yes" : "no",
                       parsed.keywordStart, parsed.keywordEnd);
}

std::string NearMissReason(const firmware::Peak& miss, uint32_t threshold)
{
    if (miss.detection.phraseScore < static_cast<float>(ScoreOf(threshold)))
    {
        return "the words are not clear enough";
    }
    if (miss.detection.nearMargin < 0.0F)
    {
        return fmt::format("it sounds like a part of the phrase (the words alone score {:.1f})", miss.detection.phraseScore);
    }
    return fmt::format("the words fit (they alone score {:.1f}), the voice does not", miss.detection.phraseScore);
}

std::string ListeningStatistics(const std::vector<HeardFile>& files)
{
    const Statistics all(files);
    std::string text = fmt::format("Heard {} in {}: {}", Duration(all.seconds), Count(files.size(), "file", "files"),
                                   Count(all.reported, "detection", "detections"));
    if (all.seconds >= LeastForRate)
    {
        text += fmt::format(" ({:.1f} per hour)", static_cast<double>(all.reported) * SecondsPerHour / all.seconds);
    }
    text += ", " + Count(all.nearMisses, "near miss", "near misses") + ". ";
    return text + (all.highestSilent ? fmt::format("Highest score that did not fire: {:.1f}.", ScoreOf(*all.highestSilent))
                                     : "Nothing else came near the phrase.");
}

double ScoreOf(uint32_t q8)
{
    return static_cast<double>(q8) / 256.0;
}

std::string ClockText(double seconds)
{
    constexpr long HundredthsPerMinute = 6000;
    constexpr long MinutesPerHour = 60;
    const long hundredths = std::lround(seconds * 100.0);
    const long minutes = hundredths / HundredthsPerMinute;
    const double rest = static_cast<double>(hundredths % HundredthsPerMinute) / 100.0;
    return minutes < MinutesPerHour ? fmt::format("{}:{:05.2f}", minutes, rest)
                                    : fmt::format("{}:{:02}:{:05.2f}", minutes / MinutesPerHour, minutes % MinutesPerHour, rest);
}

} // namespace velox::console

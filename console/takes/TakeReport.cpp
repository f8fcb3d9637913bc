#include "console/takes/TakeReport.h"

#include "console/audio/SampleTime.h"
#include "console/text/StatusText.h"
#include "console/text/Style.h"
#include "engine/base/EngineErrors.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace velox::console
{

namespace
{

using engine::Status;
using engine::TakeReview;

bool HasSpeech(const TakeReview& review)
{
    return review.speechEnd > review.speechBegin;
}

std::string Place(int64_t begin, int64_t end)
{
    return fmt::format("from {:.2f} s to {:.2f} s", Seconds(begin), Seconds(end));
}

/// Where the clipping begins.
std::string FirstClipped(const TakeReview& review)
{
    return review.firstClipped ? fmt::format(", the first at {:.2f} s", Seconds(static_cast<int64_t>(*review.firstClipped))) : "";
}

std::string NotFoundText(const TakeReview& review, bool phraseKnown)
{
    const std::string where =
        HasSpeech(review) ? "in the speech " + Place(review.speechBegin, review.speechEnd) : "in the recording";
    const std::string score = phraseKnown ? fmt::format("; nothing scores above {:.0f}", review.bestScore) : "";
    return "the key phrase is not found " + where + score;
}

/// What the review found fault with; nothing when it found none.
std::optional<TakeRemark> FaultOf(const TakeReview& review, bool phraseKnown, double seconds)
{
    switch (review.status)
    {
    case Status::UtteranceTooShort:
        return TakeRemark{"UtteranceTooShort", fmt::format("too short: {:.2f} s cannot hold the key phrase", seconds),
                      "Record the whole phrase, with half a second before and after it."};
    case Status::NoSpeech:
        return TakeRemark{"NoSpeech", fmt::format("no speech in {:.2f} s", seconds),
                      "Is the right microphone chosen, and is it switched on?"};
    case Status::TooQuiet:
        return TakeRemark{
            "TooQuiet",
            fmt::format("too quiet: the speech has {:.0f} dB, at least {:.0f} dB are needed", review.level, engine::QuietLevel),
            "Come closer to the microphone, or raise the recording level."};
    case Status::Clipped:
        return TakeRemark{"Clipped",
                      fmt::format("clipped: {} samples are at full scale{}", review.clippedSamples, FirstClipped(review)),
                      "Lower the recording level, or step back from the microphone."};
    case Status::CutAtStart:
        return TakeRemark{"CutAtStart",
                      "cut at the start: speech is under way when the recording begins, and the key phrase is not whole",
                      "Start recording half a second before speaking."};
    case Status::CutAtEnd:
        return TakeRemark{
            "CutAtEnd",
            fmt::format("cut at the end: speech is still under way at {:.2f} s, and the key phrase is not whole", seconds),
            "Stop recording half a second after speaking."};
    case Status::TwoPhrases:
        return TakeRemark{"TwoPhrases", "the phrase seems to be said more than once", "Say it once in each recording."};
    case Status::PhraseNotFound:
        return TakeRemark{"PhraseNotFound", NotFoundText(review, phraseKnown), "Say the phrase as it was agreed on, in one go."};
    default:
        return std::nullopt;
    }
}

/// The number behind a piece of the last line that has it.
std::optional<double> NumberBehind(std::span<const LoggedLine> lines, std::string_view piece)
{
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
    {
        if (const std::size_t found = line->message.find(piece); found != std::string::npos)
        {
            return std::strtod(line->message.c_str() + found + piece.size(), nullptr);
        }
    }
    return std::nullopt;
}

LoggedFigures ReadFigures(std::span<const LoggedLine> lines)
{
    LoggedFigures figures;
    figures.score = NumberBehind(lines, "Best score(");
    if (const std::optional<double> quality = NumberBehind(lines, "Recording quality: "))
    {
        // A negative one is logged as an unsigned number of 32 bits.
        figures.quality = static_cast<int>(static_cast<uint32_t>(*quality));
    }
    return figures;
}

std::optional<TakeRemark> QualityRemark(const LoggedFigures& logged, const TakeEvidence& evidence)
{
    const bool tooLow = std::any_of(evidence.lines.begin(), evidence.lines.end(), [](const LoggedLine& line) {
        return line.message.find("Recording quality is too low") != std::string::npos;
    });
    if (!tooLow)
    {
        return std::nullopt;
    }
    const std::string figures =
        logged.quality && evidence.qualityThreshold
            ? fmt::format(" of {} dB above the noise, at least {} are needed", *logged.quality, *evidence.qualityThreshold)
            : "";
    return TakeRemark{"QualityTooLow", "the key phrase is found, but the voice's quality is too low:" + figures,
                  "Choose a quieter place, or come closer to the microphone."};
}

/// The engine's own words, when it refused something on the way.
std::optional<TakeRemark> EngineRemark(std::span<const LoggedLine> lines)
{
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [](const LoggedLine& line) { return line.engineStatus && *line.engineStatus != 0; });
    return found == lines.end()
               ? std::nullopt
               : std::optional(TakeRemark{"EngineStatus", "the engine reports " + EngineStatusText(*found->engineStatus),
                                      "Record the take again; --verbose shows every line of the library."});
}

/// Refused by the library although the review found the phrase.
TakeRemark ScoreRemark(const TakeReview& review, std::optional<double> threshold)
{
    if (review.phrase && threshold)
    {
        return {"ScoreTooLow",
                fmt::format("the key phrase {} is not clear enough: its score {:.0f} must be above {:g}",
                            Place(review.phrase->startSample, review.phrase->endSample), review.phrase->score, *threshold),
                "Say it as it was agreed on, or check the language's preDefinedKpdSensitivity."};
    }
    return {"PhraseNotFound", "the engine does not find the key phrase", "Say the phrase as it was agreed on, in one go."};
}

std::vector<TakeRemark> WhyRefused(const TakeReport& report, const TakeEvidence& evidence)
{
    if (auto quality = QualityRemark(report.logged, evidence))
    {
        return {*quality};
    }
    std::vector<TakeRemark> remarks;
    if (auto fault = FaultOf(report.review, evidence.phraseKnown, report.audio.seconds))
    {
        remarks.push_back(*fault);
    }
    if (auto engine = EngineRemark(evidence.lines))
    {
        remarks.push_back(*engine);
    }
    if (remarks.empty())
    {
        remarks.push_back(ScoreRemark(report.review, evidence.threshold));
    }
    return remarks;
}

nlohmann::ordered_json PlaceJson(bool known, int64_t begin, int64_t end)
{
    return known ? nlohmann::ordered_json{{"begin", Seconds(begin)}, {"end", Seconds(end)}} : nlohmann::ordered_json(nullptr);
}

template <typename Value>
nlohmann::ordered_json Optional(const std::optional<Value>& value)
{
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
}

/// What was measured, in one line.
std::string Figures(const TakeReport& report)
{
    std::string text;
    const TakeReview& review = report.review;
    if (review.phrase)
    {
        text += fmt::format("phrase {}", Place(review.phrase->startSample, review.phrase->endSample));
    }
    else if (HasSpeech(review))
    {
        text += fmt::format("speech {}", Place(review.speechBegin, review.speechEnd));
    }
    if (report.logged.score)
    {
        text += fmt::format(", score {:.0f}", *report.logged.score);
        text += report.threshold ? fmt::format(" (threshold {:g})", *report.threshold) : "";
    }
    if (report.logged.quality)
    {
        text += fmt::format(", {} dB above the noise", *report.logged.quality);
    }
    if (HasSpeech(review))
    {
        text += fmt::format(", level {:.0f} dB", review.level);
    }
    return text.starts_with(", ") ? text.substr(2) : text;
}

} // namespace

TakeReport ReportTake(const std::string& file, Audio audio, TakeReview review, const TakeEvidence& evidence)
{
    TakeReport report;
    report.file = file;
    report.accepted = evidence.accepted;
    report.audio = std::move(audio);
    report.review = std::move(review);
    report.logged = ReadFigures(evidence.lines);
    report.threshold = evidence.threshold;
    if (!report.accepted)
    {
        report.remarks = WhyRefused(report, evidence);
    }
    else if (auto fault = FaultOf(report.review, evidence.phraseKnown, report.audio.seconds))
    {
        report.remarks.push_back(*fault);
    }
    return report;
}

TakeReport ReportUnreadable(const std::string& file, const CommandFailure& failure)
{
    TakeReport report;
    report.file = file;
    report.readable = false;
    const std::string_view message = failure.what();
    // The message begins with the file's name, which stands before the remark anyway.
    report.remarks.push_back(
        {"Unreadable", std::string(message.substr(message.starts_with(file) ? file.size() + 1 : 0)), failure.fix});
    return report;
}

std::string TakeText(const TakeReport& report, std::size_t number, const Style& style)
{
    std::string text =
        fmt::format("{:2}. {}: {}\n", number, report.file, report.accepted ? style.Good("accepted") : style.Bad("refused"));
    const auto add = [&](const std::string& line) {
        text += "      " + line + "\n";
    };
    for (const TakeRemark& remark : report.remarks)
    {
        add((report.accepted ? "note: " : "") + remark.text);
        add("fix: " + remark.fix);
    }
    for (const std::string& line : {Figures(report), report.audio.conversion})
    {
        if (!line.empty())
        {
            add(style.Dim(line));
        }
    }
    return text;
}

nlohmann::ordered_json TakeJson(const TakeReport& report)
{
    const TakeReview& review = report.review;
    nlohmann::ordered_json remarks = nlohmann::ordered_json::array();
    for (const TakeRemark& remark : report.remarks)
    {
        remarks.push_back({{"code", remark.code}, {"text", remark.text}, {"fix", remark.fix}});
    }
    nlohmann::ordered_json json{{"file", report.file}, {"accepted", report.accepted}, {"remarks", std::move(remarks)}};
    json["seconds"] = report.audio.seconds;
    json["conversion"] = report.audio.conversion;
    json["speech"] = PlaceJson(HasSpeech(review), review.speechBegin, review.speechEnd);
    json["phrase"] = review.phrase ? PlaceJson(true, review.phrase->startSample, review.phrase->endSample) : nullptr;
    json["level"] = HasSpeech(review) ? nlohmann::ordered_json(review.level) : nullptr;
    json["clippedSamples"] = review.clippedSamples;
    json["score"] = Optional(report.logged.score);
    json["threshold"] = Optional(report.threshold);
    json["quality"] = Optional(report.logged.quality);
    return json;
}

} // namespace velox::console

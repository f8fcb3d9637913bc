#include "console/takes/TakeReport.h"

#include "console/audio/SampleTime.h"
#include "console/text/LanguageName.h"
#include "console/text/StatusText.h"
#include "console/text/Wording.h"
#include "engine/sound/FeatureStream.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
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

std::string StretchText(int64_t begin, int64_t end)
{
    return PlaceText(Seconds(begin), Seconds(end));
}

std::string WhereNotFound(const TakeReview& review)
{
    return (HasSpeech(review) ? "in the speech from " + StretchText(review.speechBegin, review.speechEnd) : "in the recording") +
           (review.bestScore > engine::ScoreScale::Least ? fmt::format("; nothing scores above {:.0f}", review.bestScore) : "");
}

/// What a review may find fault with; WhyUseless fills the names in.
struct Fault
{
    Status status;
    const char* code;
    const char* text;
    const char* fix;
};
constexpr std::array Faults{
    Fault{Status::UtteranceTooShort, "UtteranceTooShort", "too short: {seconds:.2f} s cannot hold the key phrase",
          "Record the whole phrase, with half a second before and after it."},
    Fault{Status::NoSpeech, "NoSpeech", "no speech in {seconds:.2f} s", "Is the right microphone chosen, and is it switched on?"},
    Fault{Status::TooQuiet, "TooQuiet", "too quiet: the speech has {level:.0f} dB, at least {least:.0f} dB are needed",
          "Come closer to the microphone, or raise the recording level."},
    Fault{Status::Clipped, "Clipped", "clipped: {clipped} samples are at full scale, the first at {first:.2f} s",
          "Lower the recording level, or step back from the microphone."},
    Fault{Status::CutAtStart, "CutAtStart",
          "cut at the start: speech is under way when the recording begins, and the key phrase is not whole",
          "Start recording half a second before speaking."},
    Fault{Status::CutAtEnd, "CutAtEnd",
          "cut at the end: speech is still under way at {seconds:.2f} s, and the key phrase is not whole",
          "Stop recording half a second after speaking."},
    Fault{Status::TwoPhrases, "TwoPhrases", "the phrase seems to be said more than once", "Say it once in each recording."},
    Fault{Status::PhraseNotFound, "PhraseNotFound", "the key phrase is not found {where}",
          "Say the phrase as it was agreed on, in one go."},
};

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

/// Refused by the library although the review found the phrase.
Remark ScoreRemark(const Take& take)
{
    const std::optional<engine::Detection>& phrase = take.review.phrase;
    if (phrase && take.threshold)
    {
        return {Tone::Bad, "ScoreTooLow",
                fmt::format("the key phrase from {} is not clear enough: its score {:.0f} must be above {:g}",
                            StretchText(phrase->startSample, phrase->endSample), phrase->score, *take.threshold),
                "Say it as it was agreed on, or check the language's preDefinedKpdSensitivity."};
    }
    return {Tone::Bad, "PhraseNotFound", "the engine does not find the key phrase",
            "Say the phrase as it was agreed on, in one go."};
}

/// Its quality, or else its own faults and the engine's words, or else its score.
std::vector<Remark> WhyRefused(const Take& take, const TakeEvidence& evidence)
{
    if (NumberBehind(evidence.lines, "Recording quality is too low"))
    {
        const std::string figures =
            take.quality && evidence.qualityThreshold
                ? fmt::format(": {} dB above the noise, at least {} are needed", *take.quality, *evidence.qualityThreshold)
                : "";
        return {{Tone::Bad, "QualityTooLow", "the key phrase is found, but the voice's quality is too low" + figures,
                 "Choose a quieter place, or come closer to the microphone."}};
    }
    std::vector<Remark> remarks;
    if (const auto fault = WhyUseless(take.review, take.audio.seconds))
    {
        remarks.push_back(*fault);
    }
    const auto line = std::ranges::find_if(evidence.lines, [](const auto& each) { return each.engineStatus.value_or(0) != 0; });
    if (line != evidence.lines.end())
    {
        remarks.push_back({Tone::Bad, "EngineStatus", "the engine reports " + EngineStatusText(*line->engineStatus),
                           "Record the take again; --verbose shows every line of the library."});
    }
    return remarks.empty() ? std::vector{ScoreRemark(take)} : remarks;
}

/// A stretch of the take: people read it as one, machines as two seconds.
void AddStretch(const std::string& name, bool known, int64_t begin, int64_t end, std::vector<Fact>* facts)
{
    facts->push_back({name + "Begin", known ? Value(Seconds(begin)) : Value(), name, known ? StretchText(begin, end) : ""});
    facts->push_back({name + "End", known ? Value(Seconds(end)) : Value()});
}

/// A figure whose name is its key; people do not see one that is not known.
template <typename Number>
Fact NumberFact(const char* name, const std::optional<Number>& number, const char* form, const char* meaning)
{
    return {name, number, name, number ? fmt::format(fmt::runtime(form), *number) : "", meaning};
}

std::vector<Fact> FactsOf(const Take& take)
{
    const TakeReview& review = take.review;
    const bool speech = HasSpeech(review);
    const auto level = speech ? std::optional(review.level) : std::nullopt;
    const std::size_t clipped = review.clippedSamples;
    const engine::Detection phrase = review.phrase.value_or(engine::Detection{});
    std::vector<Fact> facts;
    AddStretch("phrase", review.phrase.has_value(), phrase.startSample, phrase.endSample, &facts);
    facts.insert(
        facts.end(),
        {NumberFact("score", take.score, "{:.0f}", "how much the take sounds like the phrase; it must be above the threshold"),
         {"threshold", take.threshold},
         NumberFact("quality", take.quality, "{} dB above the noise", "how far the voice stands out of the noise"),
         NumberFact("level", level, "{:.0f} dB", "of the speech; a full-scale square wave has 0 dB"),
         NumberFact(
             "likeness", take.likeness, "{:.1f}",
             "how much the take sounds like a user who is learned from the other takes; 3 at most, below 0 like anybody")});
    AddStretch("speech", speech, review.speechBegin, review.speechEnd, &facts);
    facts.insert(facts.end(),
                 {{"clippedSamples", clipped, "clipped", clipped > 0 ? Counted(clipped, "sample") : ""},
                  {"seconds", take.audio.seconds, "length", take.readable ? fmt::format("{:.2f} s", take.audio.seconds) : ""},
                  {"conversion", take.audio.conversion, "", take.audio.conversion}});
    return facts;
}

template <typename Number>
Curve FrameCurve(const TakeReview& review, Number number)
{
    Curve curve{Seconds(engine::FeatureStream::MiddleSample(0))};
    for (const engine::FrameReview& frame : review.frames)
    {
        curve.values.push_back(number(frame));
    }
    return curve;
}

Picture PictureOf(const Take& take)
{
    const TakeReview& review = take.review;
    Picture picture{0.0, take.audio.seconds, WaveOf(take.audio.samples)};
    if (HasSpeech(review))
    {
        picture.marks.push_back({Mark::Kind::Speech, Seconds(review.speechBegin), Seconds(review.speechEnd)});
    }
    if (review.phrase)
    {
        const double score = take.score.value_or(review.phrase->score);
        picture.marks.push_back({Mark::Kind::Phrase, Seconds(review.phrase->startSample), Seconds(review.phrase->endSample),
                                 fmt::format("score {:.0f}", score), score});
    }
    if (review.firstClipped)
    {
        const double moment = Seconds(static_cast<int64_t>(*review.firstClipped));
        picture.marks.push_back({Mark::Kind::Clipped, moment, moment, Counted(review.clippedSamples, "clipped sample")});
    }
    picture.quality = FrameCurve(review, [](const engine::FrameReview& frame) { return frame.quality; });
    if (review.bestScore > engine::ScoreScale::Least)
    {
        picture.score = FrameCurve(review, [](const engine::FrameReview& frame) {
            return frame.score > engine::ScoreScale::Least ? frame.score : std::numeric_limits<float>::quiet_NaN();
        });
        picture.threshold = take.threshold;
    }
    return picture;
}

} // namespace

Take MakeTake(const std::string& file, Audio audio, TakeReview review, const TakeEvidence& evidence)
{
    Take take{file, evidence.accepted};
    take.audio = std::move(audio);
    take.review = std::move(review);
    take.threshold = evidence.threshold;
    take.score = NumberBehind(evidence.lines, "Best score(");
    if (const auto quality = NumberBehind(evidence.lines, "Recording quality: "))
    {
        take.quality = static_cast<int>(static_cast<uint32_t>(*quality)); // a negative one is logged as an unsigned number
    }
    if (!take.accepted)
    {
        take.remarks = WhyRefused(take, evidence);
    }
    else if (auto fault = WhyUseless(take.review, take.audio.seconds))
    {
        fault->tone = Tone::Note;
        take.remarks.push_back(*fault);
    }
    for (const std::string& warning : take.audio.warnings)
    {
        take.remarks.push_back({Tone::Warning, "Sound", warning, "Check how the take was recorded."});
    }
    return take;
}

Take UnreadableTake(const std::string& file, const CommandFailure& failure)
{
    Take take{file, false, false};
    take.remarks.push_back(UnreadableRemark(file, failure));
    return take;
}

std::optional<Remark> WhyUseless(const TakeReview& review, double seconds)
{
    const auto fault = std::ranges::find(Faults, review.status, &Fault::status);
    if (fault == Faults.end())
    {
        return std::nullopt;
    }
    const double firstClipped = Seconds(static_cast<int64_t>(review.firstClipped.value_or(0)));
    return Remark{Tone::Bad, fault->code,
                  fmt::format(fmt::runtime(fault->text), fmt::arg("seconds", seconds), fmt::arg("level", review.level),
                              fmt::arg("least", engine::QuietLevel), fmt::arg("clipped", review.clippedSamples),
                              fmt::arg("first", firstClipped), fmt::arg("where", WhereNotFound(review))),
                  fault->fix};
}

Remark UnreadableRemark(const std::string& file, const CommandFailure& failure)
{
    std::string_view why = failure.what();
    why.remove_prefix(why.starts_with(file) ? file.size() + 1 : 0);
    why.remove_suffix(why.ends_with('.') ? 1 : 0);
    return {Tone::Bad, "Unreadable", std::string(why), failure.fix};
}

Report VerificationReport(uint16_t language, std::span<const Take> takes)
{
    Report report;
    report.facts = {{"language", language, "language", LanguageText(language)}};
    if (const auto known = std::ranges::find_if(takes, [](const Take& take) { return take.threshold.has_value(); });
        known != takes.end())
    {
        report.facts.push_back(
            {"threshold", known->threshold, "threshold", fmt::format("{:g}", *known->threshold), "a score must lie above it"});
    }
    std::vector<std::string> again;
    for (const Take& take : takes)
    {
        report.results.push_back({take.file, take.accepted ? "accepted" : "refused", take.accepted ? Tone::Good : Tone::Bad,
                                  FactsOf(take), take.remarks});
        report.results.back().picture = PictureOf(take);
        if (!take.accepted)
        {
            again.push_back(take.file);
        }
    }
    report.verdict = takes.size() == 1 ? fmt::format("The take is {}.", again.empty() ? "accepted" : "refused")
                                       : fmt::format("{} of {} takes are accepted.", takes.size() - again.size(), takes.size());
    if (!again.empty())
    {
        const bool readable = std::ranges::all_of(takes, &Take::readable);
        report.exitCode = readable ? ExitCode::Refused : ExitCode::BadInput;
        report.verdict += " Record again: " + Joined(again) + ".";
    }
    return report;
}

Report Failed(Report report, const CommandFailure& failure)
{
    report.exitCode = failure.exitCode;
    report.error = Problem{failure.what(), failure.fix};
    return report;
}

} // namespace velox::console

#include "console/listening/Pattern.h"

#include "console/inspect/Inspection.h"
#include "console/text/CommandFailure.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/WriteWhole.h"
#include "firmware/BlockLayout.h"
#include "firmware/DspPattern.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace velox::console
{

namespace
{

using firmware::PatternLayout;

/// What a file is that is no arming block, and what to do instead; nothing when it may be one.
std::optional<Problem> OtherKind(std::span<const uint8_t> bytes, const std::string& file)
{
    constexpr std::string_view Sound = "RIFF";
    if (bytes.size() >= Sound.size() && std::ranges::equal(bytes.first(Sound.size()), Sound))
    {
        return Problem{"a recording", "Name the arming block after --pattern, and recordings without it."};
    }
    const Inspection inspection = Inspect(bytes);
    const FileKind kind = inspection.kind;
    if (kind == FileKind::ArmingPattern || kind == FileKind::BlockHead || kind == FileKind::Unknown)
    {
        return std::nullopt;
    }
    if (kind == FileKind::DetectionResult)
    {
        return Problem{"a result block, which the DSP reports", "Name the block that arms it, from velox-kws arm."};
    }
    if (kind != FileKind::FirmwareModel)
    {
        return Problem{fmt::format("no arming block but: {}", FileKindName(kind)), "Name the block from velox-kws arm."};
    }
    const bool ofUser = inspection.facts.empty() || inspection.ofUser;
    return Problem{
        ofUser ? "a user model" : "everybody's model",
        fmt::format("Make its arming block with velox-kws arm LANG{} --out pattern.bin.", ofUser ? " --model " + file : "")};
}

/// What tells two patterns of one detector apart.
std::string Difference(uint16_t language, std::span<const uint8_t> given, std::span<const uint8_t> built)
{
    if (std::ranges::equal(given, built))
    {
        return {};
    }
    std::string text = fmt::format("the library builds another pattern for language {} now", LanguageText(language));
    if (given.size() >= PatternLayout::ModelOffset)
    {
        if (ThresholdOf(given) != ThresholdOf(built))
        {
            text += fmt::format(", with a threshold of {:.1f} instead of {:.1f}", ThresholdOf(built), ThresholdOf(given));
        }
        if (!std::ranges::equal(given.subspan(PatternLayout::ModelOffset), built.subspan(PatternLayout::ModelOffset)))
        {
            text += ", with another model (a user's needs --model)";
        }
    }
    return text + "; language and user match are told of that one, as the block does not say which pattern fired";
}

} // namespace

std::vector<uint8_t> ReadPattern(const std::string& file)
{
    std::vector<uint8_t> bytes = ReadWhole(PathFromUtf8(file));
    if (const auto other = OtherKind(bytes, file))
    {
        throw CommandFailure(ExitCode::BadInput, fmt::format("{} is {}.", file, other->message), other->fix);
    }
    return bytes;
}

double ThresholdOf(std::span<const uint8_t> pattern)
{
    const auto threshold = firmware::ReadUnsigned<uint32_t>(pattern, PatternLayout::ThresholdOffset);
    return static_cast<double>(static_cast<int32_t>(threshold)) / 256.0;
}

firmware::DetectorId DetectorOf(std::span<const uint8_t> pattern)
{
    firmware::DetectorId detector{};
    std::ranges::copy(pattern.subspan(PatternLayout::PatternTypeOffset, detector.size()), detector.begin());
    return detector;
}

std::string RefusalText(firmware::PatternRefusal refusal)
{
    const firmware::PatternRefusalText& text = firmware::TextOf(refusal);
    return fmt::format("at 0x{:02X}, {}: {}", text.offset, text.field, text.sentence);
}

std::optional<Remark> SimulatorWarning(std::span<const uint8_t> pattern)
{
    firmware::DspPattern read;
    const auto refusal = firmware::ReadPattern(pattern, DetectorOf(pattern), &read);
    const auto model = pattern.subspan(PatternLayout::ModelOffset);
    const bool ofTheStandIn = model.size() >= engine::BlobHeader::Size &&
                              engine::IsBlob(model.data(), engine::BlobKind::Firmware) &&
                              firmware::ReadUnsigned<uint32_t>(model, sizeof(engine::BlobKind)) == engine::BlobHeader::Version;
    if (!refusal || !ofTheStandIn)
    {
        return std::nullopt;
    }
    return Remark{Tone::Warning, std::string(firmware::TextOf(*refusal).name),
                  "the simulated DSP refuses this block " + RefusalText(*refusal),
                  "Look at the model with velox-kws inspect, and at the configuration with velox-kws doctor."};
}

PatternOrigin FindPatternOrigin(std::span<const uint16_t> languages, const std::function<std::vector<uint8_t>(uint16_t)>& build,
                                std::span<const uint8_t> pattern)
{
    const auto fits = [&](uint16_t language) {
        try
        {
            return std::ranges::equal(build(language), pattern);
        }
        catch (const CommandFailure&)
        {
            return false; // another one may fit
        }
    };
    std::vector<uint16_t> fitting(languages.begin(), languages.end());
    if (languages.size() > 1)
    {
        std::erase_if(fitting, [&](uint16_t language) { return !fits(language); });
    }
    if (fitting.empty())
    {
        throw CommandFailure(
            ExitCode::Usage,
            fmt::format("The pattern is that of none of the {} configured languages as they are now.", languages.size()),
            "Say with --language which one it is for. A user's own pattern needs the user's --model, too.");
    }
    std::vector<std::string> names;
    std::ranges::transform(fitting, std::back_inserter(names), LanguageText);
    // The library parses for the language that it built last.
    std::vector<uint8_t> built = build(fitting.front());
    std::string difference = Difference(fitting.front(), pattern, built);
    return {fitting.front(), std::move(built), std::move(difference), fitting.size() > 1 ? Joined(names) : ""};
}

} // namespace velox::console

#include "console/inspect/Inspection.h"

#include "console/inspect/ThresholdText.h"
#include "console/text/Words.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

using firmware::ReadUnsigned;

constexpr std::string_view KindNames[]{"unknown",
                                       "empty file",
                                       "arming pattern",
                                       "detection result",
                                       "beginning of a firmware block",
                                       "acoustic model",
                                       "ZNorm population",
                                       "phrase model",
                                       "key-phrase, firmware or user model",
                                       "threshold file"};

/// Text as an editor writes it: ASCII, or what a byte order mark begins.
bool IsText(std::string_view text)
{
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") || text.starts_with("\xEF\xBB\xBF") ||
           std::ranges::all_of(text, [](char own) { return (own >= ' ' && own <= '~') || (own >= '\t' && own <= '\r'); });
}

/// For which command a file of another kind is, as far as its first bytes tell; empty when they do not.
std::string_view OtherFileHint(std::string_view text)
{
    const auto begins = [&](std::string_view mark) {
        return text.starts_with(mark);
    };
    // A detection result begins with the byte of XML, too.
    return begins("RIFF") || begins("fLaC") || begins("OggS")
               ? "it begins as a sound file does: verify, enroll and listen read those"
           : (begins("<") || begins("\xEF\xBB\xBF<")) && IsText(text)
               ? "it begins as an XML file does: doctor checks configuration files"
           : begins("MZ") ? "it is a program or DLL: doctor looks at the engine's"
                          : "";
}

/// A text, or a number with a remark behind it, in whatever encoding.
bool IsThreshold(std::string_view text)
{
    constexpr std::size_t LongestThresholdFile = 4096;
    const bool beginsAsText = IsText(text.substr(0, text.find_first_of("\r\n #;"))) && text.find('\0') == std::string_view::npos;
    return text.size() <= LongestThresholdFile && (IsText(text) || (beginsAsText && ReadThresholdText(text).isNumber));
}

FileKind Recognise(std::span<const uint8_t> bytes)
{
    const FileKind model = RecogniseModel(bytes);
    const std::string_view text = AsText(bytes);
    return bytes.empty()                  ? FileKind::Empty
           : model != FileKind::Unknown   ? model
           : !OtherFileHint(text).empty() ? FileKind::Unknown
           : IsThreshold(text)            ? FileKind::Threshold
                                          : RecogniseBlock(bytes);
}

void InspectThreshold(std::span<const uint8_t> bytes, Inspection* inspection)
{
    const ThresholdText threshold = ReadThresholdText(AsText(bytes));
    inspection->AddBytes("threshold", bytes, 0, bytes.size(),
                         threshold.isNumber ? Q8Text(threshold.q8) + " in the library's unit of 1/256"
                                            : "the library takes 0 without a message",
                         threshold.whatIsWrong);
    if (threshold.isNumber)
    {
        inspection->fields.back().value = threshold.text;
    }
    if (threshold.value < ThresholdText::LeastScore || threshold.value > ThresholdText::MostScore)
    {
        inspection->notes.push_back(
            fmt::format("scores lie between 0 and 255: {} is above this threshold", threshold.value < 0 ? "every one" : "none"));
    }
}

void InspectUnknown(std::span<const uint8_t> bytes, Inspection* inspection)
{
    inspection->AddBytes("(bytes)", bytes, 0, bytes.size(), "of no kind that inspect knows");
    if (const std::string_view hint = OtherFileHint(AsText(bytes)); !hint.empty())
    {
        inspection->notes.emplace_back(hint);
    }
    inspection->notes.emplace_back(
        bytes.empty()
            ? "as a user model stream: there is no user model, the language's predefined model is armed; as a model "
              "file it is refused, as a threshold file it counts as 0, as a constraints file it is fine"
            : "as a user model stream: it does not begin with \"VWOV\", so the language's predefined model is armed; as "
              "a model file it is handed on as it is");
}

uint64_t NumberOf(std::span<const uint8_t> bytes)
{
    return bytes.size() == sizeof(uint64_t)   ? ReadUnsigned<uint64_t>(bytes, 0)
           : bytes.size() == sizeof(uint32_t) ? ReadUnsigned<uint32_t>(bytes, 0)
                                              : ReadUnsigned<uint16_t>(bytes, 0);
}

std::string ValueText(FieldForm form, std::span<const uint8_t> bytes)
{
    constexpr std::size_t ShownBytes = 16;
    switch (form)
    {
    case FieldForm::Text:
        return fmt::format("\"{}\"", AsText(bytes));
    case FieldForm::Number:
        return fmt::format("{}", NumberOf(bytes));
    case FieldForm::Hexadecimal:
        return fmt::format("0x{:08X}", NumberOf(bytes));
    case FieldForm::Q8:
        return Q8Text(static_cast<int32_t>(NumberOf(bytes)));
    case FieldForm::BigEndianQ8:
        return Q8Text(bytes[0] << 8U | bytes[1]);
    case FieldForm::Guid:
        return fmt::format("{{{:08X}-{:04X}-{:04X}-{:02X}{:02X}-{:02X}}}", ReadUnsigned<uint32_t>(bytes, 0),
                           ReadUnsigned<uint16_t>(bytes, 4), ReadUnsigned<uint16_t>(bytes, 6), bytes[8], bytes[9],
                           fmt::join(bytes.subspan(10), ""));
    default:
        return fmt::format("{:02X}{}", fmt::join(bytes.first(std::min(bytes.size(), ShownBytes)), " "),
                           bytes.size() > ShownBytes ? " ..." : "");
    }
}

} // namespace

std::string_view FileKindName(FileKind kind)
{
    return KindNames[static_cast<std::size_t>(kind)];
}

const InspectedField* Inspection::Find(std::string_view path) const
{
    const auto found = std::ranges::find(fields, path, &InspectedField::path);
    return found == fields.end() ? nullptr : &*found;
}

const InspectedField* Inspection::FirstError() const
{
    const auto found = std::ranges::find_if(fields, [](const InspectedField& field) { return !field.error.empty(); });
    return found == fields.end() ? nullptr : &*found;
}

bool Inspection::Add(std::span<const FieldLayout> layouts, std::span<const uint8_t> file, std::size_t base,
                     std::string_view prefix)
{
    for (const FieldLayout& layout : layouts)
    {
        const std::size_t begin = base + layout.offset;
        const std::span<const uint8_t> own = file.subspan(begin, std::min(layout.size, file.size() - begin));
        const bool whole = own.size() == layout.size;
        fields.push_back({fmt::format("{}{}", prefix, layout.name), begin, own.size(),
                          ValueText(whole ? layout.form : FieldForm::Bytes, own), std::string(layout.meaning)});
        if (!whole)
        {
            fields.back().error = fmt::format("only {} of the field's {} bytes are there", own.size(), layout.size);
            return false;
        }
        if (layout.must && NumberOf(own) != *layout.must)
        {
            fields.back().error = fmt::format("must be {}", *layout.must == 0 ? "0" : fmt::format("0x{:08X}", *layout.must));
        }
    }
    return true;
}

void Inspection::AddBytes(std::string path, std::span<const uint8_t> file, std::size_t begin, std::size_t end,
                          std::string meaning, std::string error)
{
    if (begin < end)
    {
        fields.push_back({std::move(path), begin, end - begin, ValueText(FieldForm::Bytes, file.subspan(begin, end - begin)),
                          std::move(meaning), std::move(error)});
    }
}

void Inspection::Expect(bool right, std::string_view path, std::string otherwise)
{
    const auto found = std::ranges::find(fields, path, &InspectedField::path);
    if (!right && found != fields.end() && found->error.empty())
    {
        found->error = std::move(otherwise);
    }
}

Inspection Inspect(std::span<const uint8_t> bytes)
{
    Inspection inspection{Recognise(bytes)};
    switch (inspection.kind)
    {
    case FileKind::ArmingPattern:
    case FileKind::DetectionResult:
    case FileKind::BlockHead:
        InspectBlock(bytes, &inspection);
        break;
    case FileKind::Threshold:
        InspectThreshold(bytes, &inspection);
        break;
    case FileKind::Unknown:
    case FileKind::Empty:
        InspectUnknown(bytes, &inspection);
        break;
    default:
        InspectModel(bytes, &inspection);
    }
    return inspection;
}

std::string OffsetText(std::size_t offset)
{
    return fmt::format("0x{:04X}", offset);
}

} // namespace velox::console

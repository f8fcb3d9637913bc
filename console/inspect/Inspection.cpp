#include "console/inspect/Inspection.h"

#include "console/inspect/BlockInspection.h"
#include "console/inspect/FieldReader.h"
#include "console/inspect/ModelInspection.h"
#include "console/inspect/ThresholdText.h"
#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

constexpr std::size_t LongestThresholdFile = 4096;

/// Text as an editor writes it: ASCII, or what a byte order mark begins.
bool IsText(std::string_view text)
{
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") || text.starts_with("\xEF\xBB\xBF"))
    {
        return true;
    }
    return std::all_of(text.begin(), text.end(),
                       [](char own) { return (own >= ' ' && own <= '~') || (own >= '\t' && own <= '\r'); });
}

/// A file for another command, by what it begins with.
struct OtherFile
{
    std::string_view beginning;
    std::string_view hint;
    bool text = false;
};

constexpr std::string_view SoundFileHint = "It begins as a sound file does: verify, enroll and listen read those.";
constexpr std::string_view XmlFileHint = "It begins as an XML file does: doctor checks configuration files.";

constexpr std::array OtherFiles{
    OtherFile{"RIFF", SoundFileHint},
    OtherFile{"fLaC", SoundFileHint},
    OtherFile{"OggS", SoundFileHint},
    OtherFile{"<", XmlFileHint, true}, // a detection result begins with this byte, too
    OtherFile{"\xEF\xBB\xBF<", XmlFileHint, true},
    OtherFile{"MZ", "It is a program or DLL: doctor looks at the engine's."},
};

const OtherFile* FindOtherFile(std::string_view text)
{
    const auto* const found = std::find_if(OtherFiles.begin(), OtherFiles.end(), [&](const OtherFile& other) {
        return text.starts_with(other.beginning) && (!other.text || IsText(text));
    });
    return found == OtherFiles.end() ? nullptr : found;
}

/// A number with a remark behind it, in whatever encoding.
bool BeginsAsAText(std::string_view text)
{
    return IsText(text.substr(0, text.find_first_of("\r\n #;"))) && text.find('\0') == std::string_view::npos &&
           ReadThresholdText(text).isNumber;
}

void InspectThreshold(FieldReader* reader)
{
    const std::string_view content = AsText(reader->Ahead(reader->Left()));
    const ThresholdText threshold = ReadThresholdText(content);
    if (threshold.offset > 0)
    {
        reader->Bytes("(blanks)", threshold.offset, "skipped");
    }
    if (!threshold.isNumber)
    {
        if (reader->Left() > 0)
        {
            reader->Bytes("(text)", reader->Left(), "no number");
        }
        reader->Stop(threshold.whatIsWrong + " The library takes 0 without a message.");
    }
    reader->Bytes("number", threshold.text.size(), "the threshold: " + Q8Text(threshold.q8) + " in the library's unit of 1/256");
    reader->Describe(threshold.text);
    reader->Expect(!threshold.saturated, threshold.whatIsWrong);
    if (reader->Left() > 0)
    {
        reader->Bytes("(rest)", reader->Left(), threshold.rest.empty() ? "line end" : "ignored");
        if (!threshold.rest.empty())
        {
            reader->Describe(fmt::format("\"{}\"", threshold.rest));
            reader->ExpectAt(threshold.whatIsWrong.empty() || threshold.saturated, threshold.restOffset, threshold.whatIsWrong);
        }
    }
    if (threshold.value < ThresholdText::LeastScore || threshold.value > ThresholdText::MostScore)
    {
        reader->Note("Scores lie between 0 and 255: " +
                     std::string(threshold.value < 0 ? "every one is above this threshold." : "none is above this threshold."));
    }
}

void InspectAs(FileKind kind, FieldReader* reader)
{
    switch (kind)
    {
    case FileKind::ArmingPattern:
        return InspectArmingPattern(reader);
    case FileKind::DetectionResult:
        return InspectDetectionResult(reader);
    case FileKind::BlockHead:
        return InspectBlockHead(reader);
    case FileKind::Threshold:
        return InspectThreshold(reader);
    case FileKind::Unknown:
    case FileKind::Empty:
        return;
    default:
        return InspectModel(kind, reader);
    }
}

/// What a file of this kind is to the library besides.
void AddNotes(std::span<const uint8_t> bytes, Inspection* inspection)
{
    if (inspection->kind == FileKind::FirmwareModel)
    {
        inspection->notes.emplace_back("A user model stream with these bytes is armed as a whole: it begins with \"VWOV\".");
    }
    else if (inspection->kind == FileKind::Empty)
    {
        inspection->notes.emplace_back(
            "As a user model stream: there is no user model, the language's predefined model is armed. As "
            "a model file it is refused; as a threshold file it counts as 0; as a constraints file it "
            "is fine.");
    }
    else if (inspection->kind == FileKind::Unknown)
    {
        if (const OtherFile* other = FindOtherFile(AsText(bytes)))
        {
            inspection->notes.emplace_back(other->hint);
        }
        inspection->notes.emplace_back(
            "As a user model stream: it does not begin with \"VWOV\", so the language's predefined model "
            "is armed. As a model file it is handed on as it is.");
    }
}

} // namespace

FileKind RecogniseFile(std::span<const uint8_t> bytes)
{
    if (bytes.empty())
    {
        return FileKind::Empty;
    }
    if (const FileKind model = RecogniseModel(bytes); model != FileKind::Unknown)
    {
        return model;
    }
    if (FindOtherFile(AsText(bytes)) != nullptr)
    {
        return FileKind::Unknown;
    }
    const std::string_view text = AsText(bytes);
    if (bytes.size() <= LongestThresholdFile && (IsText(text) || BeginsAsAText(text)))
    {
        return FileKind::Threshold;
    }
    return RecogniseBlock(bytes);
}

Inspection Inspect(std::span<const uint8_t> bytes)
{
    Inspection inspection;
    inspection.kind = RecogniseFile(bytes);
    inspection.size = bytes.size();
    FieldReader reader(bytes, &inspection);
    try
    {
        InspectAs(inspection.kind, &reader);
    }
    catch (const ReadingStopped&)
    {
        // The error and what was read before it are in the inspection.
    }
    if (reader.Position() < bytes.size())
    {
        inspection.rest = ByteRange{reader.Position(), bytes.size() - reader.Position()};
    }
    AddNotes(bytes, &inspection);
    return inspection;
}

} // namespace velox::console

#include "tests/console/support/DoctorDefects.h"

#include "tests/console/support/InspectionSamples.h"

using namespace velox::console;
using enum Operation;

namespace
{

using Project = const DoctorProject&;

const std::vector<Operation> All{Capabilities, Verification, Training, Arming, Parsing};
const std::vector<Operation> Lookups{Verification, Training, Arming, Parsing};
const std::vector<Operation> Engine{Verification, Training};

std::function<void(Project)> Replacing(const std::string& piece, const std::string& replacement)
{
    return [=](Project project) {
        project.Replace(piece, replacement);
    };
}

std::function<void(Project)> Writing(const std::string& name, const std::string& bytes)
{
    return [=](Project project) {
        project.WriteModel(name, bytes);
    };
}

std::function<void(Project)> Removing(const std::string& name)
{
    return [=](Project project) {
        project.RemoveModel(name);
    };
}

std::string Damaged(InspectionSamples::Bytes bytes)
{
    bytes[100] ^= 1U;
    return InspectionSamples::ToText(bytes);
}

} // namespace

const std::vector<DoctorDefect>& DoctorDefects()
{
    static const std::vector<DoctorDefect> defects{
        // the file
        {"Empty", [](Project project) { project.WriteXml(""); }, Tone::Bad, 0, "no content", All},
        {"Utf16", [](Project project) { project.WriteXml("\xFF\xFE<"); }, Tone::Bad, 1, "UTF-16", All},
        {"MismatchedElement", Replacing("</fwBlob>", "</fwblob>"), Tone::Bad, 7, "closed by another's name", All},
        {"AttributeWithoutQuotes", Replacing("id=\"1033\"", "id=1033"), Tone::Bad, 3, "no quotes", All},
        {"AttributeTwice", Replacing("id=\"1033\"", "id=\"1033\" id=\"1\""), Tone::Bad, 3, "stands twice", All},
        {"OnlyAComment", [](Project project) { project.WriteXml("<!-- nothing -->"); }, Tone::Bad, 1, "no element", All},
        {"SecondRoot",
         [](Project project) { project.WriteXml(project.Xml() + "<more/>\n"); },
         Tone::Warning,
         20,
         "second element",
         {}},
        {"ZeroByte",
         [](Project project) { project.WriteXml(project.Xml() + std::string(1, '\0') + "old"); },
         Tone::Warning,
         20,
         "zero byte",
         {}},
        {"MalformedUtf8", Replacing("<keywords ", "<!-- \xE4 -->\n<keywords "), Tone::Warning, 2, "not valid UTF-8", {}},
        // the root
        {"NoDirectory", Replacing(" directory=", " Directory="), Tone::Warning, 2, "Directory is no attribute", Lookups},
        {"DirectoryMissing", Replacing("/models\"", "/nowhere\""), Tone::Bad, 2, "does not exist", Lookups},
        {"NoConstraints", Replacing(" constraints=", " constraint="), Tone::Warning, 2, "constraint is no attribute", Engine},
        {"ConstraintsMissing", Replacing("constraints.txt\"", "none.txt\""), Tone::Bad, 2, "does not exist", Engine},
        {"ConstraintsOfTwoLines",
         [](Project project) { WriteWholeFile(project.ConstraintsPath(), "a=1\nb=2\n"); },
         Tone::Warning,
         2,
         "more than one line",
         {}},
        {"NoLanguage",
         [](Project project) {
             const std::string text = project.Xml();
             project.WriteXml(text.substr(0, text.find("  <language")) + "</keywords>\n");
         },
         Tone::Bad,
         2,
         "holds no language",
         {Verification, Training, Arming}},
        // ids
        {"NoId", Replacing("<language id=\"1033\"", "<language"), Tone::Bad, 3, "has no attribute id", {Capabilities}},
        {"IdIsNoNumber", Replacing("id=\"1033\"", "id=\"english\""), Tone::Bad, 3, "is no number", {Capabilities}},
        {"LaterIdIsNoNumber", Replacing("id=\"1040\"", "id=\"it-IT\""), Tone::Bad, 11, "is no number", {Capabilities}},
        {"IdIsTooLarge", Replacing("id=\"1040\"", "id=\"66569\""), Tone::Bad, 11, "outside of 1 to 65535", {}},
        {"IdIsNegative", Replacing("id=\"1040\"", "id=\"-1\""), Tone::Bad, 11, "outside of 1 to 65535", {}},
        {"IdHasATail", Replacing("id=\"1033\"", "id=\"1033abc\""), Tone::Warning, 3, "is written \"1033abc\"", {}},
        {"IdIsHexadecimal", Replacing("id=\"1033\"", "id=\"0x409\""), Tone::Note, 3, "is written \"0x409\"", {}},
        {"IdTwice",
         Replacing("id=\"1040\"", "id=\"1033\""),
         Tone::Warning,
         11,
         "stands a second time; the first is in line 3",
         {}},
        {"IdOfNoLanguage", Replacing("id=\"1040\"", "id=\"65001\""), Tone::Warning, 11, "no language with the number 65001", {}},
        // quality
        {"NoQuality", Replacing(" qualityThreshold=\"10\"", ""), Tone::Bad, 3, "qualityThreshold is missing", Lookups},
        {"QualityIsNoNumber", Replacing("qualityThreshold=\"10\"", "qualityThreshold=\"high\""), Tone::Bad, 3, "is no number",
         Lookups},
        {"QualityIsNegative",
         Replacing("qualityThreshold=\"10\"", "qualityThreshold=\"-5\""),
         Tone::Bad,
         3,
         "below 0",
         {Verification}},
        {"QualityHasATail",
         Replacing("qualityThreshold=\"10\"", "qualityThreshold=\"0.5\""),
         Tone::Warning,
         3,
         "is written \"0.5\"",
         {}},
        // elements
        {"NoKeyphraseModel", Replacing("<keyphraseModel>kp_1033.bin</keyphraseModel>", ""), Tone::Bad, 3,
         "<keyphraseModel> is missing", Engine},
        {"NoFirmwareModel", Replacing("<fwBlob>fw_1033.bin</fwBlob>", ""), Tone::Bad, 3, "<fwBlob> is missing", {Arming}},
        {"ElementWithoutText", Replacing(">zn_1033.bin<", "><"), Tone::Bad, 6, "holds no file name", Engine},
        {"ElementTwice",
         Replacing("<fwBlob>fw_1033.bin</fwBlob>", "<fwBlob>fw_1033.bin</fwBlob><fwBlob>x</fwBlob>"),
         Tone::Warning,
         7,
         "stands a second time",
         {}},
        {"ElementOfOtherCase",
         Replacing("<fwBlob>fw_1033.bin</fwBlob>", "<FwBlob>fw_1033.bin</FwBlob>"),
         Tone::Bad,
         3,
         "<fwBlob> is missing",
         {Arming}},
        {"BlanksInAName", Replacing(">fw_1033.bin<", ">\n fw_1033.bin<"), Tone::Bad, 7, "does not exist", {Arming}},
        {"CommentInAName",
         Replacing(">fw_1033.bin<", ">fw_1033.bin<!-- new --><"),
         Tone::Warning,
         7,
         "holds more than a text",
         {}},
        {"UnknownElement",
         Replacing("<fwBlob>fw_1033.bin</fwBlob>", "<fwBlob>fw_1033.bin</fwBlob><extra/>"),
         Tone::Warning,
         7,
         "<extra> is no element",
         {}},
        {"UnknownAttribute",
         Replacing("id=\"1033\"", "id=\"1033\" name=\"English\""),
         Tone::Warning,
         3,
         "name is no attribute",
         {}},
        // models
        {"KeyphraseFileMissing", Removing("kp_1033.bin"), Tone::Bad, 4, "does not exist", {Verification}},
        {"KeyphraseFileEmpty", Writing("kp_1033.bin", ""), Tone::Bad, 4, "is empty", {Verification}},
        {"KeyphraseFileDamaged",
         Writing("kp_1033.bin", Damaged(InspectionSamples::FirmwareModel())),
         Tone::Bad,
         4,
         "is damaged at 0x000C, Checksum",
         {Verification}},
        {"AcousticFileMissing", Removing("am_1033.bin"), Tone::Bad, 5, "does not exist", Engine},
        {"PopulationFileMissing", Removing("zn_1033.bin"), Tone::Bad, 6, "does not exist", Engine},
        {"FirmwareFileMissing", Removing("fw_1033.bin"), Tone::Bad, 7, "does not exist", {Arming}},
        {"AcousticFileEmpty", Writing("am_1033.bin", ""), Tone::Bad, 5, "is empty", Engine},
        {"FirmwareFileEmpty", Writing("fw_1033.bin", ""), Tone::Bad, 7, "is empty", {Arming}},
        {"AcousticFileDamaged", Writing("am_1033.bin", Damaged(InspectionSamples::AcousticModel())), Tone::Bad, 5,
         "is damaged at 0x000C, Checksum", Engine},
        {"FirmwareFileDamaged",
         Writing("fw_1033.bin", Damaged(InspectionSamples::FirmwareModel())),
         Tone::Bad,
         7,
         "is damaged at 0x000C, Checksum",
         {}},
        {"ModelsSwapped", Writing("zn_1033.bin", InspectionSamples::ToText(InspectionSamples::AcousticModel())), Tone::Bad, 6,
         "is another kind of model: acoustic model", Engine},
        {"FirmwareModelOfAUser",
         Writing("fw_1033.bin", InspectionSamples::ToText(InspectionSamples::UserModel())),
         Tone::Warning,
         7,
         "is a user's model",
         {}},
        {"FirmwareModelOfAnotherEngine",
         Writing("fw_1033.bin", "firmware 1033"),
         Tone::Note,
         7,
         "is no model of the stand-in engine",
         {}},
        // thresholds
        {"ThresholdMissing", Removing("pre_1033.txt"), Tone::Bad, 8, "does not exist", Lookups},
        {"UserThresholdMissing", Removing("user_1033.txt"), Tone::Bad, 9, "does not exist", Lookups},
        {"ThresholdIsNoNumber", Writing("pre_1033.txt", "abc"), Tone::Bad, 1, "counts as 0", {}},
        {"ThresholdIsEmpty", Writing("pre_1033.txt", ""), Tone::Bad, 1, "counts as 0", {}},
        {"ThresholdWithAComma", Writing("pre_1033.txt", "100,5"), Tone::Bad, 1, "is 100, in the library 25600 (100).", {}},
        {"ThresholdWithATail",
         Writing("pre_1033.txt", "100\n\nold: 90"),
         Tone::Warning,
         3,
         "is 100, in the library 25600 (100).",
         {}},
        {"ThresholdBelowTheScores", Writing("pre_1033.txt", "-0.5"), Tone::Bad, 1, "is -0.5", {}},
        {"ThresholdAboveTheScores", Writing("pre_1033.txt", "256"), Tone::Bad, 1, "is 256", {}},
        {"ThresholdSaturates", Writing("pre_1033.txt", "1e9"), Tone::Bad, 1, "does not fit into 32 bits", {}},
    };
    return defects;
}

#include "tests/console/support/DoctorProject.h"

#include "console/text/Utf8Path.h"
#include "tests/console/support/InspectionSamples.h"

#include <filesystem>
#include <stdexcept>

using namespace velox::console;

namespace
{

std::string Language(const std::string& id)
{
    return "  <language id=\"" + id + "\" qualityThreshold=\"10\">\n" +                         //
           "    <keyphraseModel>kp_" + id + ".bin</keyphraseModel>\n" +                         //
           "    <acousticModel>am_" + id + ".bin</acousticModel>\n" +                           //
           "    <znormPopulation>zn_" + id + ".bin</znormPopulation>\n" +                       //
           "    <fwBlob>fw_" + id + ".bin</fwBlob>\n" +                                         //
           "    <preDefinedKpdSensitivity>pre_" + id + ".txt</preDefinedKpdSensitivity>\n" +    //
           "    <userDefinedKpdSensitivity>user_" + id + ".txt</userDefinedKpdSensitivity>\n" + //
           "  </language>\n";
}

} // namespace

DoctorProject::DoctorProject()
{
    std::filesystem::create_directory(Directory());
    WriteWholeFile(ConstraintsPath(), "max_model_bytes=163840\n");
    WriteXml("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<keywords directory=\"" + Directory() + "\" constraints=\"" +
             ConstraintsPath() + "\">\n" + Language("1033") + Language("1040") + "</keywords>\n");
    for (const std::string id : {"1033", "1040"})
    {
        WriteModel("kp_" + id + ".bin", InspectionSamples::ToText(InspectionSamples::FirmwareModel()));
        WriteModel("am_" + id + ".bin", InspectionSamples::ToText(InspectionSamples::AcousticModel()));
        WriteModel("zn_" + id + ".bin", InspectionSamples::ToText(InspectionSamples::Population()));
        WriteModel("fw_" + id + ".bin", InspectionSamples::ToText(InspectionSamples::FirmwareModel()));
        WriteModel("pre_" + id + ".txt", "100\n");
        WriteModel("user_" + id + ".txt", "90.5\r\n");
    }
}

std::string DoctorProject::Path() const
{
    return folder.Path() + "/configuration.xml";
}

std::string DoctorProject::Directory() const
{
    return folder.Path() + "/models";
}

std::string DoctorProject::ConstraintsPath() const
{
    return folder.Path() + "/constraints.txt";
}

std::string DoctorProject::Xml() const
{
    return ReadWholeFile(Path());
}

void DoctorProject::WriteXml(std::string_view text) const
{
    WriteWholeFile(Path(), text);
}

void DoctorProject::Replace(std::string_view piece, std::string_view replacement) const
{
    std::string text = Xml();
    const std::size_t position = text.find(piece);
    if (position == std::string::npos)
    {
        throw std::logic_error("the configuration does not contain " + std::string(piece));
    }
    WriteXml(text.replace(position, piece.size(), replacement));
}

void DoctorProject::WriteModel(const std::string& name, std::string_view bytes) const
{
    WriteWholeFile(Directory() + "\\" + name, bytes);
}

void DoctorProject::RemoveModel(const std::string& name) const
{
    if (!std::filesystem::remove(Directory() + "\\" + name))
    {
        throw std::logic_error("there is no file " + name);
    }
}

ConfigurationCheck DoctorProject::Check() const
{
    return CheckConfiguration(PathFromUtf8(Path()));
}

Findings Unpleasant(const Findings& findings)
{
    Findings unpleasant;
    for (const Finding& finding : findings)
    {
        if (finding.tone != Tone::Good)
        {
            unpleasant.push_back(finding);
        }
    }
    return unpleasant;
}

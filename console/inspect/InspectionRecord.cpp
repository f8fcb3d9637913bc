#include "console/inspect/InspectionRecord.h"

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

struct KindName
{
    FileKind kind;
    std::string_view name;
};

constexpr std::array KindNames{
    KindName{FileKind::Unknown, "unknown"},
    KindName{FileKind::Empty, "empty file"},
    KindName{FileKind::ArmingPattern, "arming pattern"},
    KindName{FileKind::DetectionResult, "detection result"},
    KindName{FileKind::BlockHead, "beginning of a firmware block"},
    KindName{FileKind::AcousticModel, "acoustic model"},
    KindName{FileKind::Population, "ZNorm population"},
    KindName{FileKind::PhraseModel, "phrase model"},
    KindName{FileKind::FirmwareModel, "key-phrase, firmware or user model"},
    KindName{FileKind::Threshold, "threshold file"},
};

} // namespace

std::string_view FileKindName(FileKind kind)
{
    return std::find_if(KindNames.begin(), KindNames.end(), [&](const KindName& own) { return own.kind == kind; })->name;
}

const InspectedField* Inspection::Find(std::string_view path) const
{
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const InspectedField& field) { return field.path == path; });
    return found == fields.end() ? nullptr : &*found;
}

} // namespace velox::console

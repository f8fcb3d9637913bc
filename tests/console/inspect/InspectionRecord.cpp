#include "console/inspect/InspectionRecord.h"

#include <gtest/gtest.h>

#include <set>

using namespace velox::console;

TEST(InspectionRecord, EveryKindHasANameOfItsOwn)
{
    std::set<std::string_view> names;
    for (int kind = 0; kind <= static_cast<int>(FileKind::Threshold); ++kind)
    {
        names.insert(FileKindName(static_cast<FileKind>(kind)));
    }
    EXPECT_EQ(names.size(), 10U);
    EXPECT_FALSE(names.contains(""));
    EXPECT_EQ(FileKindName(FileKind::ArmingPattern), "arming pattern");
}

TEST(InspectionRecord, AFieldIsFoundByItsWholePath)
{
    Inspection inspection;
    inspection.fields = {{"Model", 0, 4, "1", "", FieldCheck::None, ""}, {"Model.Size", 4, 4, "2", "", FieldCheck::None, ""}};
    ASSERT_NE(inspection.Find("Model.Size"), nullptr);
    EXPECT_EQ(inspection.Find("Model.Size")->value, "2");
    EXPECT_EQ(inspection.Find("Size"), nullptr);
    EXPECT_EQ(inspection.Find(""), nullptr);
}

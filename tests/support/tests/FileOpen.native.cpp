#include "tests/support/FileOpen.h"

#include "tests/support/FaultInjector.h"
#include "tests/support/TemporaryFolder.h"

#include <tinyxml2.h>

#include <gtest/gtest.h>

#include <fstream>
#include <new>

namespace FileOpenFaultsTests
{

class FileOpen : public testing::Test
{
protected:
    FileOpen()
    {
        WriteWholeFile(path, "<root/>");
    }

    TemporaryFolder folder;
    std::string path = folder.Path() + "/file.xml";
};

TEST_F(FileOpen, FileStreamsFailAsThePlanSays)
{
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::FileOpen);
    EXPECT_FALSE(std::ifstream(path).is_open());
    EXPECT_TRUE(std::ifstream(path).is_open());
    EXPECT_EQ(plan.Calls(), 2U);
}

TEST_F(FileOpen, XmlDocumentsFailAsThePlanSays)
{
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::FileOpen);
    tinyxml2::XMLDocument document;
    EXPECT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_SUCCESS);
    EXPECT_EQ(plan.Calls(), 2U);
}

TEST_F(FileOpen, OpenFilesAreCounted)
{
    {
        std::ifstream file(path);
        EXPECT_EQ(OpenFiles(), 1U);
    }
    tinyxml2::XMLDocument document;
    EXPECT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_SUCCESS);
    EXPECT_EQ(OpenFiles(), 0U);
}

// Known: the file that a document is loaded from is lost when there is no memory for its text.
TEST_F(FileOpen, LostFilesCanBeClosed)
{
    tinyxml2::XMLDocument document;
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::Allocation);
        EXPECT_THROW(document.LoadFile(path.c_str()), std::bad_alloc);
    }
    EXPECT_EQ(OpenFiles(), 1U);
    CloseOpenFiles();
    EXPECT_EQ(OpenFiles(), 0U);
}

TEST_F(FileOpen, XmlDocumentsReadWhatIsKeptInMemory)
{
    KeepInMemory(path, "<kept/>");
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_SUCCESS);
    EXPECT_STREQ(document.RootElement()->Name(), "kept");
    EXPECT_EQ(OpenFiles(), 0U);

    KeepInMemory(path, "");
    EXPECT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_ERROR_EMPTY_DOCUMENT);
    KeepInMemory(path, std::string("<\0/>", 4));
    EXPECT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_ERROR_PARSING);
    EXPECT_EQ(ReadWholeFile(path), "<root/>");
}

TEST_F(FileOpen, WhatIsKeptInMemoryFailsAsThePlanSays)
{
    KeepInMemory(path, "<kept/>");
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::FileOpen);
    tinyxml2::XMLDocument document;
    EXPECT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(document.LoadFile(path.c_str()), tinyxml2::XML_SUCCESS);
}

} // namespace FileOpenFaultsTests

#include "oemadapter/detector/Detector.h"

#include "oemadapter/windows/ProvisionalResultCodes.h"
#include "tests/oemadapter/support/DetectorTest.h"

#include <gmock/gmock.h>

#include <atomic>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

namespace DetectorTests
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using velox::oemadapter::DetectorContents;

class Detector : public DetectorTest
{
protected:
    HRESULT Call(const std::function<HRESULT(DetectorContents&)>& work)
    {
        return detector->Call("IThing::Method", work);
    }
};

TEST_F(Detector, MakesTheLibraryWithItsFirstUserOnly)
{
    EXPECT_TRUE(library.calls.empty());
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_EQ(detector->Users(), 2U);
    EXPECT_THAT(library.calls, ElementsAre(StartsWith("Create(C:\\Velox\\configuration.xml")));
}

TEST_F(Detector, KeepsTheLibraryWithoutUsersAndForTheNextOnes)
{
    EXPECT_EQ(detector->AddUser(), S_OK);
    detector->RemoveUser();
    EXPECT_EQ(detector->Users(), 0U);
    EXPECT_EQ(library.objects, 1);
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_EQ(library.calls.size(), 1U);
}

TEST_F(Detector, NewSettingsMakeAnotherLibraryWhenNobodyUsesTheOldOne)
{
    EXPECT_EQ(detector->AddUser(), S_OK);
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", u"D:\\other.xml");
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_EQ(library.calls.size(), 1U);
    detector->RemoveUser();
    detector->RemoveUser();
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_THAT(library.calls,
                ElementsAre(StartsWith("Create(C:\\Velox\\configuration.xml"), "~", StartsWith("Create(D:\\other.xml")));
    EXPECT_EQ(library.mostObjects, 1);
}

TEST_F(Detector, APathThatTheLibraryCannotOpenIsRefusedWithALineInTheFile)
{
    library.logToFile = false;
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", std::u16string(u"C:\\") + char16_t{0xD800});
    EXPECT_EQ(detector->AddUser(), HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION));
    EXPECT_EQ(detector->Users(), 0U);
    EXPECT_TRUE(library.calls.empty());
    EXPECT_THAT(log.Read(), HasSubstr("1 adapter IClassFactory::CreateInstance The configuration file cannot be opened"));

    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", ConfigurationFile);
    EXPECT_EQ(detector->AddUser(), S_OK);
}

TEST_F(Detector, APathThatTheLibraryCannotOpenIsRefusedAlsoWhereThereWasALibrary)
{
    EXPECT_EQ(detector->AddUser(), S_OK);
    detector->RemoveUser();
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", std::u16string(u"C:\\") + char16_t{0xD800});
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ(detector->AddUser(), HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION));
        EXPECT_EQ(library.objects, 0);
    }
}

TEST_F(Detector, ALibraryThatCannotBeMadeIsTriedAgain)
{
    library.onCall = [](const std::string&) {
        throw std::bad_alloc();
    };
    EXPECT_EQ(detector->AddUser(), E_OUTOFMEMORY);
    EXPECT_EQ(detector->Users(), 0U);
    library.onCall = nullptr;
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_EQ(library.objects, 1);
}

TEST_F(Detector, TellsSettingsThatAreOfNoUseOnceTheLevelIsKnown)
{
    WriteNumber(HKEY_LOCAL_MACHINE, AdapterKey, u"UserRecordings", 17);
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_THAT(log.Read(), HasSubstr("3 adapter IClassFactory::CreateInstance The setting UserRecordings is of no use"));
}

TEST_F(Detector, ACallsResultIsItsLastLine)
{
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_EQ(Call([](DetectorContents& inside) {
                  EXPECT_STREQ(inside.logger.operation.Method(), "IThing::Method");
                  return S_OK;
              }),
              S_OK);
    EXPECT_THAT(log.Read(), HasSubstr("4 adapter IThing::Method Done. 0x00000000\r\n"));
    EXPECT_EQ(Call([](DetectorContents&) { return E_NO_MATCH; }), E_NO_MATCH);
    EXPECT_THAT(log.Read(), HasSubstr("4 adapter IThing::Method Done. 0x80040201\r\n"));
    EXPECT_THAT(log.Read(), Not(HasSubstr("Failed.")));
    EXPECT_EQ(Call([](DetectorContents&) { return E_INVALIDARG; }), E_INVALIDARG);
    EXPECT_THAT(log.Read(), HasSubstr("1 adapter IThing::Method Failed. 0x80070057\r\n"));
}

TEST_F(Detector, CallsOfSeveralThreadsDoNotOverlap)
{
    EXPECT_EQ(detector->AddUser(), S_OK);
    std::atomic<int> underWay = 0;
    std::atomic<bool> overlapped = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
    {
        threads.emplace_back([&] {
            for (int call = 0; call < 50; ++call)
            {
                EXPECT_EQ(Call([&](DetectorContents&) {
                              overlapped = ++underWay > 1 || overlapped;
                              std::this_thread::yield();
                              --underWay;
                              return S_OK;
                          }),
                          S_OK);
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_FALSE(overlapped);
}

TEST_F(Detector, NoExceptionLeavesACall)
{
    EXPECT_EQ(detector->AddUser(), S_OK);
    EXPECT_EQ(Call([](DetectorContents&) -> HRESULT { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(Call([](DetectorContents&) -> HRESULT { throw std::runtime_error("scripted"); }), GenFailure);
    EXPECT_EQ(Call([](DetectorContents&) -> HRESULT { throw 4711; }), GenFailure);
    EXPECT_EQ(Call([](DetectorContents&) { return S_OK; }), S_OK);
}

} // namespace DetectorTests

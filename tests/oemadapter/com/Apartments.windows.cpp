// The adapter in the apartments of a host, and on many threads at once.
#include "oemadapter/windows/ProvisionalResultCodes.h"
#include "tests/oemadapter/com/ComHost.h"

#include <gmock/gmock.h>

#include <objidl.h>

#include <array>
#include <thread>

namespace ApartmentsOnRealTests
{

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class Apartments : public ComHost
{
protected:
    static void ExpectEverythingWorks(const Conversation& conversation)
    {
        EXPECT_THAT(conversation.results,
                    ElementsAre(S_OK, S_OK, E_NO_MATCH, S_OK, S_OK, S_OK, S_OK, S_OK, S_OK, E_NO_MATCH, S_OK, S_OK, S_OK));
        EXPECT_THAT(conversation.answers,
                    ElementsAre("user models 1, keywords 1, languages 1033 1040", EndsWith("VWOV model of the scripted engine"),
                                "keyword 1, language 1033, user match 1, 1250000 to 1260800",
                                "features 1, languages 1033 1040, recordings 3, bits 16",
                                EndsWith("VWOV model of the scripted engine"),
                                AllOf(StartsWith("action 0, context 1, 0.501961, language 1033, user 0, user match 1, 1250000 to "
                                                 "1260800\n"),
                                      HasSubstr("[ParseDetectionResultData] User matched for the user model."))));
    }
};

TEST_F(Apartments, EverythingWorksInASingleThreadedOne)
{
    const Apartment apartment(COINIT_APARTMENTTHREADED);
    ExpectEverythingWorks(Converse());
}

TEST_F(Apartments, EverythingWorksInAMultithreadedOne)
{
    const Apartment apartment(COINIT_MULTITHREADED);
    ExpectEverythingWorks(Converse());
}

TEST_F(Apartments, LibraryAndEngineAreThoseBesideTheAdapter)
{
    const Apartment apartment(COINIT_MULTITHREADED);
    const auto adapter = CreateAdapter<IUnknown>(IID_IUnknown);
    for (const wchar_t* name : {L"VeloxOemAdapter.dll", L"VeloxHwKwsImpl.dll", L"VeloxWovSDK.dll"})
    {
        std::wstring path(MAX_PATH, L'\0');
        path.resize(GetModuleFileNameW(GetModuleHandleW(name), path.data(), static_cast<DWORD>(path.size())));
        EXPECT_TRUE(std::filesystem::equivalent(path, ServerFolder() / name));
    }
}

TEST_F(Apartments, AnObjectIsTheSameInEveryOne)
{
    const Apartment apartment(COINIT_APARTMENTTHREADED);
    const auto adapter = CreateAdapter<IEventDetectorOemAdapter>(IID_IEventDetectorOemAdapter);
    ASSERT_NE(adapter, nullptr);
    IStream* marshaled = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IEventDetectorOemAdapter, adapter.get(), &marshaled), S_OK);
    std::thread([&] {
        const Apartment other(COINIT_MULTITHREADED);
        void* taken = nullptr;
        EXPECT_EQ(CoGetInterfaceAndReleaseStream(marshaled, IID_IEventDetectorOemAdapter, &taken), S_OK);
        EXPECT_EQ(taken, adapter.get());
        static_cast<IUnknown*>(taken)->Release();
    }).join();
}

TEST_F(Apartments, EightThreadsAtOnceEachGetWhatOneGets)
{
    constexpr int Rounds = 5;
    std::array<std::vector<Conversation>, 8> conversations;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < conversations.size(); ++i)
    {
        threads.emplace_back([&, i] {
            const Apartment apartment(i % 2 == 0 ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED);
            for (int round = 0; round < Rounds; ++round)
            {
                conversations[i].push_back(Converse());
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    const Apartment apartment(COINIT_MULTITHREADED);
    const Conversation alone = Converse();
    ExpectEverythingWorks(alone);
    for (const std::vector<Conversation>& thread : conversations)
    {
        for (const Conversation& conversation : thread)
        {
            EXPECT_EQ(conversation.results, alone.results);
            EXPECT_EQ(conversation.answers, alone.answers);
        }
    }
}

} // namespace ApartmentsOnRealTests

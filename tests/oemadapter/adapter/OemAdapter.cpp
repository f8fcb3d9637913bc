#include "oemadapter/adapter/OemAdapter.h"

#include "tests/oemadapter/support/OemAdapterTest.h"

#include <objidl.h>

namespace OemAdapterTests
{

class OemAdapter : public OemAdapterTest
{
protected:
    template <typename Interface>
    static IUnknown* Identity(Interface* object)
    {
        void* identity = nullptr;
        EXPECT_EQ(object->QueryInterface(IID_IUnknown, &identity), S_OK);
        auto* const unknown = static_cast<IUnknown*>(identity);
        unknown->Release();
        return unknown;
    }
};

TEST_F(OemAdapter, HasOneIdentityWhateverItIsAskedThrough)
{
    EXPECT_EQ(Identity(keyword), Identity(event));
    EXPECT_EQ(Identity(Identity(event)), Identity(keyword));
    void* marshal = nullptr;
    ASSERT_EQ(event->QueryInterface(IID_IMarshal, &marshal), S_OK);
    static_cast<IUnknown*>(marshal)->Release();
}

TEST_F(OemAdapter, EachInterfaceLeadsToTheOther)
{
    void* object = nullptr;
    ASSERT_EQ(event->QueryInterface(IID_IKeywordDetectorOemAdapter, &object), S_OK);
    EXPECT_EQ(object, keyword);
    keyword->Release();
    ASSERT_EQ(event->QueryInterface(IID_IEventDetectorOemAdapter, &object), S_OK);
    EXPECT_EQ(object, event);
    event->Release();
}

TEST_F(OemAdapter, HasNoOtherInterface)
{
    void* object = &library;
    EXPECT_EQ(keyword->QueryInterface(IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(keyword->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(OemAdapter, CountsReferencesOverBothInterfaces)
{
    EXPECT_EQ(keyword->AddRef(), 3U);
    EXPECT_EQ(event->AddRef(), 4U);
    EXPECT_EQ(keyword->Release(), 3U);
    EXPECT_EQ(keyword->Release(), 2U);
}

TEST_F(OemAdapter, UsesTheDetectorAsLongAsItLives)
{
    EXPECT_EQ(detector->Users(), 1U);
    ReleaseAdapter();
    EXPECT_EQ(detector->Users(), 0U);
}

TEST_F(OemAdapter, ObjectsShareTheLibrary)
{
    for (int i = 0; i < 3; ++i)
    {
        void* another = nullptr;
        ASSERT_EQ(velox::oemadapter::OemAdapter::Create(*detector, IID_IUnknown, &another), S_OK);
        EXPECT_EQ(library.objects, 1);
        static_cast<IUnknown*>(another)->Release();
    }
    EXPECT_TRUE(library.calls.empty());
}

TEST_F(OemAdapter, IsNotMadeForAnUnknownInterfaceOrForNobody)
{
    void* object = &library;
    EXPECT_EQ(velox::oemadapter::OemAdapter::Create(*detector, IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(velox::oemadapter::OemAdapter::Create(*detector, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(detector->Users(), 1U);
}

TEST_F(OemAdapter, IsNotMadeWhereTheDetectorRefusesANewUser)
{
    ReleaseAdapter();
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", std::u16string(u"C:\\") + char16_t{0xD800});
    void* object = &library;
    EXPECT_EQ(velox::oemadapter::OemAdapter::Create(*detector, IID_IUnknown, &object),
              HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION));
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(detector->Users(), 0U);
}

/// The method in this slot of an interface's table.
template <typename Method, typename Interface>
Method Slot(Interface* object, std::size_t slot)
{
    return reinterpret_cast<Method>((*reinterpret_cast<void***>(object))[slot]);
}

TEST_F(OemAdapter, MethodsLieInTheSlotsThatWindowsCalls)
{
    using Verify = HRESULT(STDMETHODCALLTYPE*)(void*, IStream*, int, uint16_t, int32_t, IMFMediaBuffer*);
    EXPECT_EQ(Slot<Verify>(keyword, 4)(keyword, empty.get(), 1, English, 77, nullptr), E_INVALIDARG);
    EXPECT_EQ(library.calls.back(), "VerifyUserKeyword(1, 1033, 77)");

    using Parse = HRESULT(STDMETHODCALLTYPE*)(void*, IStream*, void*, void*, void*, void*, void*, void*);
    EXPECT_EQ(Slot<Parse>(keyword, 7)(keyword, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), E_POINTER);
    EXPECT_NE(log.Read().find("IKeywordDetectorOemAdapter::ParseDetectionResultData"), std::string::npos);

    using ForLanguage = HRESULT(STDMETHODCALLTYPE*)(void*, uint16_t, DETECTIONEVENT**, ULONG*);
    DETECTIONEVENT* made = nullptr;
    ULONG count = 0;
    EXPECT_EQ(Slot<ForLanguage>(event, 4)(event, English, &made, &count), S_OK);
    EXPECT_EQ(count, 1U);
    CoTaskMemFree(made);

    using Report = void(STDMETHODCALLTYPE*)(void*, DETECTIONEVENTSELECTOR, EVENTACTION);
    Slot<Report>(event, 9)(event, Selector(), {});
    EXPECT_NE(log.Read().find("IEventDetectorOemAdapter::ReportOSDetectionResult"), std::string::npos);
}

} // namespace OemAdapterTests

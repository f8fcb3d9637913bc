#include "oemadapter/server/ClassFactory.h"

#include "oemadapter/windows/EventDetectorOemAdapter.h"
#include "tests/oemadapter/support/DetectorTest.h"

#include <gtest/gtest.h>

namespace ClassFactoryTests
{

class ClassFactory : public DetectorTest
{
protected:
    ~ClassFactory() override
    {
        factory->Release();
        EXPECT_FALSE(module.IsInUse());
    }

    velox::oemadapter::Module module;
    IClassFactory* factory = new velox::oemadapter::ClassFactory(module);
};

TEST_F(ClassFactory, HasItsTwoInterfaces)
{
    for (const IID& iid : {IID_IUnknown, IID_IClassFactory})
    {
        void* object = nullptr;
        ASSERT_EQ(factory->QueryInterface(iid, &object), S_OK);
        EXPECT_EQ(object, factory);
        EXPECT_EQ(factory->Release(), 1U);
    }
    void* object = &library;
    EXPECT_EQ(factory->QueryInterface(IID_IEventDetectorOemAdapter, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ClassFactory, MakesObjectsOfEitherInterface)
{
    void* object = nullptr;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IEventDetectorOemAdapter, &object), S_OK);
    EXPECT_EQ(module.detector.Users(), 1U);
    EXPECT_EQ(static_cast<IEventDetectorOemAdapter*>(object)->Release(), 0U);
    EXPECT_EQ(module.detector.Users(), 0U);
}

TEST_F(ClassFactory, RefusesAggregation)
{
    void* object = &library;
    EXPECT_EQ(factory->CreateInstance(factory, IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(module.detector.Users(), 0U);
}

TEST_F(ClassFactory, KeepsTheModuleWhileItIsHeld)
{
    EXPECT_TRUE(module.IsInUse());
    EXPECT_EQ(module.factories, 1U);
}

TEST_F(ClassFactory, LocksAreCounted)
{
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    EXPECT_EQ(module.locks, 1U);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
}

} // namespace ClassFactoryTests

#include "oemadapter/adapter/OemAdapter.h"

#include "tests/oemadapter/support/OemAdapterTest.h"
#include "tests/support/FaultInjector.h"

namespace OemAdapterFaultsTests
{

class OemAdapterFaults : public OemAdapterTest
{
protected:
    void ExpectNotMade(HRESULT result)
    {
        void* object = &library;
        EXPECT_EQ(velox::oemadapter::OemAdapter::Create(*detector, IID_IUnknown, &object), result);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(detector->Users(), 1U);
    }
};

TEST_F(OemAdapterFaults, WithoutMemoryOrMarshalerNoObjectIsMade)
{
    {
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::NothrowAllocation);
        ExpectNotMade(E_OUTOFMEMORY);
    }
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::CreateMarshaler);
    ExpectNotMade(E_OUTOFMEMORY);
}

} // namespace OemAdapterFaultsTests

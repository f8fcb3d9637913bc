#include "oemadapter/server/Module.h"

#include "tests/oemadapter/support/DetectorTest.h"

#include <gmock/gmock.h>

namespace ModuleTests
{

using testing::ElementsAre;

class Module : public DetectorTest
{
protected:
    ~Module() override
    {
        velox::oemadapter::EndModule();
    }

    velox::oemadapter::Module& module = velox::oemadapter::TheModule();
};

TEST_F(Module, IsOne)
{
    EXPECT_EQ(&velox::oemadapter::TheModule(), &module);
}

TEST_F(Module, IsInUseWhileThereIsAnObjectAFactoryOrALock)
{
    EXPECT_FALSE(module.IsInUse());
    EXPECT_EQ(module.detector.AddUser(), S_OK);
    EXPECT_TRUE(module.IsInUse());
    module.detector.RemoveUser();
    EXPECT_FALSE(module.IsInUse());
    module.factories = 1;
    EXPECT_TRUE(module.IsInUse());
    module.factories = 0;
    module.locks = 1;
    EXPECT_TRUE(module.IsInUse());
}

TEST_F(Module, ItsEndClosesTheLibrary)
{
    EXPECT_EQ(module.detector.AddUser(), S_OK);
    module.detector.RemoveUser();
    library.calls.clear();
    velox::oemadapter::EndModule();
    EXPECT_THAT(library.calls, ElementsAre("~"));
    velox::oemadapter::EndModule();
    EXPECT_FALSE(velox::oemadapter::TheModule().IsInUse());
}

} // namespace ModuleTests

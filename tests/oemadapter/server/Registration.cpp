#include "oemadapter/server/Registration.h"

#include "tests/oemadapter/support/RegistrationTest.h"

namespace RegistrationTests
{

using velox::oemadapter::RegisterServer;
using velox::oemadapter::UnregisterServer;

class Registration : public RegistrationTest
{
};

TEST_F(Registration, HasNamePathAndThreadingModel)
{
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
    ExpectRegistered(ModuleFile);
}

TEST_F(Registration, MayBeDoneAgainWithAnotherPath)
{
    EXPECT_EQ(RegisterServer(u"D:\\old.dll"), S_OK);
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
    ExpectRegistered(ModuleFile);
}

TEST_F(Registration, IsTakenBackWithItsKeys)
{
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
    EXPECT_EQ(UnregisterServer(), S_OK);
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ServerKey));
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
}

TEST_F(Registration, ThatIsNotThereIsTakenBackAllTheSame)
{
    EXPECT_EQ(UnregisterServer(), S_OK);
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
    EXPECT_EQ(UnregisterServer(), S_OK);
    EXPECT_EQ(UnregisterServer(), S_OK);
}

TEST_F(Registration, IsTakenBackAroundForeignValues)
{
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
    WriteText(HKEY_LOCAL_MACHINE, ServerKey, u"Foreign", u"value");
    EXPECT_EQ(UnregisterServer(), S_OK);
    EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ServerKey, u"Foreign"), u"value");
    EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ServerKey, u""), std::nullopt);
    EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ServerKey, u"ThreadingModel"), std::nullopt);
    EXPECT_TRUE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
}

TEST_F(Registration, IsTakenBackAroundForeignKeys)
{
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
    const std::u16string foreign = std::u16string(ClassKey) + u"\\Foreign";
    WriteText(HKEY_LOCAL_MACHINE, foreign, u"", u"value");
    EXPECT_EQ(UnregisterServer(), S_OK);
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ServerKey));
    EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, foreign, u""), u"value");
    EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ClassKey, u""), std::nullopt);
}

} // namespace RegistrationTests

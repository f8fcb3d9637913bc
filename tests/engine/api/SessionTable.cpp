#include "engine/api/SessionTable.h"

#include <gmock/gmock.h>

#include <set>
#include <thread>
#include <vector>

namespace SessionTableTests
{

using namespace velox::engine;
using Table = velox::engine::SessionTable;

std::unique_ptr<EngineSession> NewSession()
{
    return std::make_unique<EngineSession>(EngineAttributes{});
}

TEST(SessionTable, HandlesAreNeverZeroAndNeverUsedAgain)
{
    Table table;
    std::set<uint32_t> handles;
    for (uint32_t i = 0; i < 3 * Table::Slots; ++i)
    {
        const uint32_t handle = table.Add(NewSession());
        EXPECT_NE(handle, 0U);
        EXPECT_TRUE(handles.insert(handle).second);
        EXPECT_NE(table.Find(handle), nullptr);
        EXPECT_TRUE(table.Remove(handle));
        EXPECT_EQ(table.Find(handle), nullptr);
    }
}

TEST(SessionTable, ASecondRemovalIsAccepted)
{
    Table table;
    const uint32_t handle = table.Add(NewSession());
    EXPECT_TRUE(table.Remove(handle));
    EXPECT_TRUE(table.Remove(handle));
}

TEST(SessionTable, HandlesThatWereNeverGivenOutAreUnknown)
{
    Table table;
    EXPECT_FALSE(table.Remove(0));
    EXPECT_FALSE(table.Remove(1));
    EXPECT_EQ(table.Find(0), nullptr);
    const uint32_t handle = table.Add(NewSession());
    EXPECT_FALSE(table.Remove(handle + 1));
    EXPECT_EQ(table.Find(handle + Table::Slots), nullptr);
    EXPECT_TRUE(table.Remove(handle));
}

TEST(SessionTable, AFullTableTakesNoMoreUntilOneGoes)
{
    Table table;
    std::vector<uint32_t> handles;
    for (uint32_t i = 0; i < Table::Slots; ++i)
    {
        handles.push_back(table.Add(NewSession()));
    }
    EXPECT_EQ(table.Add(NewSession()), 0U);
    EXPECT_TRUE(table.Remove(handles[17]));
    const uint32_t again = table.Add(NewSession());
    EXPECT_NE(again, 0U);
    handles[17] = again;
    for (const uint32_t handle : handles)
    {
        EXPECT_TRUE(table.Remove(handle));
    }
}

TEST(SessionTable, ThreadsComeAndGoBesideEachOther)
{
    Table table;
    const auto work = [&] {
        for (int i = 0; i < 50; ++i)
        {
            const uint32_t handle = table.Add(NewSession());
            EXPECT_NE(table.Find(handle), nullptr);
            EXPECT_TRUE(table.Remove(handle));
        }
    };
    std::thread other(work);
    work();
    other.join();
}

} // namespace SessionTableTests

#include "console/Commands.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

namespace CommandsOnRealTests
{

using namespace velox::console;

TEST(Commands, AllStandInTheHelpsOrderWithWhatRunsThem)
{
    CLI::App app;
    Commands commands;
    AddCommands(app, commands);
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({}))
    {
        names.push_back(command->get_name());
        EXPECT_TRUE(commands.run.contains(command) && commands.run.at(command)) << names.back();
        EXPECT_NE(command->get_footer(), "") << "an example of " << names.back();
    }
    EXPECT_THAT(names, testing::ElementsAre("doctor", "capabilities", "devices", "verify", "enroll", "arm", "listen", "inspect",
                                            "make-language"));
}

} // namespace CommandsOnRealTests

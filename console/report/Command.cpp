#include "console/report/Command.h"

#include <CLI/CLI.hpp>

namespace velox::console
{

void Commands::AddPageOption(CLI::App* command)
{
    command->add_option("--report", page, "Also write a page for a browser, with pictures of the recordings")
        ->type_name("FILE.html");
}

} // namespace velox::console

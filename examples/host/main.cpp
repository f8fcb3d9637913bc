// velox-host: what a host of the library does, step by step, on the files of a folder that `prepare-folder` makes.
//
//   velox-host enroll FOLDER   verifies recordings and trains a user model; a process of its own, as it is on a real system
//   velox-host verify FOLDER   verifies one recording only
//   velox-host run FOLDER      everything else
//
// Each sets the library's registry values for the whole machine and needs the keyword engine, VeloxWovSDK.dll, beside it.
// The exit code is 0 when everything came as expected, 1 when something did not, 2 for a wrong command line.
#include "Steps.h"

#include <exception>
#include <iostream>
#include <map>
#include <string>

int main(int argumentCount, char** arguments)
{
    const std::map<std::string, bool (*)(const std::filesystem::path&)> commands{
        {"enroll", EnrollUser}, {"verify", VerifyOneTake}, {"run", RunDetector}};
    const auto command = commands.find(argumentCount == 3 ? arguments[1] : "");
    if (command == commands.end())
    {
        std::cerr << "usage: velox-host enroll|verify|run FOLDER\n";
        return 2;
    }
    try
    {
        return command->second(arguments[2]) ? 0 : 1;
    }
    catch (const std::exception& error)
    {
        std::cerr << "velox-host: " << error.what() << "\n";
        return 1;
    }
}

// velox-host: what a host of the library does, step by step, on the files of a folder that `prepare-folder` makes.
//
//   velox-host store FOLDER   stores a user model; a process of its own, as enrollment and arming are on a real system
//   velox-host run FOLDER     everything else. It sets the library's registry values for the whole machine.
//
// The exit code is 0 when everything came as expected, 1 when something did not, 2 for a wrong command line.
#include "Steps.h"

#include <exception>
#include <iostream>
#include <string>

int main(int argumentCount, char** arguments)
{
    const std::string command = argumentCount == 3 ? arguments[1] : "";
    if (command != "store" && command != "run")
    {
        std::cerr << "usage: velox-host store|run FOLDER\n";
        return 2;
    }
    try
    {
        const bool asExpected = command == "store" ? StoreUserModel(arguments[2]) : RunDetector(arguments[2]);
        return asExpected ? 0 : 1;
    }
    catch (const std::exception& error)
    {
        std::cerr << "velox-host: " << error.what() << "\n";
        return 1;
    }
}

#pragma once

#include <string>
#include <vector>

/// What velox-kws.exe, started as a process, gave back.
struct ProgramRun
{
    int exitCode = -1;
    std::string output;
    std::string errors;
};

/// Runs the program beside this one. @param arguments  UTF-8, each as the program is to see it
ProgramRun RunVeloxKws(const std::vector<std::string>& arguments);

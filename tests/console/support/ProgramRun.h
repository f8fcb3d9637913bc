#pragma once

#include <memory>
#include <string>
#include <vector>

/// What velox-kws.exe, started as a process, gave back.
struct ProgramRun
{
    int exitCode = -1;
    std::string output;
    std::string errors;
};

/// velox-kws.exe as a process that runs meanwhile.
class RunningVeloxKws
{
public:
    /// Starts the program beside this one. @param arguments  UTF-8, each as the program is to see it
    explicit RunningVeloxKws(const std::vector<std::string>& arguments);
    RunningVeloxKws(const RunningVeloxKws&) = delete;
    RunningVeloxKws& operator=(const RunningVeloxKws&) = delete;
    /// Ends it when it still runs.
    ~RunningVeloxKws();

    /// What it has written so far.
    std::string Output() const;

    /// Until it has ended.
    ProgramRun Wait();

private:
    struct State;
    std::unique_ptr<State> state;
};

/// Runs the program to its end.
ProgramRun RunVeloxKws(const std::vector<std::string>& arguments);

#pragma once

#include "tests/console/support/DoctorProject.h"

#include <functional>
#include <string>
#include <vector>

/// A fault that is put into a project, and what doctor must say first of it.
struct DoctorDefect
{
    std::string name;
    std::function<void(const DoctorProject&)> damage;
    velox::console::Tone tone;
    int line;                                     ///< of the finding's file; 0 when it has none
    std::string message;                          ///< a part of it
    std::vector<velox::console::Operation> fails; ///< for 1033
};

const std::vector<DoctorDefect>& DoctorDefects();

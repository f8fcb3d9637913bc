#pragma once

#include "console/doctor/ConfigurationCheck.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <string_view>

/// A configuration in which nothing is wrong, on disk: two languages, 1033 and 1040, with models of the stand-in engine. One line
/// for each element, the root in line 2, the languages in lines 3 and 11. A test changes any of it.
class DoctorProject
{
public:
    DoctorProject();

    std::string Path() const;
    std::string Directory() const;
    std::string ConstraintsPath() const;

    std::string Xml() const;
    void WriteXml(std::string_view text) const;
    /// Replaces a piece of the configuration file, which must be there.
    void Replace(std::string_view piece, std::string_view replacement) const;
    void WriteModel(const std::string& name, std::string_view bytes) const;
    void RemoveModel(const std::string& name) const;

    /// What doctor's checks of configuration and files say.
    velox::console::ConfigurationCheck Check() const;

private:
    TemporaryFolder folder;
};

/// The findings that are worse than good.
velox::console::Findings Unpleasant(const velox::console::Findings& findings);

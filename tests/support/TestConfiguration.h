#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <string>
#include <string_view>

/// A configuration file with two languages and everything that it names, on disk, in a folder of its own.
///
/// | language | quality | predefined (Q8) | user-defined (Q8) | models                                            |
/// |----------|---------|-----------------|-------------------|---------------------------------------------------|
/// | 1033     | 10      | 0.75 (192)      | 0.5 (128)         | "keyphrase 1033", "acoustic 1033", "znorm 1033",  |
/// |          |         |                 |                   | "firmware 1033"                                   |
/// | 1040     | 20      | 1.25 (320)      | -1.3 (-333)       | the same with 1040                                |
///
/// The first line of the constraints file is "memory=160k". A test changes any of it with the functions below.
class TestConfiguration
{
public:
    TestConfiguration();

    /// Path of the configuration file.
    std::string Path() const;

    /// The root's "directory". Files are joined to it with one backslash in both worlds; natively the backslash is a character
    /// of the file's name.
    std::string Directory() const;

    /// Path of the constraints file.
    std::string ConstraintsPath() const;

    /// Replaces the configuration file.
    void WriteXml(std::string_view text) const;

    /// Replaces the configuration file by a root with the usual attributes and this content.
    void WriteLanguages(std::string_view languageElements) const;

    /// Replaces a piece of the configuration file's text; the piece must be there.
    void ReplaceInXml(std::string_view piece, std::string_view replacement) const;

    /// Writes or removes a model or threshold file, such as "kp_1033.bin" or "kpd_user_1033.txt".
    void WriteFile(const std::string& name, std::string_view bytes) const;
    void RemoveFile(const std::string& name) const;

    /// A complete language element whose files are named after `id`.
    static std::string LanguageElement(const std::string& id, int qualityThreshold);

private:
    TemporaryFolder folder;
};

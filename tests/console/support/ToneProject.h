#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

/// A folder as an integrator has it: a configuration of the tones' language (TinyLanguage), in one language or two, and what
/// commands write and read beside it.
class ToneProject
{
public:
    static constexpr uint16_t English = 1033;
    static constexpr uint16_t Italian = 1040;

    ToneProject();

    /// Path of a file in the folder, UTF-8.
    std::string File(const std::string& name) const;
    std::string Configuration() const
    {
        return File("configuration.xml");
    }

    /// Adds a second language, whose threshold differs.
    void AddItalian() const;

    /// Writes audio as 32-bit float, 16 kHz. @return its path
    std::string Record(const std::string& name, std::span<const float> samples) const;

    void Write(const std::string& name, std::span<const uint8_t> bytes) const;
    void Write(const std::string& name, const std::string& text) const;
    std::vector<uint8_t> Read(const std::string& name) const;

private:
    void WriteConfiguration(const std::string& languages) const;

    TemporaryFolder folder;
};

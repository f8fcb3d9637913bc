#pragma once

#include "console/languages/MakeLanguage.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <span>
#include <string>

/// Recordings of the tones' language (TinyLanguage) as files: "takes" with a folder for each voice, and "other".
class LanguageMaterialFolder
{
public:
    LanguageMaterialFolder();

    /// UTF-8.
    std::string Path(const std::string& name) const;
    void Record(const std::string& name, std::span<const float> samples) const;

    /// More voices than the four, and as much background again.
    void AddVoices(int count) const;

    /// To learn next to nothing from it, quickly: models in "models", the configuration in "config.xml".
    velox::console::LanguageRequest Request() const;

    /// Whether nothing of a language is there but the material.
    bool HoldsOnlyMaterial() const;

private:
    TemporaryFolder folder;
};

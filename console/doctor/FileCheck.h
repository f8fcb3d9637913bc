#pragma once

#include "console/doctor/Finding.h"
#include "console/inspect/Inspection.h"

namespace velox::console
{

/// A file that the configuration names, opened by the same narrow name as the library does.
struct NamedFile
{
    /// A file beyond this is not looked into.
    static constexpr uint64_t LargestInspected = 128U << 20U;

    std::string path; ///< as the library puts it together
    bool readable = false;
    uint64_t size = 0;
    std::vector<uint8_t> bytes{}; ///< empty when it is not readable, or too large
};

NamedFile ReadNamedFile(const std::string& path);

/// Why a file could not be opened, and what to do.
struct Absence
{
    std::string why;
    std::string fix;
};
Absence WhyNotReadable(const std::string& path);

bool IsAscii(std::string_view text);
bool IsAbsolute(std::string_view path);

/// Adds the one thing there is to say about a threshold file that can be read, with its line.
/// @param what  the threshold, at the beginning of the message
void CheckThreshold(const NamedFile& file, std::string_view what, Subject subject);

/// What there is to say about a model file, or about models together; the place is the caller's.
struct ModelVerdict
{
    Tone tone = Tone::Good;
    std::string message{}; ///< goes on after the file's name, without a full stop
    std::string effect{};
    std::string fix{};
    bool engineRefuses = false;
};

/// @param element     of the configuration, "acousticModel"
/// @param inspection  of a file that is not empty
ModelVerdict CheckModelFile(std::string_view element, const Inspection& inspection);

/// Whether three models of the stand-in engine are of one phrase, as far as can be told; what is no model of its is not compared.
/// The message is a sentence.
ModelVerdict CheckModelsAgree(const std::optional<Inspection>& keyphrase, const std::optional<Inspection>& acoustic,
                              const std::optional<Inspection>& population);

} // namespace velox::console

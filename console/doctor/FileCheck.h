#pragma once

#include "console/doctor/Finding.h"
#include "console/doctor/NamedFile.h"
#include "console/inspect/Inspection.h"

namespace velox::console
{

/// What there is to say about a threshold file that can be read, with its line.
/// @param what  the threshold, at the beginning of a sentence
Finding CheckThreshold(const NamedFile& file, std::string_view what);

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
/// The message is a sentence. @param keyphrase  and the others: null when there is none
ModelVerdict CheckModelsAgree(const Inspection* keyphrase, const Inspection* acoustic, const Inspection* population);

} // namespace velox::console

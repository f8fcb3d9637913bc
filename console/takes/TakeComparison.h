#pragma once

#include "console/hosting/StandInModels.h"
#include "console/takes/TakeReport.h"

namespace velox::console
{

/// What takes of one enrollment have to do with each other.
struct TakeComparison
{
    std::vector<Remark> remarks;    ///< of all of them: the same recording twice, two voices
    std::vector<std::size_t> again; ///< numbers of the takes that are better recorded again
};

/// Compares the accepted takes with each other. Each that is unlike the others gets a remark, for its voice or else for its
/// length, level or score. Of two takes that differ both get one, since none is in the majority; takes of two voices in equal
/// parts are told once, together. Without models of the stand-in no voice is compared.
/// @param takes  receive remarks and likeness
/// @throws CommandFailure Interrupted
TakeComparison CompareTakes(std::span<Take> takes, const StandInModels& models);

/// The numbers of the takes that were accepted, or of the others.
std::vector<std::size_t> NumbersOf(std::span<const Take> takes, bool accepted);

/// Names of takes, each once, in their order.
std::vector<std::string> NamesOf(std::span<const Take> takes, std::vector<std::size_t> numbers);

} // namespace velox::console

#pragma once

#include <string>
#include <vector>

namespace velox::console
{

/// The recordings that arguments name. A Windows shell expands nothing: a folder stands for the sound files in it, by their
/// name's ending, and a pattern with * and ? in its last part for the files that fit; both in the order of their names, 2
/// before 10. Any other argument stays as it is.
/// @throws CommandFailure BadInput for a folder without a sound file, or a pattern without a file
std::vector<std::string> FindRecordings(const std::vector<std::string>& arguments);

} // namespace velox::console

#include "console/audio/RecordingArguments.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/Words.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <regex>
#include <utility>

namespace velox::console
{

namespace
{

constexpr std::array<std::string_view, 10> SoundEndings{".wav", ".flac", ".ogg", ".oga", ".opus",
                                                        ".aif", ".aiff", ".au",  ".caf", ".w64"};

bool IsSound(const std::string& name)
{
    const std::string ending = Utf8(PathFromUtf8(name).extension());
    return std::ranges::any_of(SoundEndings, [&](std::string_view known) { return SameLetters(ending, known); });
}

/// A pattern of * and ? as an expression; capitals do not matter, as on Windows.
std::regex ExpressionOf(const std::string& pattern)
{
    const std::string literal = std::regex_replace(pattern, std::regex(R"([.^$|()\[\]{}+\\])"), R"(\$&)");
    const std::string any = std::regex_replace(literal, std::regex(R"(\*)"), ".*");
    return std::regex(std::regex_replace(any, std::regex(R"(\?)"), "."), std::regex::icase);
}

/// Numbers as long as they may become, so that "take 2" stands before "take 10".
std::string SortKey(const std::string& name)
{
    constexpr std::size_t MostDigits = 12;
    std::string key;
    std::string digits;
    for (const char letter : name + '\0')
    {
        if (letter >= '0' && letter <= '9')
        {
            digits += letter;
            continue;
        }
        key.append(MostDigits - std::min(MostDigits, digits.empty() ? MostDigits : digits.size()), '0');
        key += std::exchange(digits, {}) + letter;
    }
    return key;
}

template <typename Wanted>
std::vector<std::string> FilesIn(const std::filesystem::path& folder, bool withFolder, Wanted wanted)
{
    std::vector<std::string> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder.empty() ? "." : folder, error))
    {
        const std::string name = Utf8(entry.path().filename());
        if (entry.is_regular_file(error) && !name.starts_with('.') && wanted(name))
        {
            files.push_back(withFolder ? Utf8(folder / entry.path().filename()) : name);
        }
    }
    std::ranges::sort(files, {}, SortKey);
    return files;
}

std::vector<std::string> Expand(const std::string& argument)
{
    const std::filesystem::path path = PathFromUtf8(argument);
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
    {
        std::vector<std::string> files = FilesIn(path, true, IsSound);
        if (files.empty())
        {
            throw CommandFailure(ExitCode::BadInput, argument + " is a folder without a recording.",
                                 "Name a folder that holds WAV or FLAC files.");
        }
        return files;
    }
    const std::string pattern = Utf8(path.filename());
    if (pattern.find_first_of("*?") == std::string::npos || std::filesystem::exists(path, error))
    {
        return {argument};
    }
    const std::regex expression = ExpressionOf(pattern);
    std::vector<std::string> files = FilesIn(path.parent_path(), path.has_parent_path(),
                                             [&](const std::string& name) { return std::regex_match(name, expression); });
    if (files.empty())
    {
        throw CommandFailure(ExitCode::BadInput, "No file fits " + argument + ".", "Check the folder and the pattern.");
    }
    return files;
}

} // namespace

std::vector<std::string> FindRecordings(const std::vector<std::string>& arguments)
{
    std::vector<std::string> recordings;
    for (const std::string& argument : arguments)
    {
        std::vector<std::string> expanded = Expand(argument);
        recordings.insert(recordings.end(), std::make_move_iterator(expanded.begin()), std::make_move_iterator(expanded.end()));
    }
    return recordings;
}

} // namespace velox::console

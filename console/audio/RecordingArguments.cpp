#include "console/audio/RecordingArguments.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/Words.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>

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

/// Whether a name fits a pattern of * and ?; capitals do not matter, as on Windows.
bool Fits(std::string_view name, std::string_view pattern)
{
    std::size_t at = 0;
    std::size_t star = std::string_view::npos; ///< the last one, which takes more when what follows it does not fit
    std::size_t taken = 0;
    for (std::size_t i = 0; i < name.size();)
    {
        if (at < pattern.size() && pattern[at] == '*')
        {
            star = at++;
            taken = i;
        }
        else if (at < pattern.size() && (pattern[at] == '?' || SameLetters(name.substr(i, 1), pattern.substr(at, 1))))
        {
            ++at;
            ++i;
        }
        else if (star != std::string_view::npos)
        {
            at = star + 1;
            i = ++taken;
        }
        else
        {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

/// "take 2" before "take 10".
bool NaturallyLess(std::string_view left, std::string_view right)
{
    const auto isDigit = [](char letter) {
        return letter >= '0' && letter <= '9';
    };
    while (!left.empty() && !right.empty())
    {
        if (isDigit(left.front()) && isDigit(right.front()))
        {
            left.remove_prefix(std::min(left.find_first_not_of('0'), left.size()));
            right.remove_prefix(std::min(right.find_first_not_of('0'), right.size()));
            const auto leftDigits = static_cast<std::size_t>(std::ranges::find_if_not(left, isDigit) - left.begin());
            const auto rightDigits = static_cast<std::size_t>(std::ranges::find_if_not(right, isDigit) - right.begin());
            const int order = leftDigits != rightDigits ? (leftDigits < rightDigits ? -1 : 1)
                                                        : left.substr(0, leftDigits).compare(right.substr(0, rightDigits));
            if (order != 0)
            {
                return order < 0;
            }
            left.remove_prefix(leftDigits);
            right.remove_prefix(rightDigits);
        }
        else if (left.front() != right.front())
        {
            return static_cast<unsigned char>(left.front()) < static_cast<unsigned char>(right.front());
        }
        else
        {
            left.remove_prefix(1);
            right.remove_prefix(1);
        }
    }
    return left.size() < right.size();
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
    std::ranges::sort(files, NaturallyLess);
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
    std::vector<std::string> files =
        FilesIn(path.parent_path(), path.has_parent_path(), [&](const std::string& name) { return Fits(name, pattern); });
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

#pragma once

#include "console/report/Picture.h"
#include "console/text/CommandFailure.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velox::console
{

/// How something turned out. People see a word besides the colour.
enum class Tone
{
    Neutral,
    Good,
    Note,
    Warning,
    Bad,
};

/// A value as machines read it; null where it is not known.
class Value : public std::variant<std::monostate, bool, int64_t, uint64_t, double, std::string, std::vector<int64_t>>
{
public:
    Value() = default;
    Value(bool value) : variant(value)
    {
    }
    template <std::signed_integral Integer>
    Value(Integer value) : variant(static_cast<int64_t>(value))
    {
    }
    template <std::unsigned_integral Integer>
    requires(!std::same_as<Integer, bool>) Value(Integer value) : variant(static_cast<uint64_t>(value))
    {
    }
    template <std::floating_point Number>
    Value(Number value) : variant(static_cast<double>(value))
    {
    }
    Value(std::string value) : variant(std::move(value))
    {
    }
    Value(std::string_view value) : variant(std::string(value))
    {
    }
    Value(const char* value) : variant(std::string(value))
    {
    }
    Value(std::vector<int64_t> values) : variant(std::move(values))
    {
    }
    template <typename Known>
    Value(const std::optional<Known>& value) : Value(value ? Value(*value) : Value())
    {
    }
};

/// One thing that is known. Without a key it stands in no document; without a text people do not see it.
struct Fact
{
    std::string key; ///< in the document, "speechBegin"
    Value value;
    std::string name{};    ///< for people, in small letters, "length"; may be empty beside a text
    std::string text{};    ///< the value as people read it, "1.50 s"
    std::string meaning{}; ///< what the value means; on the page alone
};

/// One thing to say, and what to do about it.
struct Remark
{
    Tone tone = Tone::Note;
    std::string code; ///< for machines, "TooQuiet"; may be empty
    std::string text; ///< for people
    std::string fix;  ///< a sentence; may be empty
};

/// A take, a file, a finding, a detection: what is told of one thing.
struct Entry
{
    std::string title;    ///< a file's name, a place, a sentence
    std::string status{}; ///< in a word: "accepted", "error", "near miss"; may be empty
    Tone tone = Tone::Neutral;
    std::vector<Fact> facts{};
    std::vector<Remark> remarks{};
    std::vector<Entry> parts{}; ///< shown as a table: each with the same facts
    Picture picture{};          ///< on the page alone
    bool detail = false;        ///< people see it with --verbose only
};

/// What went wrong, in a sentence, and what to do about it. The fix may be empty.
struct Problem
{
    std::string message;
    std::string fix;
};

/// What a command has to say. Text, document (docs/console-json.schema.json) and page are all made from it, in this order:
/// results, facts, remarks, error, verdict; the page begins with the verdict.
struct Report
{
    ExitCode exitCode = ExitCode::Success;
    std::string verdict{}; ///< one line
    std::vector<Fact> facts{};
    std::vector<Remark> remarks{};
    std::vector<Entry> results{};
    std::optional<Chart> chart{};
    std::optional<Problem> error{}; ///< of a command that failed, and may have something to show all the same
};

} // namespace velox::console

#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <string>

namespace velox::console
{

/// What is seen of a command while it works, and the place where it learns of Ctrl-C: a bar with the time left, for work that
/// takes longer than a second, or a line that says how things stand, and lines that stay. The bar is drawn with carriage returns
/// and blanks alone: not every console knows more.
class Progress
{
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// @param terminal  where the bar is drawn; null for none (the stream is no terminal)
    /// @param clock     the time, for tests
    /// @param lines     where the lines that stay go; null for nowhere
    explicit Progress(std::ostream* terminal, Clock clock = std::chrono::steady_clock::now, std::ostream* lines = nullptr);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Wipes the bar away.
    ~Progress();

    /// Begins a piece of work: its name stands before the bar, and the time starts anew.
    void Begin(const std::string& what);

    /// @param share  of the work that is done, 0 to 1; at 1 the bar is wiped away
    /// @throws CommandFailure with ExitCode::Interrupted after Ctrl-C
    void Update(double share);

    /// Whether Ctrl-C was pressed, for callbacks that must not throw.
    static bool Interrupted();

    /// As Update, without throwing. @return false after Ctrl-C
    bool Continue(double share);

    /// Draws how things stand in the bar's place, ten times a second at most.
    /// @param text  is called when it is time; ASCII
    void Status(const std::function<std::string()>& text);

    /// Writes a line that stays, at once. @param line  may hold several
    void Say(const std::string& line);

private:
    void Draw(double share);
    void Show(const std::string& line);
    void Wipe();

    std::ostream* terminal;
    Clock clock;
    std::ostream* lines;
    std::string what;
    std::chrono::steady_clock::time_point start;
    std::chrono::steady_clock::time_point drawn;
    std::size_t width = 0; ///< of what is drawn; 0: nothing is
};

} // namespace velox::console

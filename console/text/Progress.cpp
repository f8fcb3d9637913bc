#include "console/text/Progress.h"

#include "console/text/Interruption.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace velox::console
{

namespace
{

using namespace std::chrono_literals;

constexpr auto Patience = 1s;
constexpr auto Redraw = 100ms;
constexpr int BarWidth = 24;

std::string TimeLeft(double seconds)
{
    const auto whole = static_cast<long>(std::ceil(seconds));
    return whole < 60 ? fmt::format("{} s left", whole) : fmt::format("{} min {:02} s left", whole / 60, whole % 60);
}

} // namespace

Progress::Progress(std::ostream* where, Clock theClock, std::ostream* whereLinesGo)
    : terminal(where), clock(std::move(theClock)), lines(whereLinesGo), start(clock()), drawn(start)
{
}

Progress::~Progress()
{
    Wipe();
}

void Progress::Begin(const std::string& name)
{
    Wipe();
    what = name;
    start = clock();
    drawn = start;
}

void Progress::Update(double share)
{
    StopIfInterrupted();
    Draw(share);
}

bool Progress::Interrupted()
{
    return InterruptionRequested();
}

bool Progress::Continue(double share)
{
    Draw(share);
    return !Interrupted();
}

void Progress::Status(const std::function<std::string()>& text)
{
    const auto now = clock();
    if (terminal != nullptr && (width == 0 || now - drawn >= Redraw))
    {
        Show(text());
        drawn = now;
    }
}

void Progress::Say(const std::string& line)
{
    Wipe();
    if (lines != nullptr)
    {
        *lines << line << "\n" << std::flush;
    }
}

void Progress::Draw(double share)
{
    const auto now = clock();
    if (share >= 1.0)
    {
        Wipe();
        return;
    }
    if (terminal == nullptr || share <= 0.0 || now - start < Patience || (width > 0 && now - drawn < Redraw))
    {
        return;
    }
    const double spent = std::chrono::duration<double>(now - start).count();
    const auto full = static_cast<std::size_t>(std::lround(share * BarWidth));
    Show(fmt::format("{} [{:<{}}] {:3.0f} %, {}", what, std::string(full, '#'), BarWidth, 100.0 * share,
                     TimeLeft(spent / share - spent)));
    drawn = now;
}

void Progress::Show(const std::string& line)
{
    *terminal << fmt::format("\r{:<{}}", line, width) << std::flush;
    width = line.size();
}

void Progress::Wipe()
{
    if (width > 0)
    {
        Show("");
        *terminal << "\r" << std::flush;
    }
}

} // namespace velox::console

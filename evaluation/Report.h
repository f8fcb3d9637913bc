#pragma once

#include "engine/base/CountInterval.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace velox::evaluation
{

/// A share of things that went one way.
struct Share
{
    int counted = 0;
    int all = 0;

    void Add(bool counts)
    {
        counted += counts ? 1 : 0;
        ++all;
    }
    void Join(const Share& share)
    {
        counted += share.counted;
        all += share.all;
    }
    /// Of misses and errors: where nothing was tried nothing was reached, which counts as 100.
    double Percent() const
    {
        return all == 0 ? 100.0 : 100.0 * counted / all;
    }
};

/// What a figure shall be; without numbers, nothing.
struct Goal
{
    double most = std::numeric_limits<double>::infinity();
    double least = -std::numeric_limits<double>::infinity();

    bool IsSet() const
    {
        return most < std::numeric_limits<double>::infinity();
    }
    bool Reached(double figure) const
    {
        return figure >= least && figure <= most;
    }
};

/// Collects figures of several runs and sets the worst of each beside its goal.
class Report
{
public:
    /// @param what  the figure's name; the same in every run
    void Add(const std::string& what, double figure, const Goal& goal, const std::string& unit = "%");
    void Add(const std::string& what, const Share& share, const Goal& goal);
    /// Events an hour.
    void AddRate(const std::string& what, int events, double hours, const Goal& goal);

    /// A case that is worth looking at.
    void Note(const std::string& line);

    /// The notes, a line each.
    const std::string& Notes() const
    {
        return notes;
    }

    /// The worst of a figure's runs, its largest; nothing when there is no such figure.
    std::optional<double> Worst(const std::string& what) const;

    /// A table in Markdown: each figure's runs, the largest of them with its interval, the goal, and whether all runs reach it.
    std::string Table() const;

private:
    struct Run
    {
        double figure = 0.0;
        std::string cases; ///< that it was counted from; empty for others
        std::optional<engine::CountInterval> interval;
    };
    struct Row
    {
        std::string what;
        std::string unit;
        Goal goal;
        std::vector<Run> runs;
    };

    static const Run& Largest(const std::vector<Run>& runs);
    void Add(const std::string& what, const std::string& unit, const Goal& goal, Run run);

    std::string notes;
    std::vector<Row> rows; ///< in the order of their first figures
};

} // namespace velox::evaluation

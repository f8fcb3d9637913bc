#pragma once

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
    double Percent() const
    {
        return all == 0 ? 0.0 : 100.0 * counted / all;
    }
};

/// Collects figures of several runs and sets the worst of each beside its goal.
class Report
{
public:
    /// @param what   the figure's name; the same in every run
    /// @param limit  the goal: at most this; negative where none is set
    void Add(const std::string& what, double figure, double limit, const std::string& unit = "%");
    void Add(const std::string& what, const Share& share, double limit);

    /// A case that is worth looking at.
    void Note(const std::string& line);

    /// The notes, a line each.
    const std::string& Notes() const
    {
        return notes;
    }

    /// The worst of a figure's runs; nothing when there is no such figure.
    std::optional<double> Worst(const std::string& what) const;

    /// A table in Markdown: each figure's runs, the worst of them, the goal, and whether it is reached.
    std::string Table() const;

private:
    struct Row
    {
        std::string what;
        std::string unit;
        double limit = -1.0;
        std::vector<double> figures;
        Share share; ///< of all runs together, where the figure is one
    };

    Row& RowOf(const std::string& what);

    std::string notes;
    std::vector<Row> rows; ///< in the order of their first figures
};

} // namespace velox::evaluation

#pragma once

#include <string>
#include <vector>

namespace velox::console
{

/// What the keyword engine writes to the standard error stream while the library works: lines for the log, not for whoever reads
/// the console's words. Engine and console share the C runtime, and so the stream.
class EngineOutput
{
public:
    EngineOutput() = default;
    EngineOutput(const EngineOutput&) = delete;
    EngineOutput& operator=(const EngineOutput&) = delete;
    ~EngineOutput();

    /// From now on the stream goes to a file of its own. When none can be made it stays as it is.
    void Begin();
    /// The stream is as it was.
    void End();

    /// The whole lines since the last call.
    std::vector<std::string> TakeLines();

    /// Writes a line to the stream as it was.
    void Show(const std::string& line) const;

private:
    int stream = -1; ///< the former one, while there is a file in its place
    int file = -1;
    long taken = 0; ///< bytes of the file
};

} // namespace velox::console

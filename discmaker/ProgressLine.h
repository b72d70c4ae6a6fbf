#pragma once

#include <cstddef>
#include <string>

namespace cinedisc::discmaker {

/// Tells how far the work is: as a bar for a person at a terminal, as a line for every tenth of a long work
/// in a log. To be called by one thread at a time.
class ProgressLine {
  public:
    enum class Reader { Person, Log };
    /// Whoever reads the error output.
    ProgressLine();
    explicit ProgressLine(Reader reader) : reader_(reader) {}
    /// Wipes out the bar of a work that failed.
    ~ProgressLine();

    void operator()(std::size_t done, std::size_t all);
    /// What is to be written now, "" for nothing.
    std::string next(std::size_t done, std::size_t all);

  private:
    Reader reader_;
    std::size_t told_ = 0;   ///< hundredths
    std::size_t shown_ = 0;  ///< letters of the bar that is seen
};

}  // namespace cinedisc::discmaker

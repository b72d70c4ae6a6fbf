#pragma once

#include <stdexcept>

namespace cinedisc::discmaker {

/// What keeps a disc from being made, in words for the person at the command line.
class DiscError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace cinedisc::discmaker

#pragma once

#include <stdexcept>

namespace orvane::cli {

// The command line asks for something that does not exist or that needs more. what() is one line for people.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace orvane::cli

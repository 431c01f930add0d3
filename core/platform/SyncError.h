#pragma once

#include <stdexcept>

namespace orvane {

// The disk did not make a change durable. Earlier writes may be lost in a power cut, so the work that needed it ends;
// it is never tried again on the same file.
class SyncError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace orvane

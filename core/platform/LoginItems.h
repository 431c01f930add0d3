#pragma once

namespace orvane {

// Whether the program starts when the user logs in.
class LoginItems {
 public:
  virtual ~LoginItems() = default;
  [[nodiscard]] virtual bool isEnabled() const = 0;
  // Throws std::runtime_error with the system's reason.
  virtual void setEnabled(bool isEnabled) = 0;
};

}  // namespace orvane

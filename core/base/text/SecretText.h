#pragma once

#include <string>
#include <string_view>

namespace orvane {

// Overwrites the bytes before they are given back.
void wipe(std::string& text) noexcept;

// A text that nobody should find in memory after its use: wiped when it ends or is moved from. Has no operator<<, so
// that it is never printed by accident.
class SecretText {
 public:
  SecretText() = default;
  // Copies; wiping what it is copied from is the caller's.
  explicit SecretText(std::string_view text) : m_text(text) {}
  SecretText(const SecretText& other) = default;
  SecretText(SecretText&& other) noexcept : m_text(std::move(other.m_text)) { wipe(other.m_text); }
  SecretText& operator=(SecretText other) noexcept {
    m_text.swap(other.m_text);
    return *this;
  }
  ~SecretText() { wipe(m_text); }

  [[nodiscard]] std::string_view view() const noexcept { return m_text; }
  [[nodiscard]] bool isEmpty() const noexcept { return m_text.empty(); }

 private:
  std::string m_text;
};

}  // namespace orvane

#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace orvane::cli {

class Session;

// One line on the terminal's last row that tells how far a long work is; nothing elsewhere. It goes away at the end.
class ProgressLine {
 public:
  explicit ProgressLine(const Session& session) noexcept;
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // `text` is asked for only when the line is due to be drawn, at most ten times a second.
  void update(const std::function<std::string()>& text);
  void clear();

 private:
  bool m_shows;
  bool m_isDrawn = false;
  std::chrono::steady_clock::time_point m_nextDrawing{};
};

// The part of a text, for display, that fits into `columns`; a "…" at the end marks a cut.
[[nodiscard]] std::string fittedTo(std::string_view text, int columns);

}  // namespace orvane::cli

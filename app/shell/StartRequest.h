#pragma once

#include <QByteArray>

#include <cstdint>
#include <span>
#include <string>

namespace orvane {

// The request of a start to the window, be it a new one or the one that is open.
struct StartRequest {
  enum class Work : std::uint8_t { none, scan, organize };

  std::string section = {};  // by its raw value; empty for the one that is shown
  Work work = Work::none;
  std::string folder = {};  // the URL of the one to scan; empty for the granted folders

  // From "--show SECTION", "--scan [FOLDER]" and "--organize", of which the first counts. A relative folder is taken
  // from the current one.
  [[nodiscard]] static StartRequest fromArguments(std::span<const char* const> arguments);
  // One line of text, as it goes to the window that is open.
  [[nodiscard]] QByteArray toLine() const;
  [[nodiscard]] static StartRequest fromLine(const QByteArray& line);

  [[nodiscard]] bool isEmpty() const noexcept { return section.empty() && work == Work::none; }
  bool operator==(const StartRequest&) const = default;
};

}  // namespace orvane

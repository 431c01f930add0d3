#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Places that are never to be offered: an absolute path, one below "~/", or a pattern in which "*" stands for any
// part of a name and "**" for any folders. A pattern without a slash is a name in any folder. A backslash takes the
// meaning from "*" and "\" after it, and "\xHH" is a byte.
class KeepPattern {
 public:
  // Throws std::invalid_argument, saying what is wrong in an English sentence.
  static KeepPattern read(std::string_view text, std::string_view home);
  // The pattern that means one place whatever its name.
  [[nodiscard]] static std::string textFor(const FileUrl& place, std::string_view home);

  [[nodiscard]] const std::string& text() const noexcept { return m_text; }

  // How a path stands to the places that are meant.
  enum class Standing : std::uint8_t {
    outside,
    above,  // something below the path may be meant
    meant,  // the path, or a folder that it lies in
  };
  // Of an absolute path without "." and "..".
  [[nodiscard]] Standing standing(std::string_view path) const;

  // The folder that begins the pattern, without anything that stands for several names; a pattern of one place is
  // nothing else.
  [[nodiscard]] std::string plainBeginning() const;
  [[nodiscard]] bool meansOnePlace() const noexcept;
  // The same places where the beginning has another path, as behind a link.
  [[nodiscard]] KeepPattern withBeginning(std::string_view path) const;

 private:
  // The pieces of a name between its stars; no piece at all stands for any folders.
  using Name = std::vector<std::string>;
  [[nodiscard]] std::size_t plainNames() const noexcept;

  std::string m_text;
  std::vector<Name> m_names;
};

}  // namespace orvane

#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// Location of a file: an absolute path as raw bytes, kept exactly as given but for trailing slashes. Names that are
// not UTF-8 survive every round trip; the URL form percent-encodes raw bytes (RFC 3986, scheme "file").
class FileUrl {
 public:
  // An empty location; refused by every operation on files.
  FileUrl() = default;
  explicit FileUrl(std::string path);

  // Reads a "file:" URL with an empty or "localhost" host and an absolute path; anything else yields nothing, and so
  // does an encoded NUL byte.
  static std::optional<FileUrl> fromAbsoluteString(std::string_view text);

  // The plain path, not percent-encoded.
  [[nodiscard]] const std::string& path() const noexcept { return m_path; }
  [[nodiscard]] std::string absoluteString() const;
  void appendAbsoluteString(std::string& text) const;

  [[nodiscard]] std::string_view lastPathComponent() const noexcept;
  // Without the dot; empty when the name has none.
  [[nodiscard]] std::string_view pathExtension() const noexcept;
  [[nodiscard]] FileUrl deletingLastPathComponent() const;
  [[nodiscard]] FileUrl appendingPathComponent(std::string_view name) const;

  auto operator<=>(const FileUrl&) const noexcept = default;

 private:
  std::string m_path;
};

// Escapes every byte that may not stand in the path of a URL; "/" stays.
[[nodiscard]] std::string percentEncodedPath(std::string_view path);
void appendPercentEncodedPath(std::string& text, std::string_view path);
// Undoes percent-encoding; a "%" that two hexadecimal digits do not follow yields nothing.
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace orvane

template <>
struct std::hash<orvane::FileUrl> {
  std::size_t operator()(const orvane::FileUrl& url) const noexcept { return std::hash<std::string>{}(url.path()); }
};

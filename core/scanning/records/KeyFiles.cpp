#include "core/scanning/records/KeyFiles.h"

#include "core/base/text/UnicodeText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 16> keyExtensions{"asc",      "gpg",      "jks", "kbx",   "kdb", "kdbx",
                                                         "key",      "keychain", "p12", "p8",    "pem", "pfx",
                                                         "keystore", "ppk",      "crt", "keytab"};
constexpr std::array<std::string_view, 5> keyNames{"id_dsa", "id_ecdsa", "id_ed25519", "id_rsa", "known_hosts"};
constexpr std::array<std::string_view, 4> keyFolders{"/.gnupg/", "/.ssh/", "/.password-store/", "/keyrings/"};

}  // namespace

bool looksLikeKey(const FileUrl& file) {
  const auto extension = lowercased(file.pathExtension());
  const auto name = file.lastPathComponent();
  return std::find(keyExtensions.begin(), keyExtensions.end(), extension) != keyExtensions.end() ||
         std::find(keyNames.begin(), keyNames.end(), name) != keyNames.end() ||
         std::any_of(keyFolders.begin(), keyFolders.end(),
                     [&](std::string_view folder) { return file.path().find(folder) != std::string::npos; });
}

}  // namespace orvane

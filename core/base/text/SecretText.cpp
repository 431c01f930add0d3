#include "core/base/text/SecretText.h"

#include <openssl/crypto.h>

namespace orvane {

void wipe(std::string& text) noexcept {
  // Covers the rest that a move or a shorter text left behind, too; nothing is allocated within the capacity.
  text.resize(text.capacity());
  // A plain memset of bytes that nobody reads again would be left out.
  OPENSSL_cleanse(text.data(), text.size());
  text.clear();
}

}  // namespace orvane

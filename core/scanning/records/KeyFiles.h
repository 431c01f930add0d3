#pragma once

#include "core/base/files/FileUrl.h"

namespace orvane {

// Whether a file's name or folder is that of a private key, a certificate store or a store of passwords. Decides
// nothing about its label; it is for saying why an item is left alone.
[[nodiscard]] bool looksLikeKey(const FileUrl& file);

}  // namespace orvane

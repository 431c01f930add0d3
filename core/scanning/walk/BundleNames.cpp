#include "core/scanning/walk/BundleNames.h"

#include "core/base/files/PathText.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

// Sorted.
constexpr auto extensions = std::to_array<std::string_view>({
    "action",          "aplibrary",     "app",          "appex",       "band",      "bundle",
    "component",       "docset",        "download",     "dsym",        "fcpbundle", "framework",
    "graffle",         "imovielibrary", "kext",         "key",         "logicx",    "mailbundle",
    "mdimporter",      "mpkg",          "musiclibrary", "numbers",     "osax",      "pages",
    "photolibrary",    "photoslibrary", "pkg",          "playground",  "plugin",    "prefpane",
    "qlgenerator",     "rtfd",          "saver",        "scptd",       "service",   "sparsebundle",
    "systemextension", "theater",       "tvlibrary",    "vst",         "vst3",      "wdgt",
    "workflow",        "xcarchive",     "xcodeproj",    "xcworkspace", "xpc",
});
static_assert(std::is_sorted(extensions.begin(), extensions.end()));

constexpr std::size_t maxExtensionBytes = 15;

}  // namespace

bool isBundleName(std::string_view name) noexcept {
  const auto extension = splitName(name).extension;
  if (extension.empty() || extension.size() > maxExtensionBytes) return false;
  std::array<char, maxExtensionBytes> lower{};
  std::transform(extension.begin(), extension.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return std::binary_search(extensions.begin(), extensions.end(), std::string_view(lower.data(), extension.size()));
}

}  // namespace orvane

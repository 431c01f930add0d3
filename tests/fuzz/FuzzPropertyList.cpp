// Any bytes are a property list, or none, without harm and in time.

#include "core/uninstaller/PropertyList.h"
#include "tests/fuzz/FuzzCheck.h"

#include <string_view>

namespace orvane::fuzz {

void run(std::string_view input) {
  const auto list = PropertyList::parse(input);
  if (!list) return;
  for (const char* key : {"CFBundleName", "CFBundleIdentifier", "CFBundleExecutable", ""}) {
    const auto text = list->text(key);
    check(!text || !text->empty(), "an empty text is none");
  }
}

}  // namespace orvane::fuzz

// Any text is a record of the Trash or none; the path that it names is written so that it reads back.

#include "platform/linux/TrashInfo.h"
#include "tests/fuzz/FuzzCheck.h"

#include <string_view>

namespace orvane::fuzz {

void run(std::string_view input) {
  const auto path = trashInfoPath(input);
  if (path) check(trashInfoPath(trashInfoText(*path, dateFromUnix(0))) == path, "a path reads back as it was written");
  check(trashInfoPath(trashInfoText(input, dateFromUnix(0))) == input, "any bytes are a path");
}

}  // namespace orvane::fuzz

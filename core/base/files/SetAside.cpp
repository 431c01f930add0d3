#include "core/base/files/SetAside.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FreeName.h"
#include "core/base/values/Calendar.h"

#include <fmt/format.h>

#include <cstdio>

namespace orvane {

FileUrl setAside(const std::string& path) {
  const FileUrl wanted(fmt::format("{}.damaged-{}", path, localTimestamp(ReferenceClock::now())));
  auto aside = freeUrl(wanted, NumberingStyle::plain);
  if (std::rename(path.c_str(), aside.path().c_str()) != 0) throwErrno();
  return aside;
}

}  // namespace orvane

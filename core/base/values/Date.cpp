#include "core/base/values/Date.h"

#include <ctime>

namespace orvane {

Date ReferenceClock::now() noexcept {
  timespec time{};
  ::clock_gettime(CLOCK_REALTIME, &time);
  return dateFromUnix(time.tv_sec, time.tv_nsec);
}

Date dateFromUnix(std::int64_t seconds, std::int64_t nanoseconds) noexcept {
  return dateFromReferenceSeconds(static_cast<double>(seconds - referenceDateUnixSeconds) +
                                  static_cast<double>(nanoseconds) / 1e9);
}

double unixSeconds(Date date) noexcept {
  return referenceSeconds(date) + static_cast<double>(referenceDateUnixSeconds);
}

}  // namespace orvane

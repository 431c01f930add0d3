#include "tests/support/TimeZone.h"

#include "tests/support/TemporaryTree.h"

#include <unicode/timezone.h>

#include <ctime>

namespace orvane::test {

void inTimeZone(const char* name, const std::function<void()>& body) {
  const std::unique_ptr<icu::TimeZone> before(icu::TimeZone::createDefault());
  {
    const ScopedEnvironment zone("TZ", name);
    ::tzset();
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(name));
    std::thread(body).join();
  }
  ::tzset();
  icu::TimeZone::setDefault(*before);
}

}  // namespace orvane::test

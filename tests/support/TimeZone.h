#pragma once

#include <functional>

namespace orvane::test {

// Runs `body` as a user in that time zone would, on a thread of its own, whatever zone was used before.
void inTimeZone(const char* name, const std::function<void()>& body);

}  // namespace orvane::test

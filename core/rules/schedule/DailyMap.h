#pragma once

#include <functional>

namespace orvane {

class NotificationCenter;
struct MapServices;

// Maps the home folder where maps are remembered and none is of today, after `lowerPriority`, and tells the user once
// when the disk is soon full: again only after it was not. Throws std::runtime_error.
void mapAndWarn(const MapServices& services, NotificationCenter& center, const std::function<void()>& lowerPriority);

}  // namespace orvane

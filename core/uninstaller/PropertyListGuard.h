#pragma once

#include <string_view>

namespace orvane {

// Whether a property list, XML or binary, can be read in time and memory of the order of its own size. A binary one may
// name one object from many places: a few hundred bytes can stand for more values than any memory holds. Says nothing
// of whether the list is otherwise sound.
[[nodiscard]] bool isPropertyListBounded(std::string_view bytes);

}  // namespace orvane

#pragma once

#include <cstdint>

namespace orvane {

// Whether a language model on this machine names folders.
enum class TopicUse : std::uint8_t { never, whenAvailable };

}  // namespace orvane

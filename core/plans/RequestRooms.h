#pragma once

#include "core/plans/records/Understanding.h"

#include <optional>

namespace orvane {

struct PromptReading;
class RequestSentence;

// The section that does what a request asks for; absent where a plan may.
[[nodiscard]] std::optional<RoomRequest> roomFor(const RequestSentence& sentence, const PromptReading& reading);
// The section that could be meant where nothing else was understood; absent where there is none.
[[nodiscard]] std::optional<RoomRequest> cleanupFor(RequestSentence sentence, const PromptReading& reading);

}  // namespace orvane

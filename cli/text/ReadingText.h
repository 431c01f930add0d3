#pragma once

#include "core/base/text/JsonFwd.h"

#include <string>
#include <string_view>

namespace orvane {
struct PlannedAnswer;
struct PlacesBeside;
struct RoomRequest;
}  // namespace orvane

namespace orvane::cli {

class Session;

// Prints the words of a request with what they became, what was assumed, and the words that meant nothing.
void printReading(Session& session, std::string_view prompt, const PlannedAnswer& answer);
// Known places that the request could mean as well, with the option that takes them.
void printBeside(Session& session, const PlacesBeside& beside);
// Why the plan may not be the one that was meant, as a sentence without a stop. Not for a request that another section
// answers.
[[nodiscard]] std::string doubtText(std::string_view prompt, const PlannedAnswer& answer);
// The command that does what a section is for; empty where none does.
[[nodiscard]] std::string roomCommand(const RoomRequest& request);
// The same as a sentence for people.
[[nodiscard]] std::string roomText(const RoomRequest& request);
// {"room", "command"}
[[nodiscard]] Json roomJson(const RoomRequest& request);

}  // namespace orvane::cli

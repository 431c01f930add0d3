#pragma once

#include <span>
#include <stop_token>
#include <string_view>
#include <vector>

namespace orvane {

struct TaskServices;

// Requests that a front end offers, by the keys of their texts: each text is understood in its language.
[[nodiscard]] std::span<const std::string_view> requestPresets() noexcept;

// Those that do something on this home: their folder is granted and can be listed, and it holds a file that the plan
// takes. A folder is looked through up to a bound, beyond which it is taken to hold one.
[[nodiscard]] std::vector<std::string_view> usefulPresets(const TaskServices& services, const std::stop_token& stop);

}  // namespace orvane

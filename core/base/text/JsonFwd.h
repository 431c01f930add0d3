#pragma once

#include <nlohmann/json_fwd.hpp>

namespace orvane {

// JSON value whose object keys keep the order in which they were written.
using Json = nlohmann::ordered_json;

}  // namespace orvane

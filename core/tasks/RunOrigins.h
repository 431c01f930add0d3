#pragma once

#include "core/base/values/Uuid.h"
#include "core/tasks/Proposal.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

namespace orvane {

struct TaskServices;

// Who had a run carried out. The journal's own form has no place for it.
struct RunOrigin {
  enum class Start : std::uint8_t { byHand, scheduled };
  TaskKind kind = TaskKind::clean;
  Start start = Start::byHand;
  // The rules by name, the request in the user's words, the application; empty for the other kinds.
  std::string detail = {};

  bool operator==(const RunOrigin&) const = default;
};

// As the proposal of what was approved tells it.
[[nodiscard]] RunOrigin originOf(const Approval& approval, RunOrigin::Start start);

// Keeps it beside the journal. Durable when it returns. Throws std::system_error.
void recordOrigin(const TaskServices& services, const Uuid& runId, const RunOrigin& origin);
// Of every run that has one. Lines that cannot be read are passed over, and so is a file that cannot be.
[[nodiscard]] std::unordered_map<Uuid, RunOrigin> recordedOrigins(const TaskServices& services);

}  // namespace orvane

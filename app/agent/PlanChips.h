#pragma once

#include "core/base/files/FileUrl.h"
#include "core/rules/records/RuleTrigger.h"
#include "core/tasks/AskTask.h"

#include <QString>
#include <QVariantList>

#include <string>
#include <vector>

namespace orvane {

// A request with the plan that was made of it, and that plan as the user has changed it since.
struct ReadPlan {
  std::string prompt;
  PlannedAnswer asked;
  PlannedAnswer planned;
};

// The conditions of a plan that a user can change here.
enum class PlanCondition : std::uint8_t { folder, age, size, extensions };

// The words of the request and what they became, and each condition of the plan, as the model's reading() has them.
// `folders` are offered for the folder.
[[nodiscard]] QVariantList planChips(const ReadPlan& plan, const std::vector<FileUrl>& folders, const FileUrl& home);

// Gives the condition the value that a person writes for it: a path, whole days, megabytes, extensions with commas. An
// empty text takes the condition away. Returns the key of the problem with a value that can never work, else an empty
// text.
[[nodiscard]] std::string_view setCondition(RuleTrigger& conditions, PlanCondition condition, const std::string& text);

}  // namespace orvane

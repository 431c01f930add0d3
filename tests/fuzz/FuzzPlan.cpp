// Any text is a plan or a JsonError; a plan is written as it was read, is judged, and matches files without harm.

#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/PlanExecutor.h"
#include "core/plans/records/CleaningPlan.h"
#include "tests/fuzz/FuzzCheck.h"

#include <string_view>
#include <vector>

namespace orvane::fuzz {
namespace {

std::vector<FileItem> candidates() {
  std::vector<FileItem> items;
  for (const char* path :
       {"/etc/hostname", "/home/fuzz/Downloads/Screenshot 1.png", "/tmp/R\xc3\xa9sum\xc3\xa9.PDF", "/tmp/\xff\xfe"}) {
    FileItem::Fields fields;
    fields.url = FileUrl(path);
    fields.fileSize = 1000;
    fields.category = ScanCategory::caches;
    fields.lastModifiedDate = dateFromUnix(1'700'000'000);
    items.emplace_back(std::move(fields));
  }
  return items;
}

}  // namespace

void run(std::string_view text) {
  CleaningPlan plan;
  try {
    plan = CleaningPlan::decode(text);
  } catch (const JsonError& error) {
    check(std::string_view(error.what()).size() < 1000, "an error is short");
    return;
  }
  check(CleaningPlan::decode(jsonText(plan.toJson())) == plan, "a plan reads back as it was");
  static_cast<void>(CleaningPlanSchema::firstFault(plan));
  check(PlanExecutor::dryRun(plan, candidates(), dateFromUnix(1'750'000'000)).size() <= 4, "a file matches once");
}

}  // namespace orvane::fuzz

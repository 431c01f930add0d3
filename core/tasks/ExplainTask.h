#pragma once

#include "core/base/files/FileUrl.h"
#include "core/organizer/records/CloudProvider.h"
#include "core/scanning/records/RiskLabel.h"
#include "core/scanning/records/ScanCategory.h"
#include "core/tasks/Proposal.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvane {

struct TaskServices;

// Why a place is treated as it is.
struct Explanation {
  // Of what stands there; absent where nothing does.
  struct Item {
    ScanCategory category;
    RiskLabel riskLabel;
    RowMark cleaning;  // as a cleanup would have it
    std::string organizerCategory;
    std::string decidedBy;  // what of it decides the category, in English
    bool isInUse = false;   // by the program whose place it is
  };
  // Of a folder that a tool made from a project.
  struct Build {
    FileUrl project;
    std::string marker;                    // name of the file that tells it; empty where the folder's name is enough
    std::string maker;                     // who makes it again, in English
    std::optional<std::int64_t> idleDays;  // since a source file of the project changed
  };

  FileUrl place;
  std::string knownPlaceReason;  // of a place where a program keeps what can go, in English; empty elsewhere
  std::optional<Item> item;
  std::optional<Build> build;
  std::optional<std::string> refusal;  // of the fixed rules
  // The content that a rule of this system protects there, in English: "key rings". Empty where none does.
  std::string protectedContent;
  std::optional<std::string> keptBy;  // the pattern of the keep list
  std::string keepPattern;            // the one that would keep it
  bool isGranted = false;             // a granted folder holds it, and no rule refuses it
  std::optional<CloudProvider> provider;
  std::optional<std::string> syncWarning;
  bool isCloudPlaceholder = false;
};

[[nodiscard]] std::vector<Explanation> explain(const TaskServices& services, std::span<const FileUrl> places);

}  // namespace orvane

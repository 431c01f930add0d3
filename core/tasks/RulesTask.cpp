#include "core/tasks/RulesTask.h"

#include "core/base/files/FileStatus.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathSet.h"
#include "core/base/text/Json.h"
#include "core/rules/RuleDestination.h"
#include "core/rules/RuleMatcher.h"
#include "core/rules/ScheduleCandidates.h"
#include "core/rules/records/RuleFields.h"
#include "core/safety/rules/FolderLookups.h"
#include "core/safety/rules/PathValidator.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/ScanTask.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/WholeAge.h"

#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view scheduledFiles = "scheduled";
constexpr std::string_view scannedFiles = "scanned";
constexpr std::size_t candidatesPerPiece = 4096;

using Take = std::function<void(FileItem)>;

bool namesDeveloperCaches(const CleanupRule& rule) {
  const auto& categories = rule.trigger.categories;
  return categories && std::ranges::find(*categories, ScanCategory::developerCaches) != categories->end();
}

bool namesCategories(const CleanupRule& rule) {
  return rule.trigger.categories && !rule.trigger.categories->empty();
}

// A rule that is carried out, with what it leaves.
struct ActiveRule {
  ActiveRule(const CleanupRule& rule, std::uint32_t index, const RulesOptions& options, const PathValidator& validator)
      : group(index),
        moves(rule.action.type() != RuleAction::Type::reviewOnly),
        takesKnownPlaces(namesCategories(rule)),
        takesDeveloperCaches(options.files == RuleFiles::scheduled || namesDeveloperCaches(rule)),
        matcher(rule.trigger, options.now),
        wholeAge(rule.trigger.minimumAgeDays, options.now),
        destination(rule.action, validator, options.boundary),
        kept{.rule = rule.name},
        inPlace{.rule = rule.name},
        notTaken{.rule = rule.name} {}

  std::uint32_t group;
  bool moves;
  bool takesKnownPlaces;
  bool takesDeveloperCaches;
  RuleMatcher matcher;
  WholeAge wholeAge;
  RuleDestination destination;
  RowsKeptByLabel kept;
  RowsInPlace inPlace;
  RowsNotTaken notTaken;
};

// Holds all rules of the options against one file after the other.
class RuleJudge {
 public:
  RuleJudge(const TaskServices& services, const RulesOptions& options)
      : m_services(services), m_options(options), m_kept(services) {
    for (std::uint32_t index = 0; index < options.rules.size(); ++index) {
      const auto& rule = options.rules[index];
      if (!rule.isEnabled) continue;
      if (const auto refusal = refusalOf(rule)) {
        m_refused.push_back({rule.name, refusal->text, std::string(refusal->key)});
      } else {
        m_rules.emplace_back(rule, index, options, services.validator);
      }
    }
  }

  // Candidates that are known places: rules take them where they name a category, and nothing in them is too young.
  void setPlaces(std::vector<FileItem> places) {
    m_places = std::move(places);
    for (const auto& place : m_places) m_known.insert(place.url().path());
  }

  // How the file stands as a row; absent where it is none.
  [[nodiscard]] std::optional<RowMark> judge(const FileItem& file) {
    ActiveRule* mover = nullptr;
    ActiveRule* lister = nullptr;
    ActiveRule* holder = nullptr;
    const auto keepFirst = [](ActiveRule*& first, ActiveRule& rule) {
      if (first == nullptr) first = &rule;
    };
    for (auto& rule : m_rules) {
      if (!takes(rule, file)) continue;
      if (!rule.moves) {
        keepFirst(lister, rule);
      } else if (rule.destination.holds(file, m_folders)) {
        keepFirst(holder, rule);
      } else {
        keepFirst(mover, rule);
      }
    }
    if ((mover != nullptr || lister != nullptr) && m_kept.hold(file)) return std::nullopt;
    if (mover != nullptr) return markUnder(*mover, file);
    if (lister != nullptr) return RowMark{Choice::locked, Lock::listedOnly, lister->group};
    if (holder != nullptr) holder->inPlace.rows.add(file.fileSize());
    return std::nullopt;
  }

  // A builder with a group for each rule of the options.
  [[nodiscard]] ProposalBuilder builder() const {
    ProposalBuilder builder(TaskKind::rules, withKnownPlaces(m_options.boundary, m_places), m_options.now);
    for (std::uint32_t index = 0; index < m_options.rules.size(); ++index) {
      builder.addGroup({.id = m_options.rules[index].id, .name = m_options.rules[index].name, .source = index});
    }
    for (const auto& rule : m_rules) {
      auto& group = builder.group(rule.group);
      group.destinationFolder = rule.destination.folder();
      group.refusal = rule.destination.refusal();
    }
    return builder;
  }

  void noteIn(ProposalBuilder& builder) const {
    for (const auto& refused : m_refused) builder.note(refused);
    for (const auto& rule : m_rules) {
      if (rule.kept.rows.count > 0) builder.note(rule.kept);
      if (rule.inPlace.rows.count > 0) builder.note(rule.inPlace);
      builder.note(rule.notTaken);
    }
    if (m_inTrash.rows.count > 0) builder.note(m_inTrash);
    m_kept.noteIn(builder);
  }

 private:
  [[nodiscard]] bool takes(ActiveRule& rule, const FileItem& file) const {
    const auto& path = file.url().path();
    // An item in a known place goes with it or not at all.
    if (!m_known.empty() && m_known.holds(path)) return false;
    const bool isPlace = !m_known.empty() && m_known.contains(path);
    if (isPlace && (!rule.takesKnownPlaces || isPlaceInUse(m_services, file))) return false;
    if (file.category() == ScanCategory::developerCaches && !rule.takesDeveloperCaches) return false;
    auto mismatch = rule.matcher.mismatch(file);
    if (!mismatch && isPlace && !rule.wholeAge.admits(file)) mismatch = RuleMismatch::age;
    if (!mismatch && !rule.wholeAge.isReachedBy(projectDate(m_services, file))) mismatch = RuleMismatch::age;
    if (!mismatch) return true;
    ++rule.notTaken.counts[static_cast<std::size_t>(*mismatch)];
    if (*mismatch == RuleMismatch::manualLabel && rule.matcher.matchesButForLabel(file)) {
      rule.kept.rows.add(file.fileSize());
    }
    return false;
  }

  [[nodiscard]] std::optional<RowMark> markUnder(const ActiveRule& rule, const FileItem& file) {
    if (file.category() == ScanCategory::trash) {
      m_inTrash.rows.add(file.fileSize());
      return std::nullopt;
    }
    if (!rule.destination.refusal().empty()) return RowMark{Choice::locked, Lock::refused, rule.group};
    return RowMark{Choice::selected, Lock::none, rule.group};
  }

  const TaskServices& m_services;
  const RulesOptions& m_options;
  KeptRows m_kept;
  std::vector<FileItem> m_places;
  PathSet m_known;
  std::deque<ActiveRule> m_rules;
  std::vector<RuleRefused> m_refused;
  RowsInTrash m_inTrash;
  FolderLookups m_folders;
};

ScanEnd findFiles(const TaskServices& services, const RulesOptions& options, DeveloperCaches developerCaches,
                  const TaskMonitor& monitor, const Take& take) {
  const auto& folders = options.boundary.folders();
  if (options.files == RuleFiles::scanned) {
    return scanItems(services, folders, developerCaches, monitor, take);
  }
  auto files = scheduleCandidates(folders, monitor.stop, services.validator.protectedLocations().profile());
  if (monitor.stop.stop_requested()) return ScanEnd::cancelled;
  for (auto& file : files) take(std::move(file));
  return ScanEnd::completed;
}

// The known places that rules which name a category may take, where the boundary is that of the grants.
std::vector<FileItem> placesFor(const TaskServices& services, const Boundary& boundary, DeveloperCaches developerCaches,
                                const std::stop_token& stop) {
  const bool areGranted = grantedKnownPlaces(services) == KnownPlaces::include &&
                          boundary.canonicalPaths() == Boundary(grantedFolders(services)).canonicalPaths();
  auto places = areGranted ? knownPlaceItems(services, developerCaches, stop) : std::vector<FileItem>();
  std::erase_if(places, [](const FileItem& place) { return place.category() == ScanCategory::trash; });
  return places;
}

bool anyNamesCategories(std::span<const CleanupRule> rules) {
  return std::ranges::any_of(rules, [](const CleanupRule& rule) { return rule.isEnabled && namesCategories(rule); });
}

Json subjectOf(const RulesOptions& options) {
  Json subject = Json::object();
  auto& rules = subject["rules"] = Json::array();
  for (const auto& rule : options.rules) rules.push_back(rule.toJson());
  subject[knownPlacesKey] = options.knownPlaces == KnownPlaces::include;
  subject["files"] = options.files == RuleFiles::scheduled ? scheduledFiles : scannedFiles;
  return subject;
}

RulesOptions rulesOptionsFrom(const Json& subject) {
  RulesOptions options;
  const auto& rules = requiredKey(subject, "rules");
  if (!rules.is_array()) throw JsonError("\"rules\" must be an array");
  for (const auto& rule : rules) options.rules.push_back(CleanupRule::fromJson(rule));
  // Files of earlier versions do not say.
  if (optionalKey(subject, knownPlacesKey) != nullptr && !booleanAt(subject, knownPlacesKey)) {
    options.knownPlaces = KnownPlaces::leaveOut;
  }
  const auto files = stringAt(subject, "files");
  if (files == scheduledFiles) {
    options.files = RuleFiles::scheduled;
  } else if (files != scannedFiles) {
    throw JsonError(fmt::format("\"files\" must be \"{}\" or \"{}\"", scannedFiles, scheduledFiles));
  }
  return options;
}

Proposal finished(const RuleJudge& judge, const RulesOptions& options, ProposalBuilder& builder) {
  judge.noteIn(builder);
  builder.setSubject(subjectOf(options));
  return builder.take();
}

}  // namespace

std::optional<Proposal> proposeRules(const TaskServices& services, const RulesOptions& options,
                                     const TaskMonitor& monitor) {
  RuleJudge judge(services, options);
  const auto developerCaches = developerCachesFor(options.rules);
  std::vector<FileItem> places;
  if (options.knownPlaces == KnownPlaces::include && anyNamesCategories(options.rules)) {
    places = placesFor(services, options.boundary, developerCaches, monitor.stop);
  }
  judge.setPlaces(places);
  auto builder = judge.builder();
  const auto add = [&](FileItem file) {
    if (const auto mark = judge.judge(file)) builder.add(std::move(file), *mark);
  };
  for (auto& place : places) add(std::move(place));
  const auto end = findFiles(services, options, developerCaches, monitor, add);
  if (end == ScanEnd::cancelled) return std::nullopt;
  return finished(judge, options, builder);
}

std::optional<Proposal> reproposeRules(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                       Date countedTo, const TaskMonitor& monitor) {
  auto options = rulesOptionsFrom(subject);
  options.boundary = boundary;
  options.now = countedTo;
  return proposeRules(services, options, monitor);
}

DeveloperCaches developerCachesFor(std::span<const CleanupRule> rules) {
  const bool areNamed =
      std::ranges::any_of(rules, [](const CleanupRule& rule) { return rule.isEnabled && namesDeveloperCaches(rule); });
  return areNamed ? DeveloperCaches::include : DeveloperCaches::leaveOut;
}

std::optional<ItemList> ruleCandidates(const TaskServices& services, const Boundary& boundary,
                                       const TaskMonitor& monitor) {
  ItemList candidates;
  ItemPiece piece;
  const auto flush = [&] {
    piece.shrink_to_fit();
    candidates.append(std::make_shared<const ItemPiece>(std::exchange(piece, {})));
  };
  for (auto& place : placesFor(services, boundary, DeveloperCaches::include, monitor.stop)) {
    piece.push_back(std::move(place));
  }
  const RulesOptions options{.rules = {}, .boundary = boundary};
  const auto end = findFiles(services, options, DeveloperCaches::include, monitor, [&](FileItem file) {
    piece.push_back(std::move(file));
    if (piece.size() == candidatesPerPiece) flush();
  });
  if (end == ScanEnd::cancelled) return std::nullopt;
  flush();
  return candidates;
}

Proposal proposeRules(const TaskServices& services, const RulesOptions& options, const ItemList& candidates) {
  RuleJudge judge(services, options);
  judge.setPlaces(knownPlacesAmong(services, candidates));
  auto builder = judge.builder();
  candidates.forEach([&](std::size_t, const FileItem& file) {
    if (const auto mark = judge.judge(file)) builder.add(file, *mark);
    return true;
  });
  return finished(judge, options, builder);
}

std::optional<RowSum> countRules(const TaskServices& services, const RulesOptions& options, const ItemList& candidates,
                                 const TaskMonitor& monitor) {
  RuleJudge judge(services, options);
  judge.setPlaces(knownPlacesAmong(services, candidates));
  RowSum sum;
  candidates.forEach([&](std::size_t, const FileItem& file) {
    if (judge.judge(file)) sum.add(file.fileSize());
    return !monitor.stop.stop_requested();
  });
  if (monitor.stop.stop_requested()) return std::nullopt;
  return sum;
}

std::vector<RuleProblem> problemsOnDisk(const TaskServices& services, const CleanupRule& rule,
                                        const Boundary& boundary) {
  std::vector<RuleProblem> problems;
  for (const auto& field : ruleFields()) {
    if (field.input != RuleField::Input::folder) continue;
    const auto folder = field.text(rule.trigger);
    if (folder.empty() || itemExists(expandedHome(folder).c_str())) continue;
    problems.push_back({field.key, fmt::format("there is no folder {}", folder), field.problemKey});
  }
  const RuleDestination destination(rule.action, services.validator, boundary);
  if (!destination.refusal().empty()) {
    problems.push_back({ruleDestinationPart, destination.refusal(), "rules.destination_refused"});
  }
  return problems;
}

}  // namespace orvane

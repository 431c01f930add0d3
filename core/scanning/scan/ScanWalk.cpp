#include "core/scanning/scan/ScanWalk.h"

#include "core/base/values/CheckedArithmetic.h"
#include "core/organizer/categories/CategoryClassifier.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/records/RiskEvaluator.h"
#include "core/scanning/scan/FolderScan.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {
namespace {

constexpr std::int64_t entriesPerProgress = 100;

void fillIn(ListingChunk::WholeFolder& folder, ScanEvent& event) {
  auto& fields = folder.fields;
  fields.fileSize = folder.size->bytes();
  if (fields.riskLabel) {
    event.emplace<FileItem>(std::move(fields));
    return;
  }
  fields.category = CategoryClassifier::classify(fields.url, fields.fileSize);
  fields.riskLabel = RiskEvaluator::evaluate(fields.category, fields.url, fields.fileSize, fields.createdDate);
  event.emplace<FileItem>(std::move(fields));
}

}  // namespace

ScanStream::Walk::Walk(const PathValidator& validator, const FileStatusReader& statusReader,
                       std::vector<FileUrl> folders, DeveloperCaches developerCaches, ScanDigest digest)
    : m_folders(std::move(folders)),
      m_context{validator,
                statusReader,
                PathValidator::canonicalizeRoots(m_folders),
                developerCaches,
                BuildFolders(developerCaches == DeveloperCaches::include ? validator.protectedLocations().profile()
                                                                         : SystemProfile::none()),
                {},
                {},
                NamedFiles(validator.protectedLocations().profile()),
                std::move(digest)} {
  WorkStack::Tasks tasks;
  for (std::size_t i = 0; i < m_folders.size(); ++i) {
    if (m_folders[i].path().empty()) continue;
    tasks.push_back(std::make_unique<FolderScan>(m_context, m_context.board.addStart(), m_folders[i].path(),
                                                 m_folders[i].path(),
                                                 UnreadFolder{nullptr, m_context.boundary.canonicalPaths()[i]}));
  }
  m_context.walk.work.push(tasks);
  m_hasThreads = m_context.walk.work.start(WorkStack::processorCount()) > 0;
}

ScanStream::Walk::~Walk() {
  m_context.walk.stop();
}

std::vector<ScanEvent> ScanStream::Walk::nextBatch() {
  std::vector<ScanEvent> events;
  while (!m_isEnded && events.empty()) {
    if (m_context.walk.isStopped()) {
      m_isEnded = true;
      events.emplace_back(ScanCancelled{});
    } else if (!m_ready.empty()) {
      events = eventsOf(std::move(m_ready.front()));
      m_ready.pop_front();
    } else if (m_context.board.isFinished()) {
      m_isEnded = true;
      events.emplace_back(ScanCompleted{m_itemsFound, m_bytesFound});
    } else {
      if (!m_hasThreads) m_context.walk.work.work(1);
      m_context.board.take(m_ready);
    }
  }
  return events;
}

void ScanStream::Walk::cancel() noexcept {
  m_context.walk.stop();
  m_context.board.wake();
}

void ScanStream::Walk::count(const ScanEvent& event) {
  ++m_itemsFound;
  m_bytesFound = checkedAdd(m_bytesFound, std::get<FileItem>(event).fileSize());
}

std::vector<ScanEvent> ScanStream::Walk::digestedEvents(ListingChunk chunk, std::int64_t before) {
  m_itemsFound += chunk.digested->items;
  m_bytesFound = checkedAdd(m_bytesFound, chunk.digested->bytes);
  std::vector<ScanEvent> events;
  for (auto hundred = before / entriesPerProgress + 1; hundred <= m_examined / entriesPerProgress; ++hundred) {
    events.emplace_back(ScanProgress{hundred * entriesPerProgress, m_bytesFound, chunk.digested->lastName});
  }
  std::ranges::move(chunk.events, std::back_inserter(events));
  return events;
}

std::vector<ScanEvent> ScanStream::Walk::eventsOf(ListingChunk chunk) {
  for (auto& folder : chunk.wholeFolders) fillIn(folder, chunk.events[folder.eventIndex]);
  const std::int64_t before = m_examined;
  m_examined += chunk.examined;
  if (m_context.digest) {
    // A whole folder's size was not there when the others were digested.
    if (!chunk.digested) chunk.digest(m_context.digest);
    return digestedEvents(std::move(chunk), before);
  }
  const auto progressCount = m_examined / entriesPerProgress - before / entriesPerProgress;
  if (progressCount == 0) {
    for (const auto& event : chunk.events) count(event);
    return std::move(chunk.events);
  }
  std::vector<ScanEvent> result;
  result.reserve(chunk.events.size() + static_cast<std::size_t>(progressCount));
  auto item = chunk.events.begin();
  auto other = chunk.others.begin();
  std::int64_t examined = before;
  for (std::uint32_t position = 0; position < chunk.examined; ++position) {
    const bool isOther = other != chunk.others.end() && other->position == position;
    if (!isOther) {
      count(*item);
      result.push_back(std::move(*item++));
    }
    if (++examined % entriesPerProgress == 0) {
      std::string name =
          isOther ? other->name : std::string(std::get<FileItem>(result.back()).url().lastPathComponent());
      result.emplace_back(ScanProgress{examined, m_bytesFound, std::move(name)});
    }
    if (isOther) ++other;
  }
  return result;
}

}  // namespace orvane

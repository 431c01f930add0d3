#include "app/common/RunPace.h"

#include "app/common/Format.h"
#include "app/common/Text.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

// Before, a speed would tell of the cache rather than of the disk.
constexpr std::chrono::duration<double> minElapsed{1};
constexpr double secondsPerMinute = 60;

QString sizeText(std::int64_t bytes) {
  return Format::bytes(static_cast<double>(bytes));
}

QString timeLeftText(double seconds) {
  if (seconds < secondsPerMinute) {
    return countedText("run.seconds_left", std::max<std::int64_t>(1, std::llround(seconds)));
  }
  return countedText("run.minutes_left", std::llround(seconds / secondsPerMinute));
}

}  // namespace

QString RunPace::text() const {
  QStringList parts;
  if (!next.empty()) parts += shownName(next);
  if (totalBytes > 0) parts += localizedText("count.of").arg(sizeText(doneBytes), sizeText(totalBytes));
  if (elapsed >= minElapsed && fraction > 0 && fraction < 1) {
    const auto speed = static_cast<double>(doneBytes) / elapsed.count();
    if (speed >= 1) parts += localizedText("run.speed").arg(Format::bytes(speed));
    parts += timeLeftText(elapsed.count() * (1 - fraction) / fraction);
  }
  return parts.join(QStringLiteral(" · "));
}

PaceCounter::PaceCounter(const Approval& approval) : m_approval(approval) {}

RunPace PaceCounter::at(std::size_t done) {
  const auto& rows = m_approval.rows();
  done = std::min(done, rows.size());
  for (; m_counted < done; ++m_counted) m_bytes += m_approval.proposal().row(rows[m_counted]).item.fileSize();
  RunPace pace;
  pace.doneBytes = m_bytes;
  pace.totalBytes = m_approval.toTrash().bytes + m_approval.toFolders().bytes;
  const auto part = [](auto some, auto all) {
    return all > 0 ? static_cast<double>(some) / static_cast<double>(all) : 0.0;
  };
  pace.fraction = pace.totalBytes > 0 ? part(pace.doneBytes, pace.totalBytes) : part(done, rows.size());
  if (done < rows.size()) pace.next = m_approval.proposal().row(rows[done]).item.url().lastPathComponent();
  pace.elapsed = Clock::now() - m_begun;
  return pace;
}

}  // namespace orvane

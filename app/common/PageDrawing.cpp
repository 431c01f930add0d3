#include "app/common/PageDrawing.h"

#include "app/common/Pictures.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/UnicodeText.h"

#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QProcess>

#include <algorithm>
#include <system_error>

namespace orvane {
namespace {

// Bytes that it may write to: later versions of the library reserve many times as many addresses.
constexpr rlim_t maxMemory = 1024UL * 1024 * 1024;
constexpr rlim_t maxSeconds = 5;                    // of processor time
constexpr qsizetype maxOutput = 64L * 1024 * 1024;  // bytes
constexpr auto pageFormat = "png";                  // between the two processes
constexpr int maxSide = 4096;                       // pixels

void limit(__rlimit_resource resource, rlim_t max) {
  const rlimit both{.rlim_cur = max, .rlim_max = max};
  ::setrlimit(resource, &both);
}

// On white, which paper is where nothing is drawn.
QImage onPaper(const QImage& page) {
  QImage paper(page.size(), QImage::Format_RGB32);
  paper.fill(Qt::white);
  QPainter(&paper).drawImage(0, 0, page);
  return paper;
}

// All that a process writes until it ends; empty when it takes too long, writes too much or fails.
QByteArray outputOf(QProcess& process, std::chrono::milliseconds timeLimit) {
  const QDeadlineTimer deadline(timeLimit);
  QByteArray output;
  while (process.state() != QProcess::NotRunning && output.size() <= maxOutput && !deadline.hasExpired()) {
    process.waitForReadyRead(static_cast<int>(deadline.remainingTime()));
    output += process.readAllStandardOutput();
  }
  if (process.state() != QProcess::NotRunning) {
    process.kill();
    process.waitForFinished();
    return {};
  }
  const bool isWell = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
  return isWell ? output + process.readAllStandardOutput() : QByteArray();
}

}  // namespace

bool isPageName(const FileUrl& file) {
  return lowercased(file.pathExtension()) == "pdf";
}

QImage PageReader::read(const FileUrl& file, QSize size) const {
  FileDescriptor document;
  try {
    document = openRegularFile(file.path());
  } catch (const std::system_error&) {
    return {};
  }
  QProcess process;
  // Nothing that a damaged document makes the library say is news to anybody.
  process.setStandardErrorFile(QProcess::nullDevice());
  process.setChildProcessModifier([from = document.get()] { ::dup2(from, STDIN_FILENO); });
  process.start(QFile::decodeName(QByteArray::fromStdString(program)),
                {QString::fromUtf8(drawPageArgument.data(), static_cast<qsizetype>(drawPageArgument.size())),
                 QString::number(size.width()), QString::number(size.height())},
                QIODevice::ReadOnly);
  return decodedPicture(outputOf(process, maxTime), size);
}

bool asksForPage(std::span<const char* const> arguments) {
  return arguments.size() == 4 && arguments[1] == drawPageArgument;
}

int drawPage(int argc, char** argv) {
  const QSize room(std::clamp(QByteArray(argv[2]).toInt(), 1, maxSide),
                   std::clamp(QByteArray(argv[3]).toInt(), 1, maxSide));
  limit(RLIMIT_DATA, maxMemory);
  limit(RLIMIT_CPU, maxSeconds);
  limit(RLIMIT_CORE, 0);
  limit(RLIMIT_FSIZE, 0);
  const QCoreApplication application(argc, argv);
  QFile document;
  if (!document.open(STDIN_FILENO, QIODevice::ReadOnly)) return 1;
  QImageReader reader(&document, "pdf");
  const auto natural = reader.size();
  if (!natural.isValid() || natural.isEmpty()) return 1;
  reader.setScaledSize(natural.scaled(room, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
  const auto page = reader.read();
  QFile output;
  if (page.isNull() || !output.open(STDOUT_FILENO, QIODevice::WriteOnly)) return 1;
  return onPaper(page).save(&output, pageFormat) ? 0 : 1;
}

}  // namespace orvane

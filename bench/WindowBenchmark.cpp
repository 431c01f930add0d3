// The window with a million items: how soon it is there, how soon each section opens, how long its main thread is ever
// blocked while the items come in, what an item takes of memory, and how fast the list scrolls and the keyboard walks
// it; and how fast a map of half as many files drills down.
//
//     window-benchmark [ITEMS]
//
// Runs without a display (QT_QPA_PLATFORM=offscreen) with software rendering, in a home of its own, on made-up items:
// the disk plays no part. bench/window-with-reader runs it on a display, with a screen reader attached.

#include "app/cleanup/CleanupModel.h"
#include "app/common/BackgroundQueue.h"
#include "app/overview/MapModel.h"
#include "app/shell/AppState.h"
#include "app/shell/Window.h"

#include <fmt/format.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace orvane {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

template <typename Condition>
void runUntil(Condition condition) {
  QTimer tick;
  tick.start(20);
  while (!condition()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    // Only a running loop deletes what waits for it: the next one would be charged for all of it.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

// Resident bytes of this process.
double residentBytes() {
  std::ifstream file("/proc/self/statm");
  double pages = 0;
  file >> pages >> pages;
  return pages * 4096;
}

// Processor time of the calling thread, in milliseconds.
double threadMilliseconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// How long the main thread keeps whoever asks for it waiting: asks it for a sign of life again and again. On a busy
// machine that is also the wait for a processor; what the thread itself computed between two signs is told beside it.
class Pulse {
 public:
  struct Longest {
    double wait = 0;  // milliseconds
    double work = 0;  // milliseconds of processor time
  };
  explicit Pulse(QObject* receiver)
      : m_receiver(receiver), m_thread([this](const std::stop_token& stop) { work(stop); }) {
    m_last = threadMilliseconds();
  }
  // Since the last call.
  Longest takeLongest() { return std::exchange(m_longest, {}); }

 private:
  void work(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      if (!m_isWaiting.exchange(true)) {
        callOn(m_receiver, [this, asked = Clock::now()] {
          m_longest.wait = std::max(m_longest.wait, millisecondsSince(asked));
          const auto now = threadMilliseconds();
          m_longest.work = std::max(m_longest.work, now - std::exchange(m_last, now));
          m_isWaiting = false;
        });
      }
      std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
  }

  QObject* m_receiver;
  Longest m_longest;  // of the main thread
  double m_last = 0;  // processor time at the last sign
  std::atomic<bool> m_isWaiting{false};
  std::jthread m_thread;
};

void printBlock(Pulse& pulse, const char* what) {
  const auto longest = pulse.takeLongest();
  std::printf("longest block    %6.1f ms, of them %.1f ms of its own work: %s\n", longest.wait, longest.work, what);
}

FileItem makeItem(std::size_t number, Date now) {
  constexpr std::array categories{ScanCategory::caches, ScanCategory::logs, ScanCategory::oldDownloads,
                                  ScanCategory::largeFiles, ScanCategory::screenshots};
  FileItem::Fields fields;
  fields.url = FileUrl(fmt::format("/home/me/Downloads/Projects {}/Some Folder/document number {}.dat", number % 97,
                                   number * 2654435761U % 100000007U));
  fields.fileSize = static_cast<std::int64_t>(number * 7919 % 10'000'000);
  fields.lastModifiedDate = now - ReferenceClock::duration(static_cast<double>(number % 5000) * 3600);
  fields.createdDate = fields.lastModifiedDate;
  fields.category = categories.at(number % categories.size());
  fields.relativeStart = 9;
  return FileItem(std::move(fields));
}

// As a scan hands them over, as fast as they can be made.
void stream(AppState& state, std::size_t count) {
  constexpr std::size_t itemsPerPiece = 4096;
  const auto now = ReferenceClock::now();
  for (std::size_t first = 0; first < count; first += itemsPerPiece) {
    const auto piece = std::make_shared<ItemPiece>();
    std::int64_t bytes = 0;
    piece->reserve(itemsPerPiece);
    for (std::size_t number = first; number < std::min(count, first + itemsPerPiece); ++number) {
      piece->push_back(makeItem(number, now));
      bytes += piece->back().fileSize();
    }
    state.scannedItems().appendLater(piece, bytes, {});
  }
}

template <typename Wanted>
QQuickItem* findItem(QQuickItem* item, Wanted wanted) {
  if (wanted(item)) return item;
  for (auto* child : item->childItems()) {
    if (auto* found = findItem(child, wanted)) return found;
  }
  return nullptr;
}

// Milliseconds from a change to the frame that shows it.
template <typename Change>
double frameAfter(QQuickWindow& window, Change change) {
  const auto start = Clock::now();
  QEventLoop loop;
  const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
  change();
  window.update();
  loop.exec();
  QObject::disconnect(connection);
  return millisecondsSince(start);
}

void printFrames(const char* what, std::vector<double> times) {
  constexpr double maxFrameTime = 33;
  std::sort(times.begin(), times.end());
  const auto late = times.end() - std::upper_bound(times.begin(), times.end(), maxFrameTime);
  std::printf(
      "%-16s %6.1f ms a frame at the median, %.1f ms at the 99th percentile, %.1f ms at most; %d of %d over %.0f ms\n",
      what, times[times.size() / 2], times[times.size() * 99 / 100], times.back(), static_cast<int>(late),
      static_cast<int>(times.size()), maxFrameTime);
}

void scroll(QQuickWindow& window) {
  auto* list = findItem(window.contentItem(), [](const QQuickItem* item) {
    return item->isVisible() && item->inherits("QQuickListView") && item->property("count").toInt() > 1000;
  });
  if (list == nullptr) {
    std::puts("no list to scroll");
    return;
  }
  std::vector<double> times;
  for (int frame = 0; frame < 600; ++frame) {
    // Near the end of each hundred it jumps, as by a drag of the scroll bar.
    const double step = frame % 100 == 99 ? list->property("contentHeight").toDouble() / 8 : 173;
    times.push_back(
        frameAfter(window, [&] { list->setProperty("contentY", list->property("contentY").toDouble() + step); }));
  }
  printFrames("scrolling", times);

  QMetaObject::invokeMethod(list, "positionViewAtBeginning");
  QMetaObject::invokeMethod(list, "forceActiveFocus");
  const auto press = [&window](Qt::Key key) {
    QKeyEvent pressed(QEvent::KeyPress, key, Qt::NoModifier);
    QKeyEvent released(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &pressed);
    QCoreApplication::sendEvent(&window, &released);
  };
  times.clear();
  for (int step = 0; step < 300; ++step) {
    const auto key = step % 100 == 99 ? Qt::Key_End : step % 100 == 49 ? Qt::Key_Home : Qt::Key_Down;
    times.push_back(frameAfter(window, [&] { press(key); }));
  }
  printFrames("by the keyboard", times);
}

// From each choice of a section to its frame: the slowest of them.
void openSections(QQuickWindow& window, AppState& state, const char* when) {
  const int first = state.selectedNavigation();
  double longest = 0;
  int slowest = 0;
  std::vector<double> times;
  std::vector<double> work;
  for (const auto& row : navigationRows) {
    const auto section = static_cast<int>(row.section);
    if (section == state.selectedNavigation()) continue;
    const auto before = threadMilliseconds();
    times.push_back(frameAfter(window, [&] { state.setSelectedNavigation(section); }));
    work.push_back(threadMilliseconds() - before);
    if (times.back() > longest) slowest = section;
    longest = std::max(longest, times.back());
    runUntil([&, until = Clock::now() + std::chrono::milliseconds(300)] { return Clock::now() > until; });
  }
  state.setSelectedNavigation(first);
  runUntil([&, until = Clock::now() + std::chrono::milliseconds(300)] { return Clock::now() > until; });
  std::sort(times.begin(), times.end());
  std::sort(work.begin(), work.end());
  std::printf(
      "a section opens  %6.1f ms at the median, %.1f ms at most (%s), of them %.1f ms and %.1f ms of work: %s\n",
      times[times.size() / 2], longest,
      std::string(navigationRows.at(static_cast<std::size_t>(slowest)).rawValue).c_str(), work[work.size() / 2],
      work.back(), when);
}

// A folder of ncdu's form, with as many files and folders in it, five levels deep.
void writeMapFolder(std::ofstream& file, const std::string& name, int level, std::size_t& number) {
  file << R"([{"name":")" << name << R"(","dsize":4096})";
  for (int i = 0; i < 8; ++i) {
    ++number;
    file << fmt::format(R"(,{{"name":"document number {}.dat","dsize":{}}})", number, number * 7919 % 10'000'000);
  }
  for (int i = 0; i < 9 && level < 5; ++i) {
    file << ',';
    writeMapFolder(file, fmt::format("Folder {}", i), level + 1, number);
  }
  file << ']';
}

// A section's screen holds the models that it was handed.
template <typename Model>
Model* modelOf(const QQuickWindow& window, AppState& state, AppNavigationItem section, const char* name) {
  state.setSelectedNavigation(static_cast<int>(section));
  return window.property("screen").value<QObject*>()->property(name).value<Model*>();
}

MapModel& openMap(QQuickWindow& window, AppState& state, const std::string& home) {
  auto& model = *modelOf<MapModel>(window, state, AppNavigationItem::Overview, "map");
  {
    std::ofstream file(home + "/map.json");
    file << "[1,2,{},";
    std::size_t number = 0;
    writeMapFolder(file, "/home/me", 0, number);
    file << ']';
  }
  model.openFile(QString::fromStdString(home + "/map.json"));
  runUntil([&] { return !model.isMapping(); });
  return model;
}

// From each choice of a folder to the frame that shows it, and what the main thread computed for that.
void drillDown(QQuickWindow& window, MapModel& model, const char* picture) {
  runUntil([&, until = Clock::now() + std::chrono::seconds(1)] { return Clock::now() > until; });
  std::vector<double> work;
  std::vector<double> frames;
  for (int turn = 0; turn < 60; ++turn) {
    const auto before = threadMilliseconds();
    frames.push_back(frameAfter(
        window, [&] { model.enter(turn % 6 == 5 ? 0 : model.areas().value(turn % 7).toMap()["folder"].toInt()); }));
    work.push_back(threadMilliseconds() - before);
  }
  std::sort(work.begin(), work.end());
  std::sort(frames.begin(), frames.end());
  const auto last = work.size() * 95 / 100;
  std::printf(
      "drilling down    %6.1f ms to the frame at the median, %.1f ms at the 95th percentile, %.1f ms at most, of them "
      "%.1f ms, %.1f ms and %.1f ms of work: %s\n",
      frames[frames.size() / 2], frames[last], frames.back(), work[work.size() / 2], work[last], work.back(), picture);
}

int run(int argc, char** argv, Clock::time_point start) {
  std::size_t count = 1'000'000;
  if (argc > 1) std::from_chars(argv[1], argv[1] + std::string_view(argv[1]).size(), count);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  const QApplication application(argc, argv);
  Window window(systemWindowServices());
  if (!window.show()) return 1;
  auto* top = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().value(0));
  bool hasFrame = false;
  QObject::connect(top, &QQuickWindow::frameSwapped, top, [&] { hasFrame = true; });
  runUntil([&] { return hasFrame; });
  std::printf("first frame      %6.0f ms after main() began\n", millisecondsSince(start));

  auto& state = *top->property("appState").value<AppState*>();
  openSections(*top, state, "for the first time");
  openSections(*top, state, "again");
  auto& cleanup = *modelOf<CleanupModel>(*top, state, AppNavigationItem::Cleanup, "model");
  runUntil([&, until = Clock::now() + std::chrono::seconds(1)] { return Clock::now() > until; });
  const auto before = residentBytes();
  Pulse pulse(&state);
  state.scannedItems().begin({FileUrl("/home/me/Downloads")});
  const auto streaming = Clock::now();
  std::thread source([&] { stream(state, count); });
  const auto total = static_cast<double>(count);
  runUntil([&] { return cleanup.itemCount() == total; });
  std::printf("streaming        %6.0f ms for %.0f items\n", millisecondsSince(streaming), total);
  source.join();
  runUntil([&] { return cleanup.shownCount() == total; });
  std::printf("all are shown    %6.0f ms\n", millisecondsSince(streaming));
  runUntil([&, until = Clock::now() + std::chrono::seconds(1)] { return Clock::now() > until; });
  printBlock(pulse, "items come in");
  std::printf("memory           %6.0f bytes an item\n", (residentBytes() - before) / total);

  const auto block = [&](const char* what, auto act) {
    callOn(&state, act);
    runUntil([&, until = Clock::now() + std::chrono::milliseconds(1500)] { return Clock::now() > until; });
    printBlock(pulse, what);
  };
  block("everything safe is selected", [&] { cleanup.selectRecommended(); });
  block("everything is deselected", [&] { cleanup.deselectAll(); });
  block("a category is selected", [&] { cleanup.toggle(0); });
  block("a search", [&] { cleanup.setSearchText("number 77"); });
  block("its end", [&] { cleanup.setSearchText(""); });
  block("a category is folded", [&] { cleanup.toggleExpanded(0); });
  block("and unfolded", [&] { cleanup.toggleExpanded(0); });
  scroll(*top);
  const auto sorting = Clock::now();
  int shown = 0;
  QObject::connect(&cleanup, &CleanupModel::countsChanged, &cleanup, [&] { ++shown; });
  cleanup.setSort(CleanupModel::Name);
  runUntil([&] { return shown > 0; });
  std::printf("sorting by name  %6.0f ms in the background\n", millisecondsSince(sorting));
  printBlock(pulse, "sorting by name");
  openSections(*top, state, "with all items");
  auto& map = openMap(*top, state, qEnvironmentVariable("HOME").toStdString());
  drillDown(*top, map, "a treemap");
  auto* card = findItem(top->contentItem(), [](const QQuickItem* item) { return item->property("asRings").isValid(); });
  if (card != nullptr) card->setProperty("asRings", true);
  drillDown(*top, map, "rings");
  return 0;
}

}  // namespace
}  // namespace orvane

int main(int argc, char** argv) {
  const auto start = std::chrono::steady_clock::now();
  std::string home = (std::filesystem::temp_directory_path() / "orvane-window-XXXXXX").string();
  if (::mkdtemp(home.data()) == nullptr) return 1;
  qputenv("HOME", QByteArray::fromStdString(home));
  qputenv("XDG_CONFIG_HOME", "");
  std::filesystem::create_directories(home + "/.config/orvane");
  std::ofstream(home + "/.config/orvane/preferences.json") << R"({"hasCompletedOnboarding": true})";
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  const int status = orvane::run(argc, argv, start);
  std::filesystem::remove_all(home);
  return status;
}

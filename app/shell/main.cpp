#include "app/common/PageDrawing.h"
#include "app/common/Text.h"
#include "app/shell/HeadlessStart.h"
#include "app/shell/SingleInstance.h"
#include "app/shell/StartRequest.h"
#include "app/shell/WaylandSeat.h"
#include "app/shell/Window.h"
#include "core/base/files/HomeFolder.h"
#include "core/sample/services/SampleHome.h"

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QQuickStyle>
#include <QSurfaceFormat>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace {

constexpr int antialiasingSamples = 4;

bool has(std::span<const char* const> arguments, std::string_view wanted) {
  return std::find(arguments.begin(), arguments.end(), wanted) != arguments.end();
}

// From here on this process works in a sample home of its own, and no longer in the user's.
void enterSampleHome() {
  auto folder = (std::filesystem::temp_directory_path() / "orvane-demo-XXXXXX").string();
  if (::mkdtemp(folder.data()) == nullptr) throw std::system_error(errno, std::generic_category(), folder);
  const auto sample = orvane::SampleHome::make(folder);
  for (const auto& [name, value] : sample.environment()) ::setenv(name.c_str(), value.c_str(), 1);
  std::fprintf(stderr, "orvane: the sample home is in %s\n", folder.c_str());
}

int fail(const std::exception& error) {
  std::fprintf(stderr, "orvane: %s\n", error.what());
  return 1;
}

// Nobody sees the standard error of a program that a desktop started.
int failVisibly(const std::exception& error) {
  const int status = fail(error);
  QMessageBox::critical(nullptr, QApplication::applicationDisplayName(), orvane::shownName(error.what()));
  return status;
}

int showWindow(int argc, char** argv) {
  auto format = QSurfaceFormat::defaultFormat();
  format.setSamples(antialiasingSamples);
  QSurfaceFormat::setDefaultFormat(format);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  orvane::chooseInputModuleForWayland();
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("orvane"));
  QApplication::setApplicationDisplayName(QStringLiteral("Orvane"));
  QApplication::setApplicationVersion(QStringLiteral(ORVANE_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("orvane"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Orvane/icons/app.svg")));

  const auto request = orvane::StartRequest::fromArguments(std::span(argv, static_cast<std::size_t>(argc)));
  orvane::SingleInstance instance(orvane::SingleInstance::defaultFolder());
  if (instance.claim(request.toLine()) == orvane::SingleInstance::Role::second) return 0;
  std::optional<orvane::Window> window;
  try {
    window.emplace(orvane::systemWindowServices());
  } catch (const std::exception& error) {
    return failVisibly(error);
  }
  QObject::connect(&instance, &orvane::SingleInstance::asked, &*window, &orvane::Window::raise);
  if (!window->show()) return 1;
  if (!request.isEmpty()) window->raise(request.toLine());
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  try {
    if (orvane::asksForPage(arguments)) return orvane::drawPage(argc, argv);
    if (has(arguments, "--demo")) enterSampleHome();
    if (const auto problem = orvane::problemWithHome()) throw std::runtime_error(*problem);
    if (orvane::asksForScheduledRun(arguments)) return orvane::runScheduledWork();
    return showWindow(argc, argv);
  } catch (const std::exception& error) {
    return fail(error);
  }
}

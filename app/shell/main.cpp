#include "app/shell/HeadlessStart.h"
#include "app/shell/SingleInstance.h"
#include "app/shell/Window.h"
#include "core/base/files/HomeFolder.h"

#include <QApplication>
#include <QIcon>
#include <QQuickStyle>
#include <QSurfaceFormat>

#include <cstdio>
#include <exception>
#include <span>
#include <stdexcept>
#include <string_view>

namespace {

constexpr int antialiasingSamples = 4;

// The section that "--show SECTION" asks for; empty without.
QByteArray wishFrom(std::span<const char* const> arguments) {
  for (std::size_t at = 0; at + 1 < arguments.size(); ++at) {
    if (std::string_view(arguments[at]) == "--show") return {arguments[at + 1]};
  }
  return {};
}

int showWindow(int argc, char** argv) {
  auto format = QSurfaceFormat::defaultFormat();
  format.setSamples(antialiasingSamples);
  QSurfaceFormat::setDefaultFormat(format);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("orvane"));
  QApplication::setApplicationDisplayName(QStringLiteral("Orvane"));
  QApplication::setApplicationVersion(QStringLiteral(ORVANE_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("orvane"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Orvane/icons/app.svg")));

  const auto wish = wishFrom(std::span(argv, static_cast<std::size_t>(argc)));
  orvane::SingleInstance instance(orvane::SingleInstance::defaultFolder());
  if (instance.claim(wish) == orvane::SingleInstance::Role::second) return 0;
  orvane::Window window(orvane::systemWindowServices());
  QObject::connect(&instance, &orvane::SingleInstance::asked, &window, &orvane::Window::raise);
  if (!window.show()) return 1;
  if (!wish.isEmpty()) window.raise(wish);
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (const auto problem = orvane::problemWithHome()) throw std::runtime_error(*problem);
    if (orvane::asksForScheduledRun(std::span(argv, static_cast<std::size_t>(argc)))) {
      return orvane::runScheduledWork();
    }
    return showWindow(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvane: %s\n", error.what());
    return 1;
  }
}

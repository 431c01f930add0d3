#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>

#include <array>
#include <string_view>

namespace orvane::navigation {
Q_NAMESPACE
QML_NAMED_ELEMENT(AppNavigationItem)

// The sections of the window, in the order of the sidebar.
enum class AppNavigationItem {
  Overview,
  Cleanup,
  Duplicates,
  Apps,
  Organize,
  Rules,
  Agent,
  History,
  Privacy,
  Settings,
};
Q_ENUM_NS(AppNavigationItem)

}  // namespace orvane::navigation

namespace orvane {

using navigation::AppNavigationItem;

struct NavigationRow {
  AppNavigationItem section;
  std::string_view rawValue;
  std::string_view titleKey;
  std::string_view symbol;  // name of an icon
  int group;                // sections of one group stand together
};

inline constexpr std::array navigationRows{
    NavigationRow{AppNavigationItem::Overview, "overview", "nav.overview", "overview", 0},
    NavigationRow{AppNavigationItem::Cleanup, "cleanup", "nav.cleanup", "cleanup", 1},
    NavigationRow{AppNavigationItem::Duplicates, "duplicates", "nav.duplicates", "duplicates", 1},
    NavigationRow{AppNavigationItem::Apps, "apps", "nav.apps", "apps", 1},
    NavigationRow{AppNavigationItem::Organize, "organize", "nav.organize", "organize", 2},
    NavigationRow{AppNavigationItem::Rules, "rules", "nav.rules", "rules", 2},
    NavigationRow{AppNavigationItem::Agent, "agent", "nav.agent", "agent", 2},
    NavigationRow{AppNavigationItem::History, "history", "nav.history", "history", 3},
    NavigationRow{AppNavigationItem::Privacy, "privacy", "nav.privacy", "privacy", 3},
    NavigationRow{AppNavigationItem::Settings, "settings", "nav.settings", "settings", 3},
};

}  // namespace orvane

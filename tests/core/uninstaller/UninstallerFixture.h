#pragma once

#include "core/uninstaller/AppUninstallerEngine.h"
#include "tests/support/SafetyFixture.h"

namespace orvane::test {

// An information list in its XML form.
inline std::string xmlList(const std::map<std::string, std::string>& texts) {
  std::string result = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>)";
  for (const auto& [key, text] : texts) result += "<key>" + key + "</key><string>" + text + "</string>";
  return result + "</dict></plist>";
}

// A home with applications in ~/Applications and a Library beside it.
class UninstallerFixture : public SafetyFixture {
 public:
  UninstallerFixture() { tree.folder("Applications"); }

  // Path of a new bundle with this information list.
  std::string appWithList(const std::string& fileName, const std::string& list) const {
    tree.file("Applications/" + fileName + "/Contents/Info.plist", list);
    return tree.path("Applications/" + fileName);
  }
  InstalledApp app(const std::string& fileName, const std::string& name, const std::string& identifier) {
    return engine.appAt(
        FileUrl(appWithList(fileName, xmlList({{"CFBundleName", name}, {"CFBundleIdentifier", identifier}}))));
  }

  std::vector<InstalledApp> list() { return engine.listInstalledApps(std::vector{tree.url("Applications")}); }
  AppUninstallBundle leftovers(const InstalledApp& app) {
    return engine.findLeftovers(app, tree.url("Library"), std::vector{tree.url("Applications")});
  }
  // Paths of the leftovers below the Library.
  std::vector<std::string> leftoverPaths(const InstalledApp& app) {
    std::vector<std::string> result;
    const auto library = tree.path("Library/");
    for (const auto& item : leftovers(app).leftovers) result.push_back(item.url().path().substr(library.size()));
    return result;
  }

  AppUninstallerEngine engine{validator, FileUrl(tree.path())};
};

}  // namespace orvane::test

#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A program that the user's service manager starts again and again, with what it prints appended to two files.
struct BackgroundJob {
  static constexpr std::string_view argument = "--scheduled-run";  // the program's only one

  std::string label;
  std::string executable;  // absolute path
  std::chrono::seconds interval{};
  std::string outputPath;
  std::string errorPath;
};

// The user's own service manager. A job waits one interval before its first start, catches up on a start that the
// machine slept through, and leaves the disk and the processor to whatever else needs them.
class BackgroundScheduler {
 public:
  virtual ~BackgroundScheduler() = default;
  // In place of the job with that label, so that another interval holds at once. Throws std::system_error when its
  // files cannot be written; that the service manager could not be told is no error, for it reads them when it starts.
  virtual void install(const BackgroundJob& job) = 0;
  // Nothing happens where nothing is installed.
  virtual void uninstall(const std::string& label) = 0;
  [[nodiscard]] virtual bool isInstalled(const std::string& label) const = 0;

  // A file that the service manager reads.
  struct Definition {
    std::string name;
    std::string text;
  };
  // Those that install() would write now for the job.
  [[nodiscard]] virtual std::vector<Definition> definitions(const BackgroundJob& /*job*/) const { return {}; }
};

}  // namespace orvane

#include "platform/posix/RunTool.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <thread>

namespace orvane {
namespace {

// Nothing to read, and nowhere to write.
class NullStreams {
 public:
  NullStreams() {
    ::posix_spawn_file_actions_init(&m_actions);
    ::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  ~NullStreams() { ::posix_spawn_file_actions_destroy(&m_actions); }
  NullStreams(const NullStreams&) = delete;
  NullStreams& operator=(const NullStreams&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &m_actions; }

 private:
  posix_spawn_file_actions_t m_actions{};
};

std::optional<pid_t> spawned(const std::vector<std::string>& words, const posix_spawn_file_actions_t* actions) {
  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  arguments.reserve(copies.size() + 1);
  for (auto& word : copies) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t process = 0;
  if (::posix_spawnp(&process, arguments.front(), actions, nullptr, arguments.data(), environ) != 0) return {};
  return process;
}

bool endsWell(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

bool runTool(const std::vector<std::string>& words) {
  const NullStreams streams;
  const auto process = spawned(words, streams.actions());
  return process && endsWell(*process);
}

bool startProgram(const std::vector<std::string>& words) {
  const auto process = spawned(words, nullptr);
  if (!process) return false;
  // It may live as long as it likes; somebody has to take note of its end.
  std::thread([process] { endsWell(*process); }).detach();
  return true;
}

}  // namespace orvane

#include "tests/support/ChildProcess.h"

#include "tests/support/TemporaryTree.h"

#include <cstdio>
#include <cstdlib>

namespace orvane::test {

ChildResult runProgram(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment,
                       const std::string& input) {
  // Files, not pipes: nothing blocks, however much is written.
  const TemporaryTree tree;
  const auto inputPath = tree.file("input", input);
  const auto outputPath = tree.path("output");
  const auto errorsPath = tree.path("errors");
  const pid_t child = ::fork();
  if (child < 0) throwErrno();
  if (child == 0) {
    for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
    ::dup2(::open(inputPath.c_str(), O_RDONLY), STDIN_FILENO);
    ::dup2(::open(outputPath.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
    ::dup2(::open(errorsPath.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
    std::vector<char*> words;
    for (const auto& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    ::execvp(words[0], words.data());
    ::_exit(127);
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throwErrno();
  }
  ChildResult result;
  result.exitStatus = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  result.output = contentOf(outputPath);
  result.errors = contentOf(errorsPath);
  return result;
}

bool inProcesses(int count, const std::function<bool(int)>& body) {
  std::vector<pid_t> children;
  for (int number = 0; number < count; ++number) {
    const pid_t child = ::fork();
    if (child < 0) throwErrno();
    if (child == 0) {
      try {
        ::_exit(body(number) ? 0 : 1);
      } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        ::_exit(1);
      }
    }
    children.push_back(child);
  }
  bool answer = true;
  for (const pid_t child : children) {
    int status = 0;
    answer = ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0 && answer;
  }
  return answer;
}

bool withoutPrivileges(const std::function<bool()>& body) {
  constexpr unsigned nobody = 65534;
  return inProcesses(
      1, [&](int) { return (::geteuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0)) && body(); });
}

}  // namespace orvane::test

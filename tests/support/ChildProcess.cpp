#include "tests/support/ChildProcess.h"

#include "core/base/files/FileDescriptor.h"
#include "tests/support/TemporaryTree.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

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

}  // namespace orvane::test

// Starts the program again and again without loading it each time: most of a start is the dynamic linker's. With
// FAULTS_SERVER set, to the number of the user that the processes belong to, the program waits before main() and forks
// for each request on its standard input, a socket that keeps messages apart. The processes inherit its output.
//
//   request   folder to work in, number of arguments, the arguments, the environment; a zero byte after each
//   answers   the process's number; its status each time it stops, and when it has ended

#include "tests/faults/Interposer.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using Main = int (*)(int, char**, char**);

constexpr int requests = STDIN_FILENO;
Main programMain = nullptr;
std::array<char, 1 << 20> request;

void answer(int number) {
  if (::send(requests, &number, sizeof number, MSG_NOSIGNAL) < 0) ::_exit(0);
}

void becomeUser(const char* folder, const char* user) {
  const auto id = static_cast<uid_t>(std::strtoul(user, nullptr, 10));
  const bool done = ::chdir(folder) == 0 && ::setgroups(0, nullptr) == 0 && ::setresgid(id, id, id) == 0 &&
                    ::setresuid(id, id, id) == 0;
  // An executed program owns its entries in /proc; one that changed its user does not.
  if (!done || ::prctl(PR_SET_DUMPABLE, 1) != 0) ::_exit(127);
  const int nothing = ::open("/dev/null", O_RDONLY);
  ::dup2(nothing, requests);
  ::close(nothing);
}

int runRequested(std::size_t size) {
  std::vector<char*> words;
  for (std::size_t at = 0; at < size; at += std::strlen(words.back()) + 1) words.push_back(&request[at]);
  becomeUser(words[0], std::getenv("FAULTS_SERVER"));
  const auto count = std::strtol(words[1], nullptr, 10);
  std::vector<char*> arguments(words.begin() + 2, words.begin() + 2 + count);
  std::vector<char*> variables(words.begin() + 2 + count, words.end());
  arguments.push_back(nullptr);
  variables.push_back(nullptr);
  environ = variables.data();
  readSettings();
  return programMain(static_cast<int>(count), arguments.data(), environ);
}

int serve(int, char**, char**) {
  for (;;) {
    const auto size = ::recv(requests, request.data(), request.size(), 0);
    if (size <= 0) ::_exit(0);
    const pid_t process = ::fork();
    if (process == 0) return runRequested(static_cast<std::size_t>(size));
    answer(process);
    int status = 0;
    do {
      ::waitpid(process, &status, WUNTRACED);
      answer(status);
    } while (WIFSTOPPED(status));
  }
}

}  // namespace

INTERPOSE(int, __libc_start_main, Main main, int count, char** arguments, void (*begin)(), void (*end)(),
          void (*unload)(), void* stack) {
  const auto next = reinterpret_cast<int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*)>(
      ::dlsym(RTLD_NEXT, "__libc_start_main"));
  programMain = main;
  const bool serves = std::getenv("FAULTS_SERVER") != nullptr;
  return next(serves ? &serve : main, count, arguments, begin, end, unload, stack);
}

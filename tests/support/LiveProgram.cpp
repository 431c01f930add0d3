#include "tests/support/LiveProgram.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>

namespace orvane::test {
namespace {

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throwErrno();
    readEnd.reset(ends[0]);
    writeEnd.reset(ends[1]);
  }
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace

void LiveProgram::becomeProgram(const Setup& setup) {
  constexpr uid_t nobody = 65534;
  std::vector<std::string> environment;
  for (const auto& [name, value] : setup.environment) environment.push_back(fmt::format("{}={}", name, value));
  auto arguments = setup.arguments;
  for (const int descriptor : setup.closedDescriptors) ::close(descriptor);
  // A test runner may ignore or block what the program is to be sent.
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) std::signal(signal, SIG_DFL);
  if (::chdir(setup.workingFolder.c_str()) == 0 &&
      (setup.user == User::own || ::setresuid(nobody, nobody, nobody) == 0)) {
    ::execve(arguments.front().c_str(), pointersTo(arguments).data(), pointersTo(environment).data());
  }
  ::_exit(127);
}

LiveProgram::LiveProgram(const Setup& setup) {
  if (setup.terminal == Terminal::all) {
    int terminal = -1;
    const winsize size{24, 100, 0, 0};
    m_id = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (m_id == 0) becomeProgram(setup);
    if (m_id < 0) throwErrno();
    m_output.reset(terminal);
    m_input.reset(::fcntl(terminal, F_DUPFD_CLOEXEC, 0));
    return;
  }
  Pipe input;
  Pipe output;
  Pipe errors;
  m_id = ::fork();
  if (m_id < 0) throwErrno();
  if (m_id == 0) {
    ::dup2(input.readEnd.get(), STDIN_FILENO);
    ::dup2(output.writeEnd.get(), STDOUT_FILENO);
    ::dup2(errors.writeEnd.get(), STDERR_FILENO);
    becomeProgram(setup);
  }
  m_input = std::move(input.writeEnd);
  m_output = std::move(output.readEnd);
  m_errors = std::move(errors.readEnd);
}

LiveProgram::~LiveProgram() {
  if (m_id < 0) return;
  ::kill(m_id, SIGKILL);
  ::waitpid(m_id, nullptr, 0);
}

void LiveProgram::send(std::string_view text) {
  writeAll(m_input.get(), text);
}

void LiveProgram::closeInput() {
  m_input.reset();
}

bool LiveProgram::readMore() {
  std::array<pollfd, 2> waited{{{m_output.get(), POLLIN, 0}, {m_errors.get(), POLLIN, 0}}};
  if (!m_output && !m_errors) return false;
  while (::poll(waited.data(), waited.size(), -1) < 0) {
    if (errno != EINTR) throwErrno();
  }
  std::array<char, 65536> block{};
  for (auto* stream : {&m_output, &m_errors}) {
    if (waited[stream == &m_output ? 0 : 1].revents == 0) continue;
    const auto count = ::read(stream->get(), block.data(), block.size());
    if (count > 0) {
      (stream == &m_output ? m_result.output : m_result.errors).append(block.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      // The end of a pseudo-terminal is an error.
      stream->reset();
    }
  }
  return true;
}

void LiveProgram::waitForOutput(std::string_view text) {
  while (m_result.output.find(text) == std::string::npos && m_result.errors.find(text) == std::string::npos) {
    if (!readMore()) {
      throw std::runtime_error(
          fmt::format("it ended without saying '{}': {}{}", text, m_result.output, m_result.errors));
    }
  }
}

void LiveProgram::signal(int number) {
  ::kill(m_id, number);
}

void LiveProgram::waitForSignalsTaken() {
  constexpr std::string_view none = "ShdPnd:\t0000000000000000";
  while (readFile(fmt::format("/proc/{}/status", m_id)).find(none) == std::string::npos) ::sched_yield();
}

ChildResult LiveProgram::finish() {
  closeInput();
  while (readMore()) {
  }
  int status = 0;
  while (::waitpid(m_id, &status, 0) < 0) {
    if (errno != EINTR) throwErrno();
  }
  m_id = -1;
  m_result.exitStatus = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  return std::move(m_result);
}

}  // namespace orvane::test

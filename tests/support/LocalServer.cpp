#include "tests/support/LocalServer.h"

#include "core/base/text/Json.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace orvane::test {
namespace {

std::size_t lengthIn(const std::string& headers) {
  const auto at = headers.find("Content-Length: ");
  return at == std::string::npos ? 0 : std::stoul(headers.substr(at + 16));
}

LocalServer::Request readRequest(int connection) {
  std::string bytes;
  std::array<char, 4096> buffer{};
  std::size_t end = std::string::npos;
  while (true) {
    end = bytes.find("\r\n\r\n");
    if (end != std::string::npos && bytes.size() >= end + 4 + lengthIn(bytes.substr(0, end))) break;
    const auto count = ::read(connection, buffer.data(), buffer.size());
    if (count <= 0) throw std::runtime_error("the request ended early");
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
  }
  const auto lineEnd = bytes.find("\r\n");
  return {bytes.substr(0, lineEnd), bytes.substr(lineEnd, end - lineEnd), bytes.substr(end + 4)};
}

}  // namespace

LocalServer::LocalServer(Handler handler)
    : m_handler(std::move(handler)), m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(m_listener.get(), generic, length) != 0 || ::listen(m_listener.get(), 16) != 0 ||
      ::getsockname(m_listener.get(), generic, &length) != 0) {
    throw std::runtime_error("no server on this machine");
  }
  m_port = ntohs(address.sin_port);
  m_thread = std::thread([this] { serve(); });
}

LocalServer::~LocalServer() {
  ::shutdown(m_listener.get(), SHUT_RDWR);
  m_thread.join();
}

std::string LocalServer::url(std::string_view path) const {
  return fmt::format("http://127.0.0.1:{}{}", m_port, path);
}

std::vector<LocalServer::Request> LocalServer::requests() const {
  const std::lock_guard lock(m_mutex);
  return m_requests;
}

void LocalServer::waitForRequests(std::size_t count) const {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [&] { return m_requests.size() >= count; });
}

LocalServer::Answer LocalServer::answer(int status, const std::string& body, const std::string& headers) {
  return {fmt::format("HTTP/1.1 {} Status\r\nContent-Length: {}\r\nConnection: close\r\n{}\r\n{}", status, body.size(),
                      headers, body)};
}

LocalServer::Answer LocalServer::chat(const std::string& content) {
  Json reply;
  reply["choices"] = Json::array({Json{{"message", {{"role", "assistant"}, {"content", content}}}}});
  return answer(200, reply.dump());
}

void LocalServer::serve() {
  while (true) {
    FileDescriptor connection(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!connection) return;
    try {
      serveOne(std::move(connection));
    } catch (const std::runtime_error&) {
      // The client went away.
    }
  }
}

void LocalServer::serveOne(FileDescriptor connection) {
  auto request = readRequest(connection.get());
  const auto answer = m_handler(request);
  {
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(std::move(request));
  }
  m_changed.notify_all();
  std::string_view bytes = answer.bytes;
  while (!bytes.empty()) {
    const auto count = ::send(connection.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  if (answer.keepsOpen) m_kept.push_back(std::move(connection));
}

}  // namespace orvane::test

#pragma once

#include "core/base/files/FileDescriptor.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace orvane::test {

// A server on this machine that answers each request as the test says.
class LocalServer {
 public:
  struct Request {
    std::string line;  // "POST /v1/chat/completions HTTP/1.1"
    std::string headers;
    std::string body;
  };
  // The bytes to answer with; the connection then ends, but where `keepsOpen` is set it stays, without a word more.
  struct Answer {
    std::string bytes;
    bool keepsOpen = false;
  };
  using Handler = std::function<Answer(const Request&)>;

  explicit LocalServer(Handler handler);
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  [[nodiscard]] std::string url(std::string_view path = {}) const;
  [[nodiscard]] std::vector<Request> requests() const;
  // Returns once so many requests have come.
  void waitForRequests(std::size_t count) const;

  [[nodiscard]] static Answer answer(int status, const std::string& body, const std::string& headers = {});
  // A chat-completions reply with this content.
  [[nodiscard]] static Answer chat(const std::string& content);

 private:
  void serve();
  void serveOne(FileDescriptor connection);

  Handler m_handler;
  FileDescriptor m_listener;
  int m_port = 0;
  mutable std::mutex m_mutex;
  mutable std::condition_variable m_changed;
  std::vector<Request> m_requests;
  std::vector<FileDescriptor> m_kept;
  std::thread m_thread;
};

}  // namespace orvane::test

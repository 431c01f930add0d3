// The least work that a scan of a tree can be: scan_floor FOLDER reads every folder with getdents64(2) and asks for one
// status an entry, on every processor, and keeps nothing.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

class Floor {
 public:
  explicit Floor(std::string top) { m_folders.push_back(std::move(top)); }

  void work() {
    std::vector<std::string> found;
    std::unique_lock lock(m_mutex);
    while (true) {
      m_changed.wait(lock, [&] { return !m_folders.empty() || m_reading == 0; });
      if (m_folders.empty()) return;
      const auto folder = std::move(m_folders.back());
      m_folders.pop_back();
      ++m_reading;
      lock.unlock();
      read(folder, found);
      lock.lock();
      --m_reading;
      for (auto& path : found) m_folders.push_back(std::move(path));
      if (found.size() > 1 || m_reading == 0) m_changed.notify_all();
      found.clear();
    }
  }

  void report() const { std::printf("%lld entries, %lld bytes\n", m_entries.load(), m_bytes.load()); }

 private:
  // The record that getdents64(2) writes; glibc gives it no name of its own.
  using Record = dirent64;

  void read(const std::string& folder, std::vector<std::string>& found) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (descriptor < 0) return;
    alignas(Record) std::array<char, 32 * 1024> block;
    long long entries = 0;
    long long bytes = 0;
    while (true) {
      const auto count = ::syscall(SYS_getdents64, descriptor, block.data(), block.size());
      if (count <= 0) break;
      for (long start = 0; start < count;) {
        const auto* record = reinterpret_cast<const Record*>(block.data() + start);
        start += record->d_reclen;
        const std::string_view name = record->d_name;
        if (name == "." || name == "..") continue;
        ++entries;
        struct stat status {};
        if (::fstatat(descriptor, record->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) bytes += status.st_size;
        if (S_ISDIR(status.st_mode)) found.push_back(folder + '/' + record->d_name);
      }
    }
    ::close(descriptor);
    m_entries += entries;
    m_bytes += bytes;
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::vector<std::string> m_folders;
  int m_reading = 0;
  std::atomic<long long> m_entries = 0;
  std::atomic<long long> m_bytes = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Floor floor(argv[1]);
  {
    std::vector<std::jthread> threads;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) threads.emplace_back([&] { floor.work(); });
    floor.work();
  }
  floor.report();
  return 0;
}

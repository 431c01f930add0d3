#pragma once

#include "core/scanning/walk/ScanListing.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace orvane {

// Where the threads that list folders leave what they found, and where one reader takes it in the order of one walk:
// all entries of a folder, then its subfolders one after the other, each with everything below it.
class ListingBoard {
 public:
  using Folders = std::vector<std::unique_ptr<ScanListing>>;

  ListingBoard() = default;
  ~ListingBoard();
  ListingBoard(const ListingBoard&) = delete;
  ListingBoard& operator=(const ListingBoard&) = delete;

  // Adds the folder at which a walk starts, behind those added before. Before any thread works.
  ScanListing& addStart();

  // For the threads: more of a folder's entries, with the subfolders among them, or the last of them. The folder may
  // be gone once its last entries are published; the tasks for its subfolders may begin only then.
  enum class Part : std::uint8_t { more, last };
  void publish(ScanListing& folder, Part part, ListingChunk chunk, Folders subfolders);
  // The size of a whole folder is there.
  void sizeCompleted();

  // For the reader: waits until something is likely to be ready and takes what is, which may be nothing. wake() ends
  // the wait.
  void take(std::deque<ListingChunk>& chunks);
  void wake() noexcept;
  // Everything has been taken.
  [[nodiscard]] bool isFinished() const;

 private:
  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  Folders m_waiting;           // the next folder of the walk at the end
  std::size_t m_openWork = 0;  // folders not listed and sizes not known yet
  std::size_t m_newEvents = 0;
  bool m_isReaderWaiting = false;
  bool m_isWakened = false;
};

}  // namespace orvane

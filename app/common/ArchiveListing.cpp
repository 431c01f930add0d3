#include "app/common/ArchiveListing.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/values/LoadedLibrary.h"

#include <archive.h>
#include <archive_entry.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace orvane {
namespace {

// A few bytes can stand for a thousand times as many.
constexpr std::chrono::seconds maxTime{2};
constexpr std::size_t pieceSize = 65536;

// Only what the library unpacks itself: for some others it would start a program.
constexpr std::array knownForms{
    "archive_read_support_filter_gzip", "archive_read_support_filter_bzip2", "archive_read_support_filter_xz",
    "archive_read_support_filter_zstd", "archive_read_support_format_tar",   "archive_read_support_format_zip",
    "archive_read_support_format_7zip", "archive_read_support_format_rar",   "archive_read_support_format_rar5",
    "archive_read_support_format_ar",   "archive_read_support_format_cpio",  "archive_read_support_format_iso9660",
};

// libarchive with what it needs to unpack: loaded for the first archive that is looked at.
struct ArchiveLibrary {
  decltype(&::archive_read_new) newReader;
  decltype(&::archive_read_free) freeReader;
  decltype(&::archive_read_set_callback_data) setSource;
  decltype(&::archive_read_set_read_callback) setRead;
  decltype(&::archive_read_set_seek_callback) setSeek;
  decltype(&::archive_read_set_skip_callback) setSkip;
  decltype(&::archive_read_open1) open;
  decltype(&::archive_read_next_header) nextHeader;
  decltype(&::archive_entry_pathname) name;
  decltype(&::archive_entry_pathname_utf8) utf8Name;
  std::array<int (*)(archive*), knownForms.size()> forms;
};

ArchiveLibrary loadedArchiveLibrary() {
  const LoadedLibrary library("libarchive.so.13");
  ArchiveLibrary archive{};
  library.find("archive_read_new", archive.newReader);
  library.find("archive_read_free", archive.freeReader);
  library.find("archive_read_set_callback_data", archive.setSource);
  library.find("archive_read_set_read_callback", archive.setRead);
  library.find("archive_read_set_seek_callback", archive.setSeek);
  library.find("archive_read_set_skip_callback", archive.setSkip);
  library.find("archive_read_open1", archive.open);
  library.find("archive_read_next_header", archive.nextHeader);
  library.find("archive_entry_pathname", archive.name);
  library.find("archive_entry_pathname_utf8", archive.utf8Name);
  for (std::size_t at = 0; at < knownForms.size(); ++at) library.find(knownForms[at], archive.forms[at]);
  return archive;
}

const ArchiveLibrary& archiveLibrary() {
  static const ArchiveLibrary library = loadedArchiveLibrary();
  return library;
}

struct ArchiveDeleter {
  void operator()(archive* reader) const { archiveLibrary().freeReader(reader); }
};

// The file as the library reads it; it ends where the time is over.
struct Source {
  int file;
  const std::stop_token& stop;
  std::chrono::steady_clock::time_point end = std::chrono::steady_clock::now() + maxTime;
  std::array<char, pieceSize> piece = {};

  [[nodiscard]] bool isOver() const { return stop.stop_requested() || std::chrono::steady_clock::now() > end; }
};

la_ssize_t readPiece(archive* /*reader*/, void* given, const void** bytes) {
  auto& source = *static_cast<Source*>(given);
  *bytes = source.piece.data();
  if (source.isOver()) return -1;
  try {
    return static_cast<la_ssize_t>(readSome(source.file, source.piece));
  } catch (const std::system_error&) {
    return -1;
  }
}

la_int64_t seekTo(archive* /*reader*/, void* given, la_int64_t offset, int whence) {
  return lseek(static_cast<Source*>(given)->file, offset, whence);
}

la_int64_t skipBytes(archive* /*reader*/, void* given, la_int64_t count) {
  return lseek(static_cast<Source*>(given)->file, count, SEEK_CUR) < 0 ? 0 : count;
}

bool supportKnownForms(archive* reader) {
  for (const auto support : archiveLibrary().forms) {
    if (support(reader) != ARCHIVE_OK) return false;
  }
  return true;
}

std::string nameOf(archive_entry* entry) {
  if (const char* name = archiveLibrary().name(entry)) return name;
  if (const char* name = archiveLibrary().utf8Name(entry)) return name;
  return "?";
}

}  // namespace

std::optional<ArchiveListing> listArchive(int file, std::size_t maxNames, const std::stop_token& stop) {
  try {
    archiveLibrary();
  } catch (const std::runtime_error&) {
    return {};
  }
  const std::unique_ptr<archive, ArchiveDeleter> reader(archiveLibrary().newReader());
  if (!reader || !supportKnownForms(reader.get())) return {};
  const auto source = std::make_unique<Source>(Source{file, stop});
  archiveLibrary().setSource(reader.get(), source.get());
  archiveLibrary().setRead(reader.get(), readPiece);
  archiveLibrary().setSeek(reader.get(), seekTo);
  archiveLibrary().setSkip(reader.get(), skipBytes);
  if (archiveLibrary().open(reader.get()) != ARCHIVE_OK) return {};
  ArchiveListing listing;
  while (true) {
    archive_entry* entry = nullptr;
    const int result = archiveLibrary().nextHeader(reader.get(), &entry);
    if (result == ARCHIVE_EOF) break;
    listing.isCut = (result != ARCHIVE_OK && result != ARCHIVE_WARN) || listing.names.size() == maxNames;
    if (listing.isCut) break;
    listing.names.push_back(nameOf(entry));
  }
  return listing.names.empty() ? std::nullopt : std::optional(std::move(listing));
}

}  // namespace orvane

// Preloaded into a program. Numbers its calls on files below one folder, from all threads, and makes the chosen call
// fail, or ends the program there. Set by environment variables:
//
//   FAULTS_ROOT   the folder, absolute; without it every call goes through
//   FAULTS_LOG    file that gets a line "NUMBER CALL PATH" for each numbered call
//   FAULTS_SIDE   "changes" (default): calls that change files, or make changes durable; "reads": the others
//   FAULTS_AT     number of the chosen call, from 1
//   FAULTS_DO     kill, kill-after: the process dies before or after the call
//                 stop: the process stops before the call, for a power cut by whoever started it
//                 tear: half of the bytes are written, then the process dies; another call is not made
//                 short: half of the bytes are written
//                 fail, fail-on: the call fails with FAULTS_ERRNO; fail-on: and so do all later ones of its kind
//   FAULTS_LACKS  file systems that know no: tmpfile (O_TMPFILE), noreplace (RENAME_NOREPLACE), openat2; separated by
//   ","
//
// StartServer.cpp starts a program without loading it each time.

#include "tests/faults/Interposer.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

template <typename... Arguments>
long raw(long number, Arguments... arguments) {
  static const auto next = reinterpret_cast<long (*)(long, ...)>(::dlsym(RTLD_NEXT, "syscall"));
  return next(number, arguments...);
}

std::string_view setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

long numberIn(const char* name) {
  return std::strtol(std::string(setting(name)).c_str(), nullptr, 10);
}

struct Settings {
  std::string root{setting("FAULTS_ROOT")};
  std::string action{setting("FAULTS_DO")};
  std::string lacks{setting("FAULTS_LACKS")};
  bool reads = setting("FAULTS_SIDE") == "reads";
  long at = numberIn("FAULTS_AT");
  int error = static_cast<int>(numberIn("FAULTS_ERRNO"));
  int log = -1;

  Settings() {
    const std::string path(setting("FAULTS_LOG"));
    if (path.empty()) return;
    const long file = raw(SYS_openat, AT_FDCWD, path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    // Out of the way of the program's own descriptors.
    log = static_cast<int>(raw(SYS_fcntl, file, F_DUPFD_CLOEXEC, 200));
    raw(SYS_close, file);
  }
  [[nodiscard]] bool lack(std::string_view feature) const { return lacks.find(feature) != std::string::npos; }
};

Settings& settings() {
  static Settings result;
  return result;
}

// A file as a call names it: by a descriptor, or by a path from a folder's descriptor.
struct Place {
  int folder = AT_FDCWD;
  const char* path = nullptr;

  [[nodiscard]] std::string absolute() const {
    if (path != nullptr && path[0] == '/') return path;
    char base[PATH_MAX];
    const auto link = folder == AT_FDCWD ? std::string("/proc/self/cwd") : "/proc/self/fd/" + std::to_string(folder);
    const long length = raw(SYS_readlinkat, AT_FDCWD, link.c_str(), base, sizeof base);
    std::string result(base, length < 0 ? 0 : static_cast<std::size_t>(length));
    if (path != nullptr && path[0] != '\0') result.append("/").append(path);
    return result;
  }
};

enum class Verdict { goOn, fail, half, halfAndDie, dieAfter };

std::atomic<long> callCount{0};
std::atomic<const char*> failingKind{nullptr};

void endProcess() {
  raw(SYS_kill, raw(SYS_getpid), SIGKILL);
}

void note(long number, const char* name, const std::string& place) {
  if (settings().log < 0) return;
  std::string line = std::to_string(number) + " " + name + " " + place;
  for (char& c : line) {
    if (c == '\n') c = '?';
  }
  line += '\n';
  raw(SYS_write, settings().log, line.data(), line.size());
}

Verdict arrive(bool isRead, const char* name, const Place& first, const Place& second) {
  const auto& chosen = settings();
  if (chosen.root.empty() || isRead != chosen.reads) return Verdict::goOn;
  const int savedError = errno;
  std::string place = first.absolute();
  if (!place.starts_with(chosen.root)) place = second.absolute();
  errno = savedError;
  if (!place.starts_with(chosen.root)) return Verdict::goOn;
  const long number = ++callCount;
  note(number, name, place);
  if (const char* kind = failingKind; kind != nullptr && std::strcmp(kind, name) == 0) return Verdict::fail;
  if (number != chosen.at) return Verdict::goOn;
  if (chosen.action == "kill") endProcess();
  if (chosen.action == "stop") raw(SYS_kill, raw(SYS_getpid), SIGSTOP);
  if (chosen.action == "fail-on") failingKind = name;
  if (chosen.action.starts_with("fail")) return Verdict::fail;
  if (chosen.action == "kill-after") return Verdict::dieAfter;
  if (chosen.action == "tear") return Verdict::halfAndDie;
  return chosen.action == "short" ? Verdict::half : Verdict::goOn;
}

template <typename Result>
Result settle(Verdict verdict, Result result) {
  if (verdict == Verdict::dieAfter) endProcess();
  return result;
}

// Makes the call unless the verdict is another one.
template <typename Do>
long guarded(bool isRead, const char* name, const Place& first, const Place& second, Do call) {
  const Verdict verdict = arrive(isRead, name, first, second);
  if (verdict == Verdict::fail) {
    errno = settings().error;
    return -1;
  }
  if (verdict == Verdict::halfAndDie) endProcess();
  return settle(verdict, call());
}
template <typename Do>
int change(const char* name, const Place& place, Do call) {
  return static_cast<int>(guarded(false, name, place, place, call));
}
template <typename Do>
long look(const char* name, const Place& place, Do call) {
  return guarded(true, name, place, place, call);
}

// Of a call that transfers `size` bytes; `call` is told how many.
template <typename Do>
ssize_t transfer(bool isRead, const char* name, int file, std::size_t size, Do call) {
  const Place place{file};
  const Verdict verdict = file <= 2 ? Verdict::goOn : arrive(isRead, name, place, place);
  if (verdict == Verdict::fail) {
    errno = settings().error;
    return -1;
  }
  const bool half = verdict == Verdict::half || verdict == Verdict::halfAndDie;
  const auto result = call(half ? (size + 1) / 2 : size);
  if (verdict == Verdict::halfAndDie) endProcess();
  return settle(verdict, result);
}

bool opensForChange(int flags) {
  return (flags & (O_CREAT | O_TRUNC)) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

int openAt(int folder, const char* path, int flags, mode_t mode) {
  const bool unnamed = (flags & O_TMPFILE) == O_TMPFILE;
  if (unnamed && settings().lack("tmpfile")) {
    errno = EOPNOTSUPP;
    return -1;
  }
  const Place place{folder, path};
  return static_cast<int>(guarded(!opensForChange(flags), unnamed ? "tmpfile" : "open", place, place,
                                  [&] { return raw(SYS_openat, folder, path, flags, mode); }));
}

int renameAt(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  if (flags != 0 && settings().lack("noreplace")) {
    errno = EINVAL;
    return -1;
  }
  return static_cast<int>(guarded(false, "rename", {fromFolder, from}, {toFolder, to},
                                  [&] { return raw(SYS_renameat2, fromFolder, from, toFolder, to, flags); }));
}

int linkAt(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
  return static_cast<int>(guarded(false, "link", {toFolder, to}, {fromFolder, from},
                                  [&] { return raw(SYS_linkat, fromFolder, from, toFolder, to, flags); }));
}

int unlinkAt(int folder, const char* path, int flags) {
  return change((flags & AT_REMOVEDIR) != 0 ? "rmdir" : "unlink", {folder, path},
                [&] { return raw(SYS_unlinkat, folder, path, flags); });
}

int statusAt(const char* name, int folder, const char* path, void* status, int flags) {
  return static_cast<int>(look(name, {folder, path}, [&] { return raw(SYS_newfstatat, folder, path, status, flags); }));
}

}  // namespace

void readSettings() {
  settings() = Settings();
}

// open and its kin
#define OPENS(open, openat, creat)                                               \
  INTERPOSE(int, open, const char* path, int flags, mode_t mode) {               \
    return openAt(AT_FDCWD, path, flags, mode);                                  \
  }                                                                              \
  INTERPOSE(int, openat, int folder, const char* path, int flags, mode_t mode) { \
    return openAt(folder, path, flags, mode);                                    \
  }                                                                              \
  INTERPOSE(int, creat, const char* path, mode_t mode) {                         \
    return openAt(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, mode);           \
  }
OPENS(open, openat, creat)
OPENS(open64, openat64, creat64)

INTERPOSE(long, syscall, long number, long a, long b, long c, long d, long e, long f) {
  if (number != SYS_openat2) return raw(number, a, b, c, d, e, f);
  if (settings().lack("openat2")) {
    errno = ENOSYS;
    return -1;
  }
  return look("openat2", {static_cast<int>(a), reinterpret_cast<const char*>(b)},
              [&] { return raw(number, a, b, c, d, e, f); });
}

// Changes of what a descriptor or a path from a folder names: the call, its kind, its parameters, and those that the
// kernel takes.
#define PARAMETERS(...) __VA_ARGS__
#define FILE_CHANGE(call, kind, parameters, ...)                               \
  INTERPOSE(int, call, PARAMETERS parameters) {                                \
    return change(kind, {file}, [&] { return raw(SYS_##call, __VA_ARGS__); }); \
  }
#define PATH_CHANGE(call, kind, parameters, ...)                                       \
  INTERPOSE(int, call, PARAMETERS parameters) {                                        \
    return change(kind, {folder, path}, [&] { return raw(SYS_##call, __VA_ARGS__); }); \
  }

// names
INTERPOSE(int, rename, const char* from, const char* to) {
  return renameAt(AT_FDCWD, from, AT_FDCWD, to, 0);
}
INTERPOSE(int, renameat, int fromFolder, const char* from, int toFolder, const char* to) {
  return renameAt(fromFolder, from, toFolder, to, 0);
}
INTERPOSE(int, renameat2, int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  return renameAt(fromFolder, from, toFolder, to, flags);
}
INTERPOSE(int, link, const char* from, const char* to) {
  return linkAt(AT_FDCWD, from, AT_FDCWD, to, 0);
}
INTERPOSE(int, linkat, int fromFolder, const char* from, int toFolder, const char* to, int flags) {
  return linkAt(fromFolder, from, toFolder, to, flags);
}
INTERPOSE(int, unlink, const char* path) {
  return unlinkAt(AT_FDCWD, path, 0);
}
INTERPOSE(int, unlinkat, int folder, const char* path, int flags) {
  return unlinkAt(folder, path, flags);
}
INTERPOSE(int, rmdir, const char* path) {
  return unlinkAt(AT_FDCWD, path, AT_REMOVEDIR);
}
INTERPOSE(int, remove, const char* path) {
  const int result = unlinkAt(AT_FDCWD, path, 0);
  return result != 0 && errno == EISDIR ? unlinkAt(AT_FDCWD, path, AT_REMOVEDIR) : result;
}
PATH_CHANGE(mkdirat, "mkdir", (int folder, const char* path, mode_t mode), folder, path, mode)
INTERPOSE(int, mkdir, const char* path, mode_t mode) {
  return interposed_mkdirat(AT_FDCWD, path, mode);
}
PATH_CHANGE(symlinkat, "symlink", (const char* target, int folder, const char* path), target, folder, path)
INTERPOSE(int, symlink, const char* target, const char* path) {
  return interposed_symlinkat(target, AT_FDCWD, path);
}
PATH_CHANGE(mknodat, "mknod", (int folder, const char* path, mode_t mode, dev_t device), folder, path, mode, device)

// content
INTERPOSE(ssize_t, write, int file, const void* bytes, std::size_t size) {
  return transfer(false, "write", file, size, [&](std::size_t part) { return raw(SYS_write, file, bytes, part); });
}
#define PWRITES(pwrite)                                                                                \
  INTERPOSE(ssize_t, pwrite, int file, const void* bytes, std::size_t size, off_t position) {          \
    return transfer(false, "write", file, size,                                                        \
                    [&](std::size_t part) { return raw(SYS_pwrite64, file, bytes, part, position); }); \
  }
PWRITES(pwrite)
PWRITES(pwrite64)
INTERPOSE(ssize_t, writev, int file, const void* pieces, int count) {
  return transfer(false, "write", file, static_cast<std::size_t>(count),
                  [&](std::size_t part) { return raw(SYS_writev, file, pieces, part); });
}
INTERPOSE(ssize_t, copy_file_range, int from, void* fromAt, int to, void* toAt, std::size_t size, unsigned flags) {
  return transfer(false, "copy_file_range", to, size,
                  [&](std::size_t part) { return raw(SYS_copy_file_range, from, fromAt, to, toAt, part, flags); });
}
#define SENDFILES(sendfile)                                                                         \
  INTERPOSE(ssize_t, sendfile, int to, int from, void* position, std::size_t size) {                \
    return transfer(false, "sendfile", to, size,                                                    \
                    [&](std::size_t part) { return raw(SYS_sendfile, to, from, position, part); }); \
  }
SENDFILES(sendfile)
SENDFILES(sendfile64)
#define TRUNCATES(ftruncate)                                                            \
  INTERPOSE(int, ftruncate, int file, off_t size) {                                     \
    return change("ftruncate", {file}, [&] { return raw(SYS_ftruncate, file, size); }); \
  }
TRUNCATES(ftruncate)
TRUNCATES(ftruncate64)

// durability
FILE_CHANGE(fsync, "fsync", (int file), file)
FILE_CHANGE(fdatasync, "fdatasync", (int file), file)
FILE_CHANGE(syncfs, "syncfs", (int file), file)

// attributes
FILE_CHANGE(fchmod, "chmod", (int file, mode_t mode), file, mode)
PATH_CHANGE(fchmodat, "chmod", (int folder, const char* path, mode_t mode, int), folder, path, mode)
FILE_CHANGE(fchown, "chown", (int file, uid_t user, gid_t group), file, user, group)
PATH_CHANGE(fchownat, "chown", (int folder, const char* path, uid_t user, gid_t group, int flags), folder, path, user,
            group, flags)
PATH_CHANGE(utimensat, "utimens", (int folder, const char* path, const void* times, int flags), folder, path, times,
            flags)
FILE_CHANGE(fsetxattr, "setxattr", (int file, const char* name, const void* value, std::size_t size, int flags), file,
            name, value, size, flags)
FILE_CHANGE(fremovexattr, "removexattr", (int file, const char* name), file, name)
INTERPOSE(int, chmod, const char* path, mode_t mode) {
  return interposed_fchmodat(AT_FDCWD, path, mode, 0);
}
INTERPOSE(int, futimens, int file, const void* times) {
  return interposed_utimensat(file, nullptr, times, 0);
}
#define PATH_SETXATTRS(setxattr)                                                                                      \
  INTERPOSE(int, setxattr, const char* path, const char* name, const void* value, std::size_t size, int flags) {      \
    return change("setxattr", {AT_FDCWD, path}, [&] { return raw(SYS_##setxattr, path, name, value, size, flags); }); \
  }
PATH_SETXATTRS(setxattr)
PATH_SETXATTRS(lsetxattr)
INTERPOSE(int, ioctl, int file, unsigned long request, void* argument) {
  const auto call = [&] { return raw(SYS_ioctl, file, request, argument); };
  const bool changes = request == FICLONE || request == FICLONERANGE || request == FS_IOC_SETFLAGS;
  return changes ? change("ioctl", {file}, call) : static_cast<int>(call());
}

// reads
INTERPOSE(ssize_t, read, int file, void* bytes, std::size_t size) {
  return transfer(true, "read", file, size, [&](std::size_t part) { return raw(SYS_read, file, bytes, part); });
}
#define PREADS(pread)                                                                                 \
  INTERPOSE(ssize_t, pread, int file, void* bytes, std::size_t size, off_t position) {                \
    return transfer(true, "read", file, size,                                                         \
                    [&](std::size_t part) { return raw(SYS_pread64, file, bytes, part, position); }); \
  }
PREADS(pread)
PREADS(pread64)
#define READDIRS(readdir)                                                                            \
  INTERPOSE(dirent*, readdir, DIR* stream) {                                                         \
    static const auto next = reinterpret_cast<dirent* (*)(DIR*)>(::dlsym(RTLD_NEXT, #readdir));      \
    dirent* entry = nullptr;                                                                         \
    look("readdir", {::dirfd(stream)}, [&] { return (entry = next(stream)) == nullptr ? 0L : 1L; }); \
    return entry;                                                                                    \
  }
READDIRS(readdir)
READDIRS(readdir64)
#define STATS(stat, lstat, fstat, fstatat)                                         \
  INTERPOSE(int, stat, const char* path, void* status) {                           \
    return statusAt("stat", AT_FDCWD, path, status, 0);                            \
  }                                                                                \
  INTERPOSE(int, lstat, const char* path, void* status) {                          \
    return statusAt("stat", AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);          \
  }                                                                                \
  INTERPOSE(int, fstat, int file, void* status) {                                  \
    return statusAt("stat", file, "", status, AT_EMPTY_PATH);                      \
  }                                                                                \
  INTERPOSE(int, fstatat, int folder, const char* path, void* status, int flags) { \
    return statusAt("stat", folder, path, status, flags);                          \
  }
STATS(stat, lstat, fstat, fstatat)
STATS(stat64, lstat64, fstat64, fstatat64)
INTERPOSE(int, statx, int folder, const char* path, int flags, unsigned mask, void* status) {
  return static_cast<int>(
      look("statx", {folder, path}, [&] { return raw(SYS_statx, folder, path, flags, mask, status); }));
}
INTERPOSE(ssize_t, readlinkat, int folder, const char* path, char* target, std::size_t size) {
  return look("readlink", {folder, path}, [&] { return raw(SYS_readlinkat, folder, path, target, size); });
}
INTERPOSE(ssize_t, readlink, const char* path, char* target, std::size_t size) {
  return interposed_readlinkat(AT_FDCWD, path, target, size);
}
INTERPOSE(ssize_t, flistxattr, int file, char* names, std::size_t size) {
  return look("listxattr", {file}, [&] { return raw(SYS_flistxattr, file, names, size); });
}
INTERPOSE(ssize_t, fgetxattr, int file, const char* name, void* value, std::size_t size) {
  return look("getxattr", {file}, [&] { return raw(SYS_fgetxattr, file, name, value, size); });
}
INTERPOSE(int, flock, int file, int operation) {
  return static_cast<int>(look("flock", {file}, [&] { return raw(SYS_flock, file, operation); }));
}

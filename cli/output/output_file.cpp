#include "cli/output/output_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string_view>
#include <system_error>

#include "cli/split_path.h"
#include "cli/system_error.h"

namespace cli {

namespace {

constexpr std::size_t kBufferSize = 1U << 18;

// ---------------------------------------------------------------------------------------------
// The named temporary file, which signals must remove
// ---------------------------------------------------------------------------------------------

// All signals that end a program, except those that are ignored (SIGPIPE, SIGXFSZ) and those that
// cannot be handled.
constexpr int kEndingSignals[] = {
    SIGHUP,  SIGINT,  SIGQUIT, SIGILL,  SIGTRAP,   SIGABRT, SIGBUS,    SIGFPE, SIGUSR1, SIGSEGV,
    SIGUSR2, SIGALRM, SIGTERM, SIGXCPU, SIGVTALRM, SIGPROF, SIGSTKFLT, SIGIO,  SIGPWR,  SIGSYS,
};

// Read by the signal handler, which may use neither locks nor the heap. The program writes one
// file.
struct Removal {
  int folder;
  char name[64];
};
Removal removal;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
volatile std::sig_atomic_t is_armed = 0;

extern "C" void RemoveTemporaryAndDie(int signal_number) {
  if (is_armed != 0) unlinkat(removal.folder, removal.name, 0);
  std::signal(signal_number, SIG_DFL);
  raise(signal_number);
}

void RemoveOnSignal(int folder, const std::string& name) {
  removal.folder = folder;
  removal.name[name.copy(removal.name, sizeof(removal.name) - 1)] = '\0';
  is_armed = 1;
  for (const int number : kEndingSignals) {
    // A signal that the caller ignores for the program, as nohup does, remains ignored.
    if (std::signal(number, RemoveTemporaryAndDie) == SIG_IGN) std::signal(number, SIG_IGN);
  }
}

// Blocks signals while a temporary file has a name that the handler would not remove.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t signals;
    sigfillset(&signals);
    pthread_sigmask(SIG_BLOCK, &signals, &before_);
  }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;
  SignalsBlocked(SignalsBlocked&&) = delete;
  SignalsBlocked& operator=(SignalsBlocked&&) = delete;
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

// A name that no other file has: ".cableinfo-1a2b3c4d5e6f7a8b". It does not depend on the name of
// the output, which may be as long as the file system allows.
std::string TemporaryName() {
  std::random_device random;
  const std::uint64_t number = std::uint64_t{random()} << 32 | random();
  char digits[16];
  const auto written = std::to_chars(digits, digits + sizeof(digits), number, 16);
  return ".cableinfo-" + std::string(digits, written.ptr);
}

// Calls `make(name)` with new names until it does not fail because the name exists; returns the
// name. Throws the error that `make` leaves in errno.
template <typename Make>
std::string WithNewName(const Make& make) {
  for (;;) {
    std::string name = TemporaryName();
    if (make(name)) return name;
    if (errno != EEXIST) ThrowError(errno);
  }
}

// ---------------------------------------------------------------------------------------------
// Paths
// ---------------------------------------------------------------------------------------------

// The folder of a split path, as the system takes it.
const char* FolderOf(const SplitPath& path) {
  return path.folder.empty() ? "." : path.folder.c_str();
}

std::optional<std::string> RealPath(const std::string& path) {
  char resolved[PATH_MAX];
  if (realpath(path.c_str(), resolved) == nullptr) return std::nullopt;
  return resolved;
}

std::optional<std::string> LinkTarget(const std::string& path) {
  char target[PATH_MAX];
  const ssize_t size = readlink(path.c_str(), target, sizeof(target));
  if (size < 0) return std::nullopt;
  return std::string(target, static_cast<std::size_t>(size));
}

// True for the folder of this process's descriptors: /proc/1234/fd or /proc/1234/task/1234/fd.
bool IsDescriptorFolder(std::string_view path) {
  const std::string process = "/proc/" + std::to_string(getpid()) + '/';
  return path.starts_with(process) && path.ends_with("/fd");
}

// The descriptor that `path` names, such as 1 for /dev/stdout, /dev/fd/1 and links to them.
std::optional<int> NamedDescriptor(std::string path) {
  constexpr int kMaxLinks = 40;  // as the system itself follows
  for (int i = 0; i < kMaxLinks; ++i) {
    const SplitPath split = Split(path);
    const std::optional<std::string> folder = RealPath(FolderOf(split));
    if (!folder) return std::nullopt;
    if (IsDescriptorFolder(*folder)) {
      int descriptor = 0;
      const char* const end = split.name.data() + split.name.size();
      const auto read = std::from_chars(split.name.data(), end, descriptor);
      if (read.ec == std::errc() && read.ptr == end) return descriptor;
    }
    const std::optional<std::string> target = LinkTarget(*folder + '/' + split.name);
    if (!target) return std::nullopt;
    path = target->starts_with('/') ? *target : *folder + '/' + *target;
  }
  return std::nullopt;
}

bool IsSpecialFile(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

// The file that is replaced, after symbolic links; `path` itself if there is none yet. A dangling
// link is an error, in contrast to `open`, which would create its target.
std::string ReplacedFile(const std::string& path) {
  if (const std::optional<std::string> resolved = RealPath(path)) return *resolved;
  const int error = errno;
  struct stat status {};
  const bool is_new = error == ENOENT && lstat(path.c_str(), &status) != 0;
  if (!is_new) ThrowError(error);
  return path;
}

// The permissions of the file that is replaced, or those of a new file.
mode_t Permissions(int folder, const std::string& name) {
  struct stat status {};
  if (fstatat(folder, name.c_str(), &status, 0) == 0) return status.st_mode & 07777;
  if (errno != ENOENT) ThrowError(errno);
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// The name by which an unnamed file can be linked.
std::string ProcessPath(int fd) { return "/proc/self/fd/" + std::to_string(fd); }

}  // namespace

bool IsTerminal(const std::string& path) {
  return IsStandardOutput(path) && isatty(STDOUT_FILENO) != 0;
}

OutputFile::OutputFile(const std::string& path, Temporary temporary) : buffer_(kBufferSize) {
  if (IsStandardOutput(path)) {
    fd_ = STDOUT_FILENO;
  } else if (const std::optional<int> descriptor = NamedDescriptor(path)) {
    fd_ = *descriptor;
  } else if (IsSpecialFile(path)) {
    fd_ = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (fd_ < 0) ThrowError(errno);
    owns_fd_ = true;
  } else {
    OpenTemporary(ReplacedFile(path), temporary);
  }
  is_terminal_ = isatty(fd_) != 0;
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

void OutputFile::OpenTemporary(const std::string& path, Temporary temporary) {
  const SplitPath split = Split(path);
  if (split.name.empty()) ThrowError(EISDIR);
  const int folder = open(FolderOf(split), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) ThrowError(errno);
  folder_ = folder;
  name_ = split.name;
  try {
    const mode_t permissions = Permissions(folder_, name_);
    if (temporary == Temporary::kNamed || !OpenUnnamed()) OpenNamed();
    owns_fd_ = true;
    if (fchmod(fd_, permissions) != 0) error_ = errno;
  } catch (...) {
    close(folder_);
    throw;
  }
}

// False where the file system or the system has no unnamed files that can be named later.
bool OutputFile::OpenUnnamed() {
  fd_ = openat(folder_, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
  if (fd_ < 0) return false;
  if (access(ProcessPath(fd_).c_str(), F_OK) == 0) return true;
  close(fd_);
  return false;
}

void OutputFile::OpenNamed() {
  const SignalsBlocked blocked;
  temporary_name_ = WithNewName([this](const std::string& name) {
    fd_ = openat(folder_, name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    return fd_ >= 0;
  });
  RemoveOnSignal(folder_, temporary_name_);
}

OutputFile::~OutputFile() {
  RemoveTemporary();
  if (owns_fd_) close(fd_);
  if (folder_ >= 0) close(folder_);
}

void OutputFile::RemoveTemporary() {
  if (!temporary_name_.empty()) unlinkat(folder_, temporary_name_.c_str(), 0);
  temporary_name_.clear();
  is_armed = 0;
}

void OutputFile::Commit() {
  if (!Drain()) ThrowError(error_);
  if (!replaces_file()) return;
  // The content reaches the disk before the file gets its name, so that a crash leaves no part of
  // it.
  if (fsync(fd_) != 0) ThrowError(errno);
  Rename();
}

void OutputFile::Rename() {
  const SignalsBlocked blocked;
  if (temporary_name_.empty()) {
    temporary_name_ = WithNewName([this](const std::string& name) {
      return linkat(AT_FDCWD, ProcessPath(fd_).c_str(), folder_, name.c_str(), AT_SYMLINK_FOLLOW) ==
             0;
    });
  }
  if (renameat(folder_, temporary_name_.c_str(), folder_, name_.c_str()) != 0) {
    const int error = errno;
    RemoveTemporary();
    ThrowError(error);
  }
  temporary_name_.clear();
  is_armed = 0;
}

OutputFile::int_type OutputFile::overflow(int_type c) {
  if (!Drain()) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
  return traits_type::not_eof(c);
}

std::streamsize OutputFile::xsputn(const char* text, std::streamsize count) {
  const auto size = static_cast<std::size_t>(count);
  if (epptr() - pptr() < count && !Drain()) return 0;
  if (size > buffer_.size()) return WriteAll(text, size) ? count : 0;
  std::copy_n(text, size, pptr());
  pbump(static_cast<int>(count));
  return count;
}

int OutputFile::sync() { return Drain() ? 0 : -1; }

bool OutputFile::Drain() {
  const bool written = WriteAll(pbase(), static_cast<std::size_t>(pptr() - pbase()));
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return written;
}

bool OutputFile::WriteAll(const char* text, std::size_t count) {
  while (count > 0 && error_ == 0) {
    const ssize_t written = write(fd_, text, count);
    if (written >= 0) {
      text += written;
      count -= static_cast<std::size_t>(written);
    } else if (errno == EAGAIN) {  // another program has made the pipe non-blocking
      pollfd output = {fd_, POLLOUT, 0};
      poll(&output, 1, -1);
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  return error_ == 0;
}

}  // namespace cli

#include "cli/output/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <system_error>

namespace cli {

namespace {

constexpr std::size_t kBufferSize = 1U << 18;

// ---------------------------------------------------------------------------------------------
// The temporary file that an interrupt must remove
// ---------------------------------------------------------------------------------------------

constexpr int kInterrupts[] = {SIGINT, SIGTERM, SIGHUP};

// Read by the signal handler, which may use neither locks nor the heap. One program writes one
// file.
char doomed_path[PATH_MAX];  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
volatile std::sig_atomic_t is_doomed = 0;

extern "C" void RemoveTemporaryAndDie(int signal_number) {
  if (is_doomed != 0) unlink(doomed_path);
  std::signal(signal_number, SIG_DFL);
  raise(signal_number);
}

void RemoveOnInterrupt(const std::string& path) {
  path.copy(doomed_path, sizeof(doomed_path) - 1);
  is_doomed = 1;
  for (const int number : kInterrupts) {
    // What the caller has the program ignore, as nohup does, stays ignored.
    if (std::signal(number, RemoveTemporaryAndDie) == SIG_IGN) std::signal(number, SIG_IGN);
  }
}

void KeepOnInterrupt() { is_doomed = 0; }

// Puts interrupts off while a temporary file exists that nobody would remove.
class InterruptsLater {
 public:
  InterruptsLater() {
    sigset_t interrupts;
    sigemptyset(&interrupts);
    for (const int number : kInterrupts) sigaddset(&interrupts, number);
    pthread_sigmask(SIG_BLOCK, &interrupts, &before_);
  }
  InterruptsLater(const InterruptsLater&) = delete;
  InterruptsLater& operator=(const InterruptsLater&) = delete;
  InterruptsLater(InterruptsLater&&) = delete;
  InterruptsLater& operator=(InterruptsLater&&) = delete;
  ~InterruptsLater() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

// ---------------------------------------------------------------------------------------------

[[noreturn]] void ThrowError(int error) { throw std::system_error(error, std::generic_category()); }

// What `path` leads to behind its symbolic links; itself when there is nothing yet.
std::string Resolved(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) == nullptr ? path : resolved;
}

bool IsSpecialFile(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

// The permissions of the file that is replaced, or those of a new file.
mode_t Permissions(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : fd_(STDOUT_FILENO), buffer_(kBufferSize) {
  if (!path.empty() && IsSpecialFile(path)) {
    fd_ = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd_ < 0) ThrowError(errno);
  } else if (!path.empty()) {
    OpenTemporary(Resolved(path));
  }
  is_terminal_ = isatty(fd_) != 0;
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

void OutputFile::OpenTemporary(const std::string& path) {
  std::string temporary = path + ".XXXXXX";
  if (temporary.size() >= sizeof(doomed_path)) ThrowError(ENAMETOOLONG);
  const InterruptsLater interrupts_later;
  fd_ = mkostemp(temporary.data(), O_CLOEXEC);
  if (fd_ < 0) ThrowError(errno);
  RemoveOnInterrupt(temporary);
  temporary_path_ = temporary;
  final_path_ = path;
  if (fchmod(fd_, Permissions(path)) != 0) error_ = errno;
}

OutputFile::~OutputFile() {
  if (!temporary_path_.empty()) unlink(temporary_path_.c_str());
  KeepOnInterrupt();
  if (fd_ != STDOUT_FILENO) close(fd_);
}

void OutputFile::Commit() {
  if (!Drain()) ThrowError(error_);
  if (temporary_path_.empty()) return;
  // On the disk before it is under its name: a crash must not leave half a file there either.
  if (fsync(fd_) != 0) ThrowError(errno);
  if (std::rename(temporary_path_.c_str(), final_path_.c_str()) != 0) ThrowError(errno);
  temporary_path_.clear();
  KeepOnInterrupt();
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

int OutputFile::sync() {
  if (error_ != 0) return -1;
  return !is_terminal_ || Drain() ? 0 : -1;
}

bool OutputFile::Drain() {
  const bool written = WriteAll(pbase(), static_cast<std::size_t>(pptr() - pbase()));
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return written;
}

bool OutputFile::WriteAll(const char* text, std::size_t count) {
  while (count > 0 && error_ == 0) {
    const ssize_t written = write(fd_, text, count);
    if (written < 0) {
      if (errno != EINTR) error_ = errno;
      continue;
    }
    text += written;
    count -= static_cast<std::size_t>(written);
  }
  return error_ == 0;
}

}  // namespace cli

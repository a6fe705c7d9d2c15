#pragma once

#include <cstddef>
#include <streambuf>
#include <string>
#include <vector>

namespace cli {

/// How the command line names standard output.
inline constexpr const char* kStandardOutput = "-";

inline bool IsStandardOutput(const std::string& path) { return path == kStandardOutput; }

/// True if `path` is standard output and that is a terminal.
bool IsTerminal(const std::string& path);

/// The output of the program: standard output, or a file that is replaced only when its new content
/// is complete.
///
///     {
///       OutputFile output("cables.csv");     // an old cables.csv is untouched
///       std::ostream(&output) << "...";
///       output.Commit();                     // now it is replaced, at once
///     }                                      // without Commit: as if nothing had been written
///
/// Until `Commit`, the text goes to a file without a name, which disappears with the process
/// whatever ends it. Where the file system has no such files, it goes to a named one, which the
/// destructor and the signals that end a program remove.
///
/// Devices, pipes and the names of open descriptors (`/dev/stdout`, `/dev/fd/1`) are written in
/// place, from their current position.
///
/// Text is buffered and written in large pieces; a flush writes the buffered text.
class OutputFile : public std::streambuf {
 public:
  enum class Temporary { kUnnamed, kNamed };

  /// Throws `std::system_error`.
  explicit OutputFile(const std::string& path, Temporary temporary = Temporary::kUnnamed);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  OutputFile(OutputFile&&) = delete;
  OutputFile& operator=(OutputFile&&) = delete;
  ~OutputFile() override;

  /// Writes what is buffered and replaces the file. Throws `std::system_error`.
  void Commit();

  /// True if the output gets its name only with `Commit`.
  bool replaces_file() const { return folder_ >= 0; }
  /// True after a failed write; `Commit` throws its error.
  bool has_failed() const { return error_ != 0; }
  bool is_terminal() const { return is_terminal_; }

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;
  int sync() override;

 private:
  void OpenTemporary(const std::string& path, Temporary temporary);
  bool OpenUnnamed();
  void OpenNamed();
  void Rename();
  void RemoveTemporary();
  bool Drain();
  bool WriteAll(const char* text, std::size_t count);

  int fd_ = -1;
  bool owns_fd_ = false;
  int folder_ = -1;             // of the file that is replaced; -1 when written in place
  std::string name_;            // of that file in its folder
  std::string temporary_name_;  // empty when the temporary file has none
  int error_ = 0;               // of the first failed write
  bool is_terminal_ = false;
  std::vector<char> buffer_;
};

}  // namespace cli

#pragma once

#include <cstddef>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Where the program writes: standard output, or a file that appears under its name only when it is
/// whole. Until then the text goes to a temporary file beside it, which an interrupt removes.
///
/// Flushes from outside are ignored unless a person watches: a row that ends in a flush would
/// otherwise cost a system call.
class OutputFile : public std::streambuf {
 public:
  /// An empty path is standard output. Throws `std::system_error`.
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  OutputFile(OutputFile&&) = delete;
  OutputFile& operator=(OutputFile&&) = delete;
  /// Leaves nothing behind unless `Commit` has been called.
  ~OutputFile() override;

  /// Writes what is buffered and gives the file its name. Throws `std::system_error`.
  void Commit();

  /// True after a failed write; `Commit` will throw its error.
  bool has_failed() const { return error_ != 0; }
  bool is_terminal() const { return is_terminal_; }

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;
  int sync() override;

 private:
  void OpenTemporary(const std::string& path);
  bool Drain();
  bool WriteAll(const char* text, std::size_t count);

  std::string final_path_;      // empty when the text goes straight to its place
  std::string temporary_path_;  // empty when there is none
  int fd_ = -1;
  int error_ = 0;  // of the first failed write
  bool is_terminal_ = false;
  std::vector<char> buffer_;
};

}  // namespace cli

#include "cli/input/same_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include "cli/input/input_name.h"

namespace cli {

bool IsSameFile(const std::string& input, const std::string& output) {
  struct stat a {};
  struct stat b {};
  const int found = IsStandardInput(input) ? fstat(STDIN_FILENO, &a) : stat(input.c_str(), &a);
  if (found != 0 || stat(output.c_str(), &b) != 0) return false;
  return S_ISREG(a.st_mode) && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace cli

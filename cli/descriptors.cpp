#include "cli/descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace cli {

void ReserveStandardDescriptors() {
  constexpr const char* kNull = "/dev/null";
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(fd, F_GETFD) >= 0) continue;
    // The lowest free descriptor is this one.
    static_cast<void>(open(kNull, fd == STDOUT_FILENO ? O_RDONLY : O_WRONLY));
  }
}

}  // namespace cli

// Answers of the kernel, or of a process that poses as it: arbitrary bytes are bytes of the module,
// an error, or no answer.

#include <cstddef>
#include <cstdint>
#include <span>

#include "check.h"
#include "cli/live/netlink_messages.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint16_t kFamily = 0x15;
  constexpr std::uint32_t kSequence = 1;
  const std::span<const std::uint8_t> datagram(data, size);
  const cli::PageRequest request;
  if (const auto answer = cli::ParseModuleAnswer(datagram, kFamily, kSequence, request)) {
    fuzz::Check(answer->bytes.size() <= request.length, "no more bytes than were asked for");
    fuzz::Check(answer->error.has_value() == answer->bytes.empty(), "either bytes or an error");
    fuzz::Check(!answer->error || !answer->error->text.empty(), "an error has a text");
  }
  if (const auto answer = cli::ParseFamilyAnswer(datagram, kSequence)) {
    fuzz::Check(!answer->error || !answer->error->text.empty(), "an error has a text");
  }
  return 0;
}

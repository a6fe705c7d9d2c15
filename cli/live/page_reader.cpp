#include "cli/live/page_reader.h"

#include <cerrno>
#include <system_error>

namespace cli {

namespace {

using cable_info::IsUpperPage;
using cable_info::Page;

constexpr std::size_t kHalf = cable_info::ModuleImage::kHalf;
constexpr std::size_t kWhole = cable_info::ModuleImage::kWhole;
constexpr std::uint8_t kDiagnosticsAddress = 0x51;

ReadError::Kind KindOf(int error_number) {
  switch (error_number) {
    case ENODEV:
    case ENXIO:
    case ENOMEDIUM:
      return ReadError::Kind::kNoModule;
    case EOPNOTSUPP:
    case ENOTTY:
    case ENOSYS:
      return ReadError::Kind::kNotSupported;
    case EPERM:
    case EACCES:
      return ReadError::Kind::kNoPermission;
    default:
      return ReadError::Kind::kPage;
  }
}

}  // namespace

PageRequest RequestFor(const cable_info::MemoryPart& part) {
  PageRequest request;
  request.offset = part.first;
  if (part.page == Page::kA2) request.i2c_address = kDiagnosticsAddress;
  if (IsUpperPage(part.page)) {
    request.page = NumberOf(part.page);
    request.bank = static_cast<std::uint8_t>(BankOf(part.page));
  }
  return request;
}

std::optional<std::size_t> LinearOffset(const PageRequest& request) {
  if (request.bank != 0) return std::nullopt;
  if (request.i2c_address == kDiagnosticsAddress) return kWhole + request.offset;
  return request.page * kHalf + request.offset;
}

ReadError ErrorOf(int error_number, const std::string& text) {
  const std::string meaning = std::generic_category().message(error_number);
  return {KindOf(error_number), text.empty() ? meaning : meaning + " (" + text + ')'};
}

ReadError NoAnswerInTime() {
  return {ReadError::Kind::kTimeLimit, "no answer within the time limit"};
}

}  // namespace cli

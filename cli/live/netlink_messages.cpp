#include "cli/live/netlink_messages.h"

#include <libmnl/libmnl.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if.h>
#include <linux/netlink.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

namespace cli {

namespace {

constexpr std::size_t kMaxRequestSize = 256;

// A message under construction, aligned as its headers are.
class Request {
 public:
  Request(std::uint16_t type, std::uint32_t sequence, std::uint8_t command, std::uint8_t version)
      : header_(mnl_nlmsg_put_header(buffer_)) {
    header_->nlmsg_type = type;
    header_->nlmsg_flags = NLM_F_REQUEST;
    header_->nlmsg_seq = sequence;
    auto* const generic =
        static_cast<genlmsghdr*>(mnl_nlmsg_put_extra_header(header_, sizeof(genlmsghdr)));
    generic->cmd = command;
    generic->version = version;
  }

  nlmsghdr* header() { return header_; }
  std::vector<std::uint8_t> Bytes() const {
    return {std::begin(buffer_), std::begin(buffer_) + header_->nlmsg_len};
  }

 private:
  alignas(nlmsghdr) std::uint8_t buffer_[kMaxRequestSize] = {};
  nlmsghdr* header_;
};

// The attributes of a message by type; null for types that it does not have. The last one of a type
// is used.
template <std::size_t N>
struct Attributes {
  const nlattr* by_type[N] = {};

  static int Take(const nlattr* attribute, void* data) {
    const std::uint16_t type = mnl_attr_get_type(attribute);
    if (type < N) static_cast<Attributes*>(data)->by_type[type] = attribute;
    return MNL_CB_OK;
  }
};

template <std::size_t N>
Attributes<N> AttributesOf(const nlmsghdr* message, std::size_t offset) {
  Attributes<N> attributes;
  if (mnl_nlmsg_get_payload_len(message) >= offset) {
    mnl_attr_parse(message, static_cast<unsigned>(offset), Attributes<N>::Take, &attributes);
  }
  return attributes;
}

// The attribute as text; it need not end with a NUL.
std::string Text(const nlattr* attribute) {
  if (attribute == nullptr) return {};
  const auto* const text = static_cast<const char*>(mnl_attr_get_payload(attribute));
  const std::size_t size = mnl_attr_get_payload_len(attribute);
  return {text, strnlen(text, size)};
}

ReadError NoBytes() { return {ReadError::Kind::kPage, "the answer holds no bytes"}; }

// The kernel explains errors in attributes after the header, or after the request if that is
// repeated.
ReadError ErrorIn(const nlmsghdr* message) {
  if (mnl_nlmsg_get_payload_len(message) < sizeof(nlmsgerr)) {
    return {ReadError::Kind::kPage, "the kernel's error message is cut off"};
  }
  const auto* const error = static_cast<const nlmsgerr*>(mnl_nlmsg_get_payload(message));
  std::size_t offset = sizeof(nlmsgerr);
  const bool repeats_request = (message->nlmsg_flags & NLM_F_CAPPED) == 0;
  if (repeats_request && error->msg.nlmsg_len > sizeof(nlmsghdr)) {
    offset += error->msg.nlmsg_len - sizeof(nlmsghdr);
  }
  Attributes<NLMSGERR_ATTR_OFFS + 1> attributes;
  if ((message->nlmsg_flags & NLM_F_ACK_TLVS) != 0) {
    attributes = AttributesOf<NLMSGERR_ATTR_OFFS + 1>(message, offset);
  }
  if (error->error == 0) return NoBytes();
  // Numbers that are not an errno become EPROTO; the smallest integer could not be negated.
  const int number = error->error > -4096 && error->error < 0 ? -error->error : EPROTO;
  ReadError result = ErrorOf(number, Text(attributes.by_type[NLMSGERR_ATTR_MSG]));
  // An error with the offset of an attribute is about the request: the interface does not exist.
  const bool blames_request = attributes.by_type[NLMSGERR_ATTR_OFFS] != nullptr;
  if (blames_request && number == ENODEV) result.kind = ReadError::Kind::kPort;
  return result;
}

// Calls `use` with each message in the datagram that answers the request, until it returns true.
template <typename Use>
void FindAnswer(std::span<const std::uint8_t> datagram, std::uint32_t sequence, const Use& use) {
  // A copy that is aligned as headers are.
  std::vector<std::uint32_t> aligned((datagram.size() + 3) / 4);
  if (datagram.empty()) return;
  std::memcpy(aligned.data(), datagram.data(), datagram.size());
  int rest = static_cast<int>(datagram.size());
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how netlink messages are read
  const auto* message = reinterpret_cast<const nlmsghdr*>(aligned.data());
  // The check of the library accepts a length of more than 31 bits.
  const auto fits = [](const nlmsghdr* header, int size) {
    return mnl_nlmsg_ok(header, size) && header->nlmsg_len <= static_cast<unsigned>(size);
  };
  while (fits(message, rest)) {
    if (message->nlmsg_seq == sequence && use(message)) return;
    message = mnl_nlmsg_next(message, &rest);
  }
}

bool IsReply(const nlmsghdr* message, std::uint16_t family, std::uint8_t command) {
  if (message->nlmsg_type != family || mnl_nlmsg_get_payload_len(message) < sizeof(genlmsghdr)) {
    return false;
  }
  return static_cast<const genlmsghdr*>(mnl_nlmsg_get_payload(message))->cmd == command;
}

PageAnswer BytesIn(const nlmsghdr* message, const PageRequest& request) {
  const auto attributes =
      AttributesOf<ETHTOOL_A_MODULE_EEPROM_DATA + 1>(message, sizeof(genlmsghdr));
  const nlattr* const data = attributes.by_type[ETHTOOL_A_MODULE_EEPROM_DATA];
  if (data == nullptr || mnl_attr_get_payload_len(data) == 0) {
    return Failed(NoBytes());
  }
  const std::size_t size = mnl_attr_get_payload_len(data);
  if (size > request.length) {
    return Failed({ReadError::Kind::kPage, "the answer holds " + std::to_string(size) +
                                               " bytes instead of " +
                                               std::to_string(request.length)});
  }
  const auto* const bytes = static_cast<const std::uint8_t*>(mnl_attr_get_payload(data));
  return {{bytes, bytes + size}, std::nullopt};
}

}  // namespace

std::vector<std::uint8_t> FamilyRequest(std::uint32_t sequence) {
  constexpr std::uint8_t kControlVersion = 1;
  Request request(GENL_ID_CTRL, sequence, CTRL_CMD_GETFAMILY, kControlVersion);
  mnl_attr_put_strz(request.header(), CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
  return request.Bytes();
}

std::vector<std::uint8_t> ModuleRequest(std::uint16_t family, std::uint32_t sequence,
                                        const std::string& interface, const PageRequest& request) {
  Request message(family, sequence, ETHTOOL_MSG_MODULE_EEPROM_GET, ETHTOOL_GENL_VERSION);
  nlmsghdr* const header = message.header();
  nlattr* const nest = mnl_attr_nest_start(header, ETHTOOL_A_MODULE_EEPROM_HEADER);
  constexpr std::size_t kMaxNameSize = ALTIFNAMSIZ - 1;
  mnl_attr_put_strz(header, ETHTOOL_A_HEADER_DEV_NAME, interface.substr(0, kMaxNameSize).c_str());
  mnl_attr_nest_end(header, nest);
  mnl_attr_put_u32(header, ETHTOOL_A_MODULE_EEPROM_OFFSET, request.offset);
  mnl_attr_put_u32(header, ETHTOOL_A_MODULE_EEPROM_LENGTH, request.length);
  mnl_attr_put_u8(header, ETHTOOL_A_MODULE_EEPROM_PAGE, request.page);
  mnl_attr_put_u8(header, ETHTOOL_A_MODULE_EEPROM_BANK, request.bank);
  mnl_attr_put_u8(header, ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS, request.i2c_address);
  return message.Bytes();
}

std::optional<FamilyAnswer> ParseFamilyAnswer(std::span<const std::uint8_t> datagram,
                                              std::uint32_t sequence) {
  std::optional<FamilyAnswer> answer;
  FindAnswer(datagram, sequence, [&](const nlmsghdr* message) {
    if (message->nlmsg_type == NLMSG_ERROR) {
      ReadError error = ErrorIn(message);
      // A kernel without this interface does not know its name.
      if (error.kind != ReadError::Kind::kNoPermission) error.kind = ReadError::Kind::kNotSupported;
      answer = FamilyAnswer{0, std::move(error)};
    } else if (IsReply(message, GENL_ID_CTRL, CTRL_CMD_NEWFAMILY)) {
      const auto attributes = AttributesOf<CTRL_ATTR_FAMILY_ID + 1>(message, sizeof(genlmsghdr));
      const nlattr* const id = attributes.by_type[CTRL_ATTR_FAMILY_ID];
      if (id == nullptr || mnl_attr_validate(id, MNL_TYPE_U16) < 0) return false;
      answer = FamilyAnswer{mnl_attr_get_u16(id), std::nullopt};
    }
    return answer.has_value();
  });
  return answer;
}

std::optional<PageAnswer> ParseModuleAnswer(std::span<const std::uint8_t> datagram,
                                            std::uint16_t family, std::uint32_t sequence,
                                            const PageRequest& request) {
  std::optional<PageAnswer> answer;
  FindAnswer(datagram, sequence, [&](const nlmsghdr* message) {
    if (message->nlmsg_type == NLMSG_ERROR) {
      answer = Failed(ErrorIn(message));
    } else if (IsReply(message, family, ETHTOOL_MSG_MODULE_EEPROM_GET_REPLY)) {
      answer = BytesIn(message, request);
    }
    return answer.has_value();
  });
  return answer;
}

}  // namespace cli

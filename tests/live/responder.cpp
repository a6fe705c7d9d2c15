#include "live/responder.h"

#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

namespace live_tests {

namespace {

using cable_info::ModuleImage;
using cable_info::Page;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint16_t kFamily = 0x1D;

template <typename T>
void Put(Bytes& to, const T& value) {
  const std::size_t at = to.size();
  to.resize(at + sizeof(T));
  std::memcpy(to.data() + at, &value, sizeof(T));
}

void Append(Bytes& to, const Bytes& bytes) {
  for (const std::uint8_t byte : bytes) to.push_back(byte);
}

void PutAttribute(Bytes& to, std::uint16_t type, const Bytes& payload) {
  Put(to, static_cast<std::uint16_t>(4 + payload.size()));
  Put(to, type);
  Append(to, payload);
  to.resize((to.size() + 3) / 4 * 4);
}

Bytes TextBytes(const std::string& text) {
  Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

Bytes Message(std::uint16_t type, std::uint16_t flags, std::uint32_t sequence,
              const Bytes& payload) {
  Bytes message;
  Put(message, static_cast<std::uint32_t>(16 + payload.size()));
  Put(message, type);
  Put(message, flags);
  Put(message, sequence);
  Put(message, std::uint32_t{0});
  Append(message, payload);
  return message;
}

Bytes Generic(std::uint8_t command) { return {command, 1, 0, 0}; }

template <typename T>
T Get(const Bytes& from, std::size_t at) {
  T value = {};
  if (at + sizeof(T) <= from.size()) std::memcpy(&value, from.data() + at, sizeof(T));
  return value;
}

class Process {
 public:
  Process(const ModuleImage& memory, const std::map<Page, Behaviour>& behaviours,
          const Behaviour& of_family, int socket, int records)
      : memory_(memory),
        behaviours_(behaviours),
        of_family_(of_family),
        socket_(socket),
        records_(records) {}

  [[noreturn]] void Serve() {
    for (;;) {
      Bytes request(4096);
      socklen_t size = sizeof(client_);
      const ssize_t got = recvfrom(socket_, request.data(), request.size(), 0, Client(), &size);
      if (got < 20) continue;
      request.resize(static_cast<std::size_t>(got));
      Answer(request);
    }
  }

 private:
  sockaddr* Client() { return reinterpret_cast<sockaddr*>(&client_); }  // NOLINT: of sockets

  void Send(const Bytes& message) {
    sendto(socket_, message.data(), message.size(), 0, Client(), sizeof(client_));
  }

  static Received Parse(const Bytes& request) {
    Received received;
    received.type = Get<std::uint16_t>(request, 4);
    received.flags = Get<std::uint16_t>(request, 6);
    received.command = request[16];
    for (std::size_t at = 20; at + 4 <= request.size();) {
      const auto size = Get<std::uint16_t>(request, at);
      constexpr std::uint16_t kTypeMask = 0x3FFF;
      const std::uint16_t type = Get<std::uint16_t>(request, at + 2) & kTypeMask;
      if (size < 4) break;
      if (received.type == kFamily) Take(request, at, size, type, received);
      at += (size + 3U) / 4U * 4U;
    }
    return received;
  }

  static void Take(const Bytes& request, std::size_t at, std::uint16_t size, std::uint16_t type,
                   Received& to) {
    switch (type) {
      case ETHTOOL_A_MODULE_EEPROM_HEADER: {
        const std::size_t length = std::min<std::size_t>(size - 8U, sizeof(to.interface) - 1);
        std::memcpy(to.interface, request.data() + at + 8, length);
        break;
      }
      case ETHTOOL_A_MODULE_EEPROM_OFFSET:
        to.offset = Get<std::uint32_t>(request, at + 4);
        break;
      case ETHTOOL_A_MODULE_EEPROM_LENGTH:
        to.length = Get<std::uint32_t>(request, at + 4);
        break;
      case ETHTOOL_A_MODULE_EEPROM_PAGE:
        to.page = request[at + 4];
        break;
      case ETHTOOL_A_MODULE_EEPROM_BANK:
        to.bank = request[at + 4];
        break;
      case ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS:
        to.i2c_address = request[at + 4];
        break;
      default:
        break;
    }
  }

  void Answer(const Bytes& request) {
    const Received received = Parse(request);
    if (write(records_, &received, sizeof(received)) != sizeof(received)) _exit(1);
    const auto sequence = Get<std::uint32_t>(request, 8);
    if (received.type == GENL_ID_CTRL) {
      Bytes payload = Generic(CTRL_CMD_NEWFAMILY);
      PutAttribute(payload, CTRL_ATTR_FAMILY_NAME, TextBytes("ethtool"));
      PutAttribute(payload, CTRL_ATTR_FAMILY_ID, {kFamily, 0});
      return Behave(of_family_, request, Message(GENL_ID_CTRL, 0, sequence, payload));
    }
    const Page page = PageOf(received);
    const auto found = behaviours_.find(page);
    const Behaviour behaviour = found == behaviours_.end() ? Behaviour() : found->second;
    Bytes data;
    for (std::size_t i = 0; i < received.length; ++i) {
      const auto byte = memory_.At(page, received.offset + i);
      if (byte) data.push_back(*byte);
    }
    if (data.empty() && behaviour.kind != Behaviour::Kind::kError &&
        behaviour.kind != Behaviour::Kind::kErrorAtName) {
      return Send(Error(request, EINVAL, "page is not there", 0));
    }
    if (behaviour.kind == Behaviour::Kind::kShort)
      data.resize(static_cast<std::size_t>(behaviour.number));
    if (behaviour.kind == Behaviour::Kind::kLong)
      data.resize(data.size() + static_cast<std::size_t>(behaviour.number));
    Bytes payload = Generic(ETHTOOL_MSG_MODULE_EEPROM_GET_REPLY);
    if (behaviour.kind != Behaviour::Kind::kNoData) {
      PutAttribute(payload, ETHTOOL_A_MODULE_EEPROM_DATA, data);
    }
    Behave(behaviour, request, Message(kFamily, 0, sequence, payload));
  }

  Page PageOf(const Received& received) const {
    if (received.i2c_address == 0x51) return Page::kA2;
    if (memory_.Has(Page::kA0)) return Page::kA0;
    if (received.offset < 128) return Page::kLower;
    return cable_info::PageOf(received.page, received.bank);
  }

  void Behave(const Behaviour& behaviour, const Bytes& request, Bytes answer) {
    switch (behaviour.kind) {
      case Behaviour::Kind::kError:
        return Send(Error(request, behaviour.number, behaviour.text, 0));
      case Behaviour::Kind::kErrorAtName:
        return Send(Error(request, behaviour.number, behaviour.text, 24));
      case Behaviour::Kind::kAcknowledge:
        return Send(Error(request, 0, {}, 0));
      case Behaviour::Kind::kSilent:
        return;
      case Behaviour::Kind::kLate:
        std::this_thread::sleep_for(std::chrono::milliseconds(behaviour.number));
        return Send(answer);
      case Behaviour::Kind::kNoise:
        return SendNoise(request, answer);
      case Behaviour::Kind::kRandom:
        return SendRandom(request, behaviour.number);
      case Behaviour::Kind::kCutOff:
        answer.resize(answer.size() - static_cast<std::size_t>(behaviour.number));
        return Send(answer);
      default:
        return Send(answer);
    }
  }

  // An error as the kernel sends it: the request is repeated, then come attributes.
  static Bytes Error(const Bytes& request, int number, const std::string& text,
                     std::uint32_t offset) {
    Bytes payload;
    Put(payload, -number);
    Append(payload, request);
    if (!text.empty()) PutAttribute(payload, NLMSGERR_ATTR_MSG, TextBytes(text));
    if (offset != 0) {
      Bytes bytes;
      Put(bytes, offset);
      PutAttribute(payload, NLMSGERR_ATTR_OFFS, bytes);
    }
    const std::uint16_t flags = text.empty() && offset == 0 ? 0 : NLM_F_ACK_TLVS;
    return Message(NLMSG_ERROR, flags, Get<std::uint32_t>(request, 8), payload);
  }

  void SendNoise(const Bytes& request, const Bytes& answer) {
    Bytes other = answer;
    other[8] = static_cast<std::uint8_t>(other[8] + 1);  // another sequence number
    Send(other);
    other = answer;
    other[4] = static_cast<std::uint8_t>(other[4] + 1);  // another family
    Send(other);
    other = answer;
    other[16] = ETHTOOL_MSG_STRSET_GET_REPLY;  // another command
    Send(other);
    Send({});
    Send({1, 2, 3});
    // Another sender, with bytes that would be wrong.
    const int forger = socket(AF_NETLINK, SOCK_RAW, NETLINK_USERSOCK);
    other = answer;
    std::fill(other.begin() + 24, other.end(), std::uint8_t{0xEE});
    sendto(forger, other.data(), other.size(), 0, Client(), sizeof(client_));
    close(forger);
    static_cast<void>(request);
    Send(answer);
  }

  void SendRandom(const Bytes& request, int count) {
    std::mt19937 random(7);
    for (int i = 0; i < count; ++i) {
      Bytes bytes(random() % 300);
      for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
      // Half of them have a header that fits.
      if (i % 2 == 0 && bytes.size() >= 20) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        std::memcpy(bytes.data(), &size, sizeof(size));
        const std::uint16_t type = i % 4 == 0 ? kFamily : std::uint16_t{NLMSG_ERROR};
        std::memcpy(bytes.data() + 4, &type, sizeof(type));
        std::memcpy(bytes.data() + 8, request.data() + 8, 4);
        if (i % 4 == 0) bytes[16] = ETHTOOL_MSG_MODULE_EEPROM_GET_REPLY;
      }
      Send(bytes);
    }
  }

  const ModuleImage& memory_;
  const std::map<Page, Behaviour>& behaviours_;
  const Behaviour& of_family_;
  const int socket_;
  const int records_;
  sockaddr_nl client_ = {};
};

}  // namespace

Responder::Responder(const ModuleImage& memory, std::map<Page, Behaviour> behaviours,
                     Behaviour of_family) {
  const int server = socket(AF_NETLINK, SOCK_RAW, NETLINK_USERSOCK);
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  socklen_t size = sizeof(address);
  auto* const generic = reinterpret_cast<sockaddr*>(&address);  // NOLINT: of sockets
  if (server < 0 || bind(server, generic, size) != 0 || getsockname(server, generic, &size) != 0) {
    throw std::runtime_error("no netlink socket");
  }
  port_ = address.nl_pid;
  records_ = memfd_create("requests", 0);
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that crashes leaves no process
    Process(memory, behaviours, of_family, server, records_).Serve();
  }
  close(server);
}

Responder::~Responder() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  close(records_);
}

cli::NetlinkPeer Responder::peer() const { return {NETLINK_USERSOCK, port_}; }

std::vector<Received> Responder::Requests() const {
  std::vector<Received> requests;
  Received one;
  constexpr auto kSize = static_cast<ssize_t>(sizeof(one));
  for (off_t at = 0; pread(records_, &one, sizeof(one), at) == kSize; at += kSize) {
    requests.push_back(one);
  }
  return requests;
}

}  // namespace live_tests

#include <linux/netlink.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/live/netlink_messages.h"
#include "cli/live/readers.h"

namespace cli {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

class NetlinkReader : public PageReader {
 public:
  NetlinkReader(std::string interface, milliseconds limit, const NetlinkPeer& peer)
      : interface_(std::move(interface)), limit_(limit), peer_(peer) {}
  NetlinkReader(const NetlinkReader&) = delete;
  NetlinkReader& operator=(const NetlinkReader&) = delete;
  NetlinkReader(NetlinkReader&&) = delete;
  NetlinkReader& operator=(NetlinkReader&&) = delete;
  ~NetlinkReader() override {
    if (socket_ >= 0) close(socket_);
  }

  PageAnswer Read(const PageRequest& request) override {
    if (auto error = Open()) return Failed(std::move(*error));
    if (auto error = FindFamily()) return Failed(std::move(*error));
    const std::uint32_t sequence = ++sequence_;
    std::optional<PageAnswer> answer;
    auto error =
        Ask(ModuleRequest(family_, sequence, interface_, request), [&](const auto& datagram) {
          answer = ParseModuleAnswer(datagram, family_, sequence, request);
          return answer.has_value();
        });
    return error ? Failed(std::move(*error)) : std::move(*answer);
  }

 private:
  using Datagram = std::span<const std::uint8_t>;

  std::optional<ReadError> Open() {
    if (socket_ >= 0) return std::nullopt;
    socket_ = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, peer_.protocol);
    if (socket_ < 0) return ReadError{ReadError::Kind::kNotSupported, ErrorOf(errno).text};
    // Without it there are no texts of errors, but all else works.
    const int on = 1;
    setsockopt(socket_, SOL_NETLINK, NETLINK_EXT_ACK, &on, sizeof(on));
    return std::nullopt;
  }

  std::optional<ReadError> FindFamily() {
    if (family_ != 0) return std::nullopt;
    const std::uint32_t sequence = ++sequence_;
    std::optional<FamilyAnswer> answer;
    auto error = Ask(FamilyRequest(sequence), [&](const auto& datagram) {
      answer = ParseFamilyAnswer(datagram, sequence);
      return answer.has_value();
    });
    if (error) return error;
    if (answer->error) return answer->error;
    family_ = answer->family;
    return std::nullopt;
  }

  // Sends a request and receives datagrams until `is_answer` accepts one.
  std::optional<ReadError> Ask(const std::vector<std::uint8_t>& request,
                               const std::function<bool(Datagram)>& is_answer) {
    const auto end = Clock::now() + limit_;
    if (auto error = Send(request)) return error;
    // The kernel splits nothing that short: 128 bytes with headers.
    std::vector<std::uint8_t> buffer(kMaxAnswerSize);
    for (;;) {
      const auto rest = std::chrono::duration_cast<milliseconds>(end - Clock::now());
      if (rest.count() <= 0) return NoAnswerInTime();
      pollfd wait = {socket_, POLLIN, 0};
      const int ready = poll(&wait, 1, static_cast<int>(rest.count()) + 1);
      if (ready < 0 && errno != EINTR) return ErrorOf(errno);
      if (ready <= 0) continue;
      sockaddr_nl from = {};
      socklen_t size = sizeof(from);
      const ssize_t got =
          recvfrom(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT, Generic(from), &size);
      if (got < 0 && errno != EINTR && errno != EAGAIN) return ErrorOf(errno);
      // Anybody may send to a socket; only messages of the expected peer are accepted.
      if (got < 0 || from.nl_pid != peer_.port) continue;
      if (is_answer(Datagram(buffer.data(), static_cast<std::size_t>(got)))) return std::nullopt;
    }
  }

  std::optional<ReadError> Send(const std::vector<std::uint8_t>& request) const {
    sockaddr_nl to = {};
    to.nl_family = AF_NETLINK;
    to.nl_pid = peer_.port;
    const ssize_t sent =
        sendto(socket_, request.data(), request.size(), 0, Generic(to), sizeof(to));
    if (sent == static_cast<ssize_t>(request.size())) return std::nullopt;
    return ErrorOf(sent < 0 ? errno : EMSGSIZE);
  }

  static sockaddr* Generic(sockaddr_nl& address) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how sockets take addresses
    return reinterpret_cast<sockaddr*>(&address);
  }

  static constexpr std::size_t kMaxAnswerSize = 32768;

  const std::string interface_;
  const milliseconds limit_;
  const NetlinkPeer peer_;
  int socket_ = -1;
  std::uint16_t family_ = 0;
  std::uint32_t sequence_ = 0;
};

}  // namespace

std::unique_ptr<PageReader> MakeNetlinkReader(const std::string& interface, milliseconds limit,
                                              const NetlinkPeer& peer) {
  return std::make_unique<NetlinkReader>(interface, limit, peer);
}

}  // namespace cli

// Modules are read over a real netlink socket from another process, which behaves as the kernel
// does, or misbehaves.

#include <gtest/gtest.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/netlink.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <future>
#include <set>
#include <thread>
#include <utility>

#include "cli/live/module_reader.h"
#include "cli/live/netlink_messages.h"
#include "cli/live/readers.h"
#include "live/responder.h"
#include "module_memory/cmis_memory.h"

namespace {

using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::PageOf;
using cli::LiveModule;
using cli::ReadError;
using cmis_memory::Memory;
using live_tests::Behaviour;
using live_tests::Received;
using live_tests::Responder;
using std::chrono::milliseconds;

using enum Behaviour::Kind;

// Ample where an answer comes, for a machine that is busy with other tests.
constexpr milliseconds kRequestLimit(10000);
constexpr milliseconds kModuleLimit(30000);
constexpr milliseconds kShortLimit(200);

LiveModule Read(const Responder& responder, milliseconds limit = kModuleLimit,
                milliseconds request_limit = kRequestLimit) {
  const auto timed = cli::MakeTimedReader(
      cli::MakeNetlinkReader("ib0", request_limit, responder.peer()), request_limit * 2);
  return ReadLiveModule(*timed, limit);
}

// Every byte of a page is distinct from that of others.
Memory& Fill(Memory& memory, Page page) {
  memory.Add(page);
  const std::size_t first = IsUpperPage(page) ? 128 : 0;
  const auto salt = static_cast<unsigned>(page) * 7U + (static_cast<unsigned>(page) >> 16U) * 31U;
  for (std::size_t i = 0; i < 128; ++i) {
    memory.Put(page, first + i, {static_cast<unsigned>(i + salt) & 0xFFU});
  }
  return memory;
}

Memory Qsfp() {
  Memory memory;
  for (const Page page : {Page::kLower, Page::k00, Page::k03}) Fill(memory, page);
  memory.Put(Page::kLower, 0, {0x11, 0x08, 0x00}).Put(Page::k00, 128, {0x11});
  return memory.Put(Page::k00, 195, {0x00});
}

// An optic of two banks with diagnostics and VDM: one group in bank 0, two in bank 1.
Memory Osfp() {
  Memory memory;
  for (const Page page : {Page::kLower, Page::k00, Page::k01, Page::k02}) Fill(memory, page);
  for (const unsigned bank : {0U, 1U}) {
    for (const int page : {0x10, 0x11, 0x13, 0x14, 0x20, 0x24, 0x28, 0x2C, 0x2F}) {
      Fill(memory, PageOf(static_cast<std::uint8_t>(page), bank));
    }
  }
  for (const int page : {0x21, 0x25, 0x29}) {
    Fill(memory, PageOf(static_cast<std::uint8_t>(page), 1));
  }
  memory.Put(Page::kLower, 0, {0x19, 0x50, 0x00}).Put(Page::k00, 128, {0x19});
  memory.Put(Page::k01, 142, {0x61}).Put(Page::k01, 145, {0}).Put(Page::k01, 155, {0});
  memory.Put(Page::k01, 173, {0, 0});
  return memory.Put(PageOf(0x2F), 128, {0x00}).Put(PageOf(0x2F, 1), 128, {0x01});
}

Memory Sfp() {
  Memory memory;
  for (unsigned i = 0; i < 256; ++i) {
    memory.Put(Page::kA0, i, {i ^ 0x5AU}).Put(Page::kA2, i, {i ^ 0xA5U});
  }
  return memory.Put(Page::kA0, 0, {0x03, 0x04}).Put(Page::kA0, 92, {0x68});
}

void ExpectSame(const ModuleImage& read, const ModuleImage& expected, Page page,
                unsigned count = 128) {
  const unsigned first = IsUpperPage(page) ? 128 : 0;
  for (unsigned i = first; i < first + count; ++i) {
    ASSERT_EQ(read.At(page, i), expected.At(page, i)) << PageName(page) << " byte " << i;
  }
}

bool SaysOf(const LiveModule& module, const std::string& text) {
  for (const std::string& remark : module.remarks) {
    if (remark.find(text) != std::string::npos) return true;
  }
  return false;
}

TEST(LiveReading, Sff8636) {
  const Memory memory = Qsfp();
  const Responder responder(memory.image());
  const LiveModule module = Read(responder);
  ASSERT_FALSE(module.error) << module.error->text;
  EXPECT_TRUE(module.remarks.empty());
  EXPECT_EQ(module.image.halves().size(), 3U);
  for (const Page page : {Page::kLower, Page::k00, Page::k03}) {
    ExpectSame(module.image, memory.image(), page);
  }
}

TEST(LiveReading, CmisWithBanksAndVdm) {
  const Memory memory = Osfp();
  const Responder responder(memory.image());
  const LiveModule module = Read(responder);
  ASSERT_FALSE(module.error) << module.error->text;
  EXPECT_TRUE(module.remarks.empty()) << module.remarks.front();
  EXPECT_EQ(module.image.halves().size(), memory.image().halves().size());
  for (const ModuleImage::Half& half : memory.image().halves()) {
    ExpectSame(module.image, memory.image(), half.page());
  }
}

TEST(LiveReading, SfpModulesHaveTwoDevices) {
  const Memory memory = Sfp();
  const Responder responder(memory.image());
  const LiveModule module = Read(responder);
  ASSERT_FALSE(module.error) << module.error->text;
  EXPECT_FALSE(module.image.Has(Page::kLower));
  ExpectSame(module.image, memory.image(), Page::kA0);
  ExpectSame(module.image, memory.image(), Page::kA2);
}

TEST(LiveReading, EachPartIsRequestedOnceAndInPiecesOf128Bytes) {
  const Memory memory = Osfp();
  const Responder responder(memory.image());
  Read(responder);
  std::set<std::array<unsigned, 4>> parts;
  const std::vector<Received> requests = responder.Requests();
  ASSERT_EQ(requests.size(), 1 + memory.image().halves().size());
  for (std::size_t i = 1; i < requests.size(); ++i) {
    const Received& request = requests[i];
    EXPECT_EQ(request.length, 128U);
    EXPECT_STREQ(request.interface, "ib0");
    const auto [part, is_new] =
        parts.insert({request.i2c_address, request.page, request.bank, request.offset});
    EXPECT_TRUE(is_new);
  }
}

// Whatever modules hold and however they answer, there are two commands, and both read.
TEST(LiveReading, NoRequestButReadingExists) {
  const Memory memories[] = {Qsfp(), Osfp(), Sfp()};
  for (const Memory& memory : memories) {
    for (const Behaviour::Kind kind : {kServe, kError, kShort, kNoData, kAcknowledge, kNoise}) {
      const Responder responder(memory.image(), {{Page::k00, {kind, 1, "no"}}});
      Read(responder);
      const std::vector<Received> requests = responder.Requests();
      ASSERT_FALSE(requests.empty());
      for (const Received& request : requests) {
        EXPECT_EQ(request.flags, NLM_F_REQUEST);
        if (request.type == GENL_ID_CTRL) {
          EXPECT_EQ(request.command, CTRL_CMD_GETFAMILY);
        } else {
          EXPECT_EQ(request.command, ETHTOOL_MSG_MODULE_EEPROM_GET);
        }
      }
    }
  }
}

TEST(LiveReading, APageThatCannotBeReadLeavesTheRest) {
  const Memory memory = Qsfp();
  const Responder responder(memory.image(), {{Page::k00, {kError, EIO, "bus is stuck"}}});
  const LiveModule module = Read(responder);
  ASSERT_FALSE(module.error);
  EXPECT_FALSE(module.image.Has(Page::k00));
  ExpectSame(module.image, memory.image(), Page::k03);
  EXPECT_EQ(module.remarks,
            std::vector<std::string>{"page 00h cannot be read: Input/output error (bus is stuck)"});
}

TEST(LiveReading, ShortAnswersKeepTheirBytes) {
  const Memory memory = Qsfp();
  const Responder responder(memory.image(), {{Page::k03, {kShort, 100}}});
  const LiveModule module = Read(responder);
  ASSERT_FALSE(module.error);
  ExpectSame(module.image, memory.image(), Page::k03, 100);
  EXPECT_EQ(module.image.At(Page::k03, 228), std::nullopt);
  EXPECT_TRUE(SaysOf(module, "only 100 of 128 bytes of page 03h were read"));
}

TEST(LiveReading, AnswersThatAreNoneCostTheirPage) {
  const Memory memory = Qsfp();
  for (const Behaviour::Kind kind : {kLong, kNoData, kAcknowledge}) {
    const Responder responder(memory.image(), {{Page::k03, {kind, 4}}});
    const LiveModule module = Read(responder);
    ASSERT_FALSE(module.error);
    EXPECT_FALSE(module.image.Has(Page::k03));
    ExpectSame(module.image, memory.image(), Page::k00);
    EXPECT_TRUE(SaysOf(module, "page 03h cannot be read: the answer holds"));
  }
}

TEST(LiveReading, AnEmptyCageHasNoModule) {
  for (const int number : {ENODEV, ENXIO}) {
    const Responder responder(Qsfp().image(), {{Page::kLower, {kError, number, "cage is empty"}}});
    const LiveModule module = Read(responder);
    ASSERT_TRUE(module.error);
    EXPECT_EQ(module.error->kind, ReadError::Kind::kNoModule);
    EXPECT_NE(module.error->text.find("(cage is empty)"), std::string::npos);
  }
  Memory ones;
  ones.Put(Page::kLower, 0, std::vector<unsigned>(128, 0xFF));
  const Responder responder(ones.image());
  EXPECT_EQ(Read(responder).error->kind, ReadError::Kind::kNoModule);
}

TEST(LiveReading, ErrorsOfTheWholePort) {
  const struct {
    Behaviour behaviour;
    ReadError::Kind kind;
    const char* text;
  } cases[] = {
      {{kErrorAtName, ENODEV, "no device matches name"},
       ReadError::Kind::kPort,
       "No such device (no device matches name)"},
      {{kError, EOPNOTSUPP}, ReadError::Kind::kNotSupported, "Operation not supported"},
      {{kError, EPERM}, ReadError::Kind::kNoPermission, "Operation not permitted"},
      {{kError, 0x7FFFFFFF}, ReadError::Kind::kPage, "Protocol error"},
      {{kError, EIO, "a\tb"}, ReadError::Kind::kPage, "Input/output error (a\tb)"},
  };
  for (const auto& expected : cases) {
    const Responder responder(Qsfp().image(), {{Page::kLower, expected.behaviour}});
    const LiveModule module = Read(responder);
    ASSERT_TRUE(module.error) << expected.text;
    EXPECT_EQ(module.error->kind, expected.kind);
    EXPECT_EQ(module.error->text, expected.text);
  }
}

TEST(LiveReading, AKernelWithoutTheInterfaceLeavesTheOtherWays) {
  const Responder responder(Qsfp().image(), {}, {kError, ENOENT});
  EXPECT_EQ(Read(responder).error->kind, ReadError::Kind::kNotSupported);
}

TEST(LiveReading, AModuleThatVanishesHalfWayIsAnError) {
  const Responder responder(Osfp().image(), {{Page::k02, {kError, ENODEV, "unplugged"}}});
  const LiveModule module = Read(responder);
  ASSERT_TRUE(module.error);
  EXPECT_EQ(module.error->kind, ReadError::Kind::kNoModule);
}

TEST(LiveReading, EveryRequestHasATimeLimit) {
  for (const Page page : {Page::kLower, Page::k00}) {
    for (const Behaviour& behaviour : {Behaviour{kSilent}, Behaviour{kLate, 60000}}) {
      const Responder responder(Qsfp().image(), {{page, behaviour}});
      const auto begin = std::chrono::steady_clock::now();
      const LiveModule module = Read(responder, kModuleLimit, kShortLimit);
      EXPECT_LT(std::chrono::steady_clock::now() - begin, kModuleLimit);
      ASSERT_TRUE(module.error);
      EXPECT_EQ(module.error->kind, ReadError::Kind::kTimeLimit);
    }
  }
}

TEST(LiveReading, SoHasAModule) {
  std::map<Page, Behaviour> late;
  const Memory memory = Osfp();
  for (const ModuleImage::Half& half : memory.image().halves()) late[half.page()] = {kLate, 100};
  const Responder responder(memory.image(), late);
  const LiveModule module = Read(responder, milliseconds(350));
  ASSERT_TRUE(module.error);
  EXPECT_EQ(module.error->kind, ReadError::Kind::kTimeLimit);
  EXPECT_LE(responder.Requests().size(), 6U);
}

// The kernel answers within the call that sends a request, so that a reader can block.
TEST(LiveReading, AReaderThatBlocksIsGivenUp) {
  class Blocked : public cli::PageReader {
   public:
    explicit Blocked(std::future<void> answer) : answer_(std::move(answer)) {}
    cli::PageAnswer Read(const cli::PageRequest& /*request*/) override {
      answer_.wait();
      return {{1}, std::nullopt};
    }

   private:
    std::future<void> answer_;
  };
  std::promise<void> answer;
  const auto blocked = std::make_shared<Blocked>(answer.get_future());
  const std::weak_ptr<Blocked> is_busy = blocked;
  {
    const auto timed = cli::MakeTimedReader(blocked, milliseconds(50));
    EXPECT_EQ(timed->Read({}).error->kind, ReadError::Kind::kTimeLimit);
    EXPECT_EQ(timed->Read({}).error->kind, ReadError::Kind::kTimeLimit);
  }
  EXPECT_GT(is_busy.use_count(), 1);
  answer.set_value();
  const auto end = std::chrono::steady_clock::now() + kRequestLimit;
  while (is_busy.use_count() > 1 && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(milliseconds(10));
  }
  EXPECT_EQ(is_busy.use_count(), 1);
}

// The request runs in a thread, out of which an exception would end the program.
TEST(LiveReading, AReaderThatThrowsFails) {
  class Throwing : public cli::PageReader {
   public:
    cli::PageAnswer Read(const cli::PageRequest& /*request*/) override { throw std::bad_alloc(); }
  };
  auto reader = std::make_shared<Throwing>();
  const std::weak_ptr<Throwing> in_use = reader;
  const auto timed = cli::MakeTimedReader(std::move(reader), kRequestLimit);
  for (int i = 0; i < 2; ++i) {
    const cli::PageAnswer answer = timed->Read({});
    EXPECT_TRUE(answer.bytes.empty());
    ASSERT_TRUE(answer.error);
    EXPECT_EQ(answer.error->kind, ReadError::Kind::kPort);
    EXPECT_EQ(answer.error->text, std::string("request failed: ") + std::bad_alloc().what());
    EXPECT_EQ(in_use.use_count(), 1);  // that of `timed`
  }
}

TEST(LiveReading, AReaderIsNotInUseAfterItsAnswer) {
  class Immediate : public cli::PageReader {
   public:
    cli::PageAnswer Read(const cli::PageRequest& /*request*/) override {
      return {{1}, std::nullopt};
    }
  };
  for (int i = 0; i < 2000; ++i) {
    auto reader = std::make_shared<Immediate>();
    const std::weak_ptr<Immediate> in_use = reader;
    const auto timed = cli::MakeTimedReader(std::move(reader), kRequestLimit);
    EXPECT_EQ(timed->Read({}).bytes.size(), 1U);
    ASSERT_EQ(in_use.use_count(), 1);  // that of `timed`
  }
}

TEST(LiveReading, StrangeDatagramsAreNotTheAnswer) {
  const Memory memory = Qsfp();
  const Responder responder(memory.image(), {{Page::k00, {kNoise}}});
  const LiveModule module = Read(responder);
  ASSERT_FALSE(module.error) << module.error->text;
  EXPECT_TRUE(module.remarks.empty());
  ExpectSame(module.image, memory.image(), Page::k00);
}

TEST(LiveReading, RandomDatagramsEndWithAnErrorOrARemark) {
  const Responder responder(Qsfp().image(), {{Page::k00, {kRandom, 400}}});
  const LiveModule module = Read(responder, kModuleLimit, kShortLimit);
  EXPECT_TRUE(module.error || !module.remarks.empty());
}

TEST(LiveReading, AnswersThatAreCutOffAreNoAnswers) {
  const Responder responder(Qsfp().image(), {{Page::k00, {kCutOff, 60}}});
  EXPECT_EQ(Read(responder, kModuleLimit, kShortLimit).error->kind, ReadError::Kind::kTimeLimit);
}

// 32 banks of everything, which the responder has not.
TEST(LiveReading, AModuleThatLiesAboutItsPagesEnds) {
  Memory memory = Osfp();
  memory.Put(Page::kLower, 1, {0x54}).Put(Page::k01, 142, {0xFF}).Put(Page::k01, 155, {0xFF});
  memory.Put(Page::k01, 174, {0xFF});
  const Responder responder(memory.image());
  const LiveModule module = Read(responder);
  ASSERT_FALSE(module.error) << module.error->text;
  ExpectSame(module.image, memory.image(), PageOf(0x11, 1));
  EXPECT_LE(responder.Requests().size(), 1 + cable_info::kMaxMemoryParts);
  EXPECT_FALSE(module.remarks.empty());
}

TEST(LiveReading, EepromFilesHaveTheLinearLayout) {
  const std::string path = testing::TempDir() + "eeprom.bin";
  Memory memory = Qsfp();
  std::string content(640, '\0');
  for (unsigned i = 0; i < 128; ++i) {
    content[i] = static_cast<char>(*memory.image().At(Page::kLower, i));
    content[128 + i] = static_cast<char>(*memory.image().At(Page::k00, 128 + i));
    content[512 + i] = static_cast<char>(*memory.image().At(Page::k03, 128 + i));
  }
  std::ofstream(path, std::ios::binary) << content;
  LiveModule module = ReadLiveModule(*cli::MakeEepromFileReader(path), kModuleLimit);
  ASSERT_FALSE(module.error);
  for (const Page page : {Page::kLower, Page::k00, Page::k03}) {
    ExpectSame(module.image, memory.image(), page);
  }
  std::ofstream(path, std::ios::binary) << content.substr(0, 500);
  module = ReadLiveModule(*cli::MakeEepromFileReader(path), kModuleLimit);
  EXPECT_EQ(module.remarks,
            std::vector<std::string>{"page 03h cannot be read: the file ends before it"});
}

TEST(LiveReading, TheLinearLayoutOfSfpModulesHasA2AfterA0) {
  const std::string path = testing::TempDir() + "sfp.bin";
  const Memory memory = Sfp();
  std::string content;
  for (const Page page : {Page::kA0, Page::kA2}) {
    for (unsigned i = 0; i < 256; ++i) content += static_cast<char>(*memory.image().At(page, i));
  }
  std::ofstream(path, std::ios::binary) << content;
  const LiveModule module = ReadLiveModule(*cli::MakeEepromFileReader(path), kModuleLimit);
  ASSERT_FALSE(module.error);
  ExpectSame(module.image, memory.image(), Page::kA2);
}

// The answer of this machine's loopback interface, which has no module. Without the privilege, the
// answer says so.
TEST(LiveReading, TheKernelRefusesTheLoopbackInterface) {
  const auto refusals = {ReadError::Kind::kNotSupported, ReadError::Kind::kNoPermission};
  const LiveModule module =
      ReadLiveModule(*cli::MakeNetlinkReader("lo", kModuleLimit), kModuleLimit);
  ASSERT_TRUE(module.error);
  EXPECT_NE(std::find(refusals.begin(), refusals.end(), module.error->kind), refusals.end())
      << module.error->text;
  const LiveModule older = ReadLiveModule(*cli::MakeIoctlReader("lo"), kModuleLimit);
  ASSERT_TRUE(older.error);
  EXPECT_NE(std::find(refusals.begin(), refusals.end(), older.error->kind), refusals.end())
      << older.error->text;
}

// The bytes of the request for 128 bytes of page 11h of bank 1, by linux/ethtool_netlink.h.
TEST(LiveReading, TheRequestIsThatOfTheKernel) {
  cli::PageRequest request;
  request.page = 0x11;
  request.bank = 1;
  request.offset = 128;
  const std::vector<std::uint8_t> message = cli::ModuleRequest(0x15, 7, "ib0", request);
  const std::vector<std::uint8_t> expected = {
      72, 0, 0, 0,    0x15, 0, 1, 0, 7,   0,   0,   0, 0, 0, 0, 0,  // header
      31, 1, 0, 0,                                                  // command, version
      12, 0, 1, 0x80, 8,    0, 2, 0, 'i', 'b', '0', 0,              // header: name of the interface
      8,  0, 2, 0,    128,  0, 0, 0,                                // offset
      8,  0, 3, 0,    128,  0, 0, 0,                                // length
      5,  0, 4, 0,    0x11, 0, 0, 0,                                // page
      5,  0, 5, 0,    1,    0, 0, 0,                                // bank
      5,  0, 6, 0,    0x50, 0, 0, 0,                                // I2C address
  };
  EXPECT_EQ(message, expected);
}

}  // namespace

#include "cable_info/text/report_lines.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdint>
#include <ios>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <vector>

#include "cable_info/text/flushed_lines.h"
#include "test_support.h"
#include "text/number_samples.h"

namespace cable_info::text {
namespace {

using test::FlushCounter;
using test::PrintfFixed3;

TEST(BufferedReport, WritesEveryFormOfLine) {
  BufferedReport lines;
  lines.Text("Text: ", "a, \"b\"");
  lines.Decimal("Decimal: ", 4294967295U);
  lines.Decimal("Unit: ", 7, " m");
  lines.Hex("Hex: ", 0x1F, 4);
  lines.Line(
      "Line: ", [](TextBuffer& out, int value) { out.AppendDecimal(value); }, -7);
  lines.LaneText("RX# Power: ", 8, "low");
  lines.LanePower("TX# Power: ", 1, 0.523, -2.815);
  lines.LaneBias("TX# Bias: ", 9, 7.25);
  lines.LaneText("#: ", 2, "");
  EXPECT_EQ(lines.view(),
            "Text: a, \"b\"\nDecimal: 4294967295\nUnit: 7 m\nHex: 0x001f\nLine: -7\n"
            "RX8 Power: low\nTX1 Power: 0.523 mW, -2.815 dBm\nTX9 Bias: 7.250 mA\n2: \n");
}

TEST(ReportLines, ReserveEnoughForEveryLineAtEveryFillLevel) {
  const std::string longest = PrintfFixed3(-DBL_MAX);
  for (std::size_t size = 3400; size <= 4100; ++size) {
    const std::string text(size, 'x');
    const auto expect_after = [&](const std::string& line, auto write) {
      const std::string expected = text + '\n' + line + '\n';
      BufferedReport block;
      block.Text("", text);
      write(block);
      EXPECT_EQ(block.view(), expected);
      std::ostringstream os;
      FlushedReport lines(os);
      lines.Text("", text);
      write(lines);
      lines.Finish();
      EXPECT_EQ(os.str(), expected);
    };
    expect_after("Text: text", [](auto& lines) { lines.Text("Text: ", "text"); });
    expect_after("Decimal: 4294967295 m",
                 [](auto& lines) { lines.Decimal("Decimal: ", UINT32_MAX, " m"); });
    expect_after("Hex: 0xffffffff", [](auto& lines) { lines.Hex("Hex: ", UINT32_MAX, 2); });
    expect_after("3: text", [](auto& lines) { lines.LaneText("#: ", 3, "text"); });
    expect_after("3: " + longest + " mW, " + longest + " dBm",
                 [](auto& lines) { lines.LanePower("#: ", 3, -DBL_MAX, -DBL_MAX); });
    expect_after("3: " + longest + " mA", [](auto& lines) { lines.LaneBias("#: ", 3, -DBL_MAX); });
  }
}

// Records the calls that a stream makes to its buffer. Call number `bad_call` fails.
class FaultyBuffer : public std::streambuf {
 public:
  enum class Fault { kReturns, kThrows };

  FaultyBuffer(std::size_t bad_call, Fault fault) : bad_call_(bad_call), fault_(fault) {}
  const std::vector<std::string>& calls() const { return calls_; }

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    return Fails(std::string(text, static_cast<std::size_t>(size))) ? size - 1 : size;
  }
  int sync() override { return Fails("flush") ? -1 : 0; }

 private:
  bool Fails(const std::string& call) {
    calls_.push_back(call);
    const bool fails = calls_.size() == bad_call_;
    if (fails && fault_ == Fault::kThrows) throw std::range_error("buffer");
    return fails;
  }

  std::size_t bad_call_;
  Fault fault_;
  std::vector<std::string> calls_;
};

// The outcome of writing lines to a faulty buffer.
struct Outcome {
  std::vector<std::string> calls;
  std::ios::iostate state;
  std::string thrown;

  bool operator==(const Outcome&) const = default;
};

template <typename WriteLines>
Outcome OutcomeOf(const WriteLines& write_lines, std::size_t bad_call, FaultyBuffer::Fault fault,
                  std::ios::iostate exceptions) {
  FaultyBuffer buffer(bad_call, fault);
  std::ostream os(&buffer);
  os.exceptions(exceptions);
  std::string thrown;
  try {
    write_lines(os);
  } catch (const std::ios_base::failure&) {
    thrown = "failure of the stream";
  } catch (const std::range_error& error) {
    thrown = error.what();
  }
  return {buffer.calls(), os.rdstate(), thrown};
}

TEST(FlushedReport, TreatsStreamsAsWriteAndFlushOfEachLineDo) {
  constexpr std::size_t kLines = 70;
  const std::string label(100, 'L');  // more lines than fit the buffer
  const auto plainly = [&](std::ostream& os) {
    for (std::size_t i = 0; i < kLines; ++i) {
      const std::string line = label + std::to_string(i) + "\n";
      os.write(line.data(), static_cast<std::streamsize>(line.size()));
      os.flush();
    }
  };
  const auto fast = [&](std::ostream& os) {
    FlushedReport lines(os);
    for (std::uint32_t i = 0; i < kLines; ++i) lines.Decimal(label, i);
    lines.Finish();
  };
  for (const auto fault : {FaultyBuffer::Fault::kReturns, FaultyBuffer::Fault::kThrows}) {
    for (const auto exceptions : {std::ios::goodbit, std::ios::badbit, std::ios::failbit,
                                  std::ios::badbit | std::ios::failbit}) {
      for (std::size_t bad_call = 0; bad_call <= 2 * kLines; ++bad_call) {
        const Outcome expected = OutcomeOf(plainly, bad_call, fault, exceptions);
        EXPECT_EQ(expected.calls.size(), bad_call == 0 ? 2 * kLines : bad_call);
        EXPECT_TRUE(OutcomeOf(fast, bad_call, fault, exceptions) == expected) << bad_call;
      }
    }
  }
}

TEST(FlushedReport, WritesLinesOfAnyLength) {
  const auto append = [](TextBuffer& out, std::string_view text) { out.Append(text); };
  for (const std::size_t size :
       {0U, 1U, 1000U, 4000U, 4070U, 4080U, 4088U, 4096U, 5000U, 100000U}) {
    const std::string text(size, 'x');
    FlushCounter buffer;
    std::ostream os(&buffer);
    FlushedReport lines(os);
    std::string expected;
    for (int i = 0; i < 3; ++i) {
      lines.Text("Text: ", text);
      lines.Line("Line: ", append, std::string_view(text));
      lines.Decimal("Decimal: ", 7);
      expected += "Text: " + text + "\nLine: " + text + "\nDecimal: 7\n";
    }
    lines.Finish();
    EXPECT_TRUE(buffer.str() == expected) << size;
    EXPECT_EQ(buffer.flushes(), 9) << size;
    lines.Finish();
    EXPECT_EQ(buffer.flushes(), 9) << size;
  }
}

TEST(FlushedReport, WritesEveryFormOfLine) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  FlushedReport lines(os);
  lines.Hex("Hex: ", 0x1F, 4);
  lines.LaneText("RX# Power: ", 8, "low");
  lines.LanePower("TX# Power: ", 1, 0.523, -2.815);
  lines.LanePower("TX# Power: ", 2, 0.523, -2.5);
  lines.LaneBias("TX# Bias: ", 9, 7.25);
  lines.LaneBias("TX# Bias: ", 1, 7.25);
  lines.Finish();
  EXPECT_EQ(buffer.str(),
            "Hex: 0x001f\nRX8 Power: low\nTX1 Power: 0.523 mW, -2.815 dBm\n"
            "TX2 Power: 0.523 mW, -2.500 dBm\nTX9 Bias: 7.250 mA\nTX1 Bias: 7.250 mA\n");
}

TEST(FlushedReport, WritesNothingToABadStream) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  os.setstate(std::ios::failbit);
  FlushedReport lines(os);
  lines.Text("A: ", "1");
  lines.Finish();
  EXPECT_EQ(buffer.str(), "");
  EXPECT_EQ(buffer.flushes(), 0);
  std::ostream nowhere(nullptr);
  FlushedReport lost(nowhere);
  lost.Text("A: ", "1");
  lost.Finish();
  EXPECT_TRUE(nowhere.bad());
}

}  // namespace
}  // namespace cable_info::text

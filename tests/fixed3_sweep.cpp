// Compares the three-decimal numbers of the library with those of the C library for many more
// values than a unit test: fixed3_sweep [floats COUNT] [doubles COUNT]. There are 4294967296
// floats; fewer are distributed evenly over the bit patterns. Without arguments it compares all
// floats.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string_view>
#include <thread>
#include <vector>

#include "cable_info/text/text_buffer.h"

namespace {

constexpr std::uint64_t kAllFloats = std::uint64_t{1} << 32;

// The size of the longest number with three decimals, and the NUL after it.
constexpr std::size_t kMaxSize = std::numeric_limits<double>::max_exponent10 + 8;

bool AreEqual(double value, std::string_view expected, std::string_view found) {
  if (expected == found) return true;
  std::fprintf(stderr, "%a: expected %.*s, found %.*s\n", value, static_cast<int>(expected.size()),
               expected.data(), static_cast<int>(found.size()), found.data());
  return false;
}

bool NumberIsAsPrintfWritesIt(double value) {
  char expected[kMaxSize];
  const int length = std::snprintf(expected, sizeof(expected), "%.3f", value);
  cable_info::text::TextBuffer text;
  text.AppendFixed3(value);
  return AreEqual(value, {expected, static_cast<std::size_t>(length)}, text.view());
}

// The float with the bit pattern number `index` of `count` evenly distributed ones.
double FloatAt(std::uint64_t index, std::uint64_t count) {
  const auto bits = static_cast<std::uint32_t>(index * (kAllFloats / count));
  return static_cast<double>(std::bit_cast<float>(bits));
}

// Magnitudes from far below a thousandth to above the largest integers that a double represents
// exactly, equally distributed; occasionally any double.
double RandomDouble(std::mt19937_64& random) {
  constexpr std::uint64_t kExponentBits = std::uint64_t{0x7FF} << 52;
  constexpr std::uint64_t kLowestExponent = 1023 - 64;
  constexpr std::uint64_t kExponents = 128;
  constexpr std::uint64_t kAnyEvery = 64;
  const std::uint64_t bits = random();
  const std::uint64_t choice = random();
  if (choice % kAnyEvery == 0) return std::bit_cast<double>(bits);
  const std::uint64_t exponent = kLowestExponent + choice / kAnyEvery % kExponents;
  return std::bit_cast<double>((bits & ~kExponentBits) | exponent << 52);
}

// True if `check(first, last)` is true for all parts of the values, which threads check in
// parallel.
bool Share(std::uint64_t count, const std::function<bool(std::uint64_t, std::uint64_t)>& check) {
  const std::uint64_t shares = std::max(1U, std::thread::hardware_concurrency());
  std::vector<char> good(shares, 0);
  std::vector<std::thread> threads;
  for (std::uint64_t i = 0; i < shares; ++i) {
    threads.emplace_back(
        [&, i] { good[i] = check(count * i / shares, count * (i + 1) / shares) ? 1 : 0; });
  }
  for (std::thread& thread : threads) thread.join();
  return std::count(good.begin(), good.end(), 1) == static_cast<std::ptrdiff_t>(shares);
}

bool CheckFloats(std::uint64_t count) {
  return Share(count, [=](std::uint64_t first, std::uint64_t last) {
    for (std::uint64_t i = first; i < last; ++i) {
      if (!NumberIsAsPrintfWritesIt(FloatAt(i, count))) return false;
    }
    return true;
  });
}

bool CheckDoubles(std::uint64_t count) {
  return Share(count, [](std::uint64_t first, std::uint64_t last) {
    std::mt19937_64 random(first);
    for (std::uint64_t i = first; i < last; ++i) {
      if (!NumberIsAsPrintfWritesIt(RandomDouble(random))) return false;
    }
    return true;
  });
}

bool Check(std::string_view kind, std::uint64_t count) {
  const bool good = kind == "floats" ? CheckFloats(count) : CheckDoubles(count);
  std::printf("%llu %.*s: %s\n", static_cast<unsigned long long>(count),
              static_cast<int>(kind.size()), kind.data(),
              good ? "all as printf writes them" : "not all as printf writes them");
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) return Check("floats", kAllFloats) ? 0 : 1;
  bool good = argc % 2 == 1;
  for (int i = 1; good && i + 1 < argc; i += 2) {
    const std::string_view kind = argv[i];
    const std::string_view number = argv[i + 1];
    std::uint64_t count = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), count);
    good = (kind == "floats" || kind == "doubles") && result.ec == std::errc() && count > 0 &&
           count <= kAllFloats && Check(kind, count);
  }
  if (!good) std::fputs("usage: fixed3_sweep [floats COUNT] [doubles COUNT]\n", stderr);
  return good ? 0 : 1;
}

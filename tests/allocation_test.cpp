#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <ostream>
#include <streambuf>

#include "realistic_ports.h"

namespace {

std::size_t allocations = 0;

}  // namespace

// Inlined, gcc would take a deletion for a mismatched `free`.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

// The default one need not end in the operator above: not with the address sanitizer.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace cable_info::test {
namespace {

// Discards any text.
class Sink : public std::streambuf {
 public:
  std::size_t size() const { return size_; }

 protected:
  std::streamsize xsputn(const char* /*text*/, std::streamsize count) override {
    size_ += static_cast<std::size_t>(count);
    return count;
  }
  int_type overflow(int_type c) override {
    ++size_;
    return traits_type::not_eof(c);
  }

 private:
  std::size_t size_ = 0;
};

TEST(Allocation, IsNotNeededForRowsAndReportsOfUsualSize) {
  for (const RealisticPort& realistic : RealisticPorts()) {
    CombinedCableInfo port;
    realistic.fill(port);
    Sink sink;
    std::ostream os(&sink);
    const std::size_t before = allocations;
    port.ToCSVStream(os);
    port.ToFileStream(os);
    EXPECT_EQ(allocations, before) << realistic.name;
    EXPECT_GT(sink.size(), 1000U);
  }
}

TEST(Allocation, IsCounted) {
  const std::size_t before = allocations;
  void* const memory = ::operator new(1);  // unlike a new-expression, never optimized away
  EXPECT_EQ(allocations, before + 1);
  ::operator delete(memory);
}

}  // namespace
}  // namespace cable_info::test

// No header makes a reader take much memory: this program counts what is asked of the allocator.

#include <atomic>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"
#include "symsrv/pdb_identity.h"
#include "symsrv/verify.h"

namespace {

std::atomic<std::size_t> g_largest{0};

}  // namespace

// NOLINTBEGIN(misc-definitions-in-headers)
void* operator new(std::size_t size) {
  if (size > g_largest.load())
    g_largest = size;
  if (void* memory = std::malloc(size == 0 ? 1 : size))
    return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
// NOLINTEND(misc-definitions-in-headers)

namespace symsrv_1_0::internal {
namespace {

constexpr std::size_t kLimit = 1024 * 1024;

/// Says that it has every size and is full of one byte.
class EndlessSource final : public IByteSource {
 public:
  EndlessSource(std::string head, char rest) : m_head(std::move(head)), m_rest(rest) {}

  std::uint64_t size() const override { return std::uint64_t{1} << 62; }
  bool read(std::uint64_t offset, void* to, std::size_t count) override {
    for (std::size_t i = 0; i < count; ++i)
      static_cast<char*>(to)[i] =
          offset + i < m_head.size() ? m_head[static_cast<std::size_t>(offset) + i] : m_rest;
    return true;
  }

 private:
  std::string m_head;
  char m_rest;
};

TEST(HostileSizes, MakeNoReaderTakeMuchMemory) {
  const std::string seeds[] = {makePe(true, {rsdsRecord("a.pdb")}).data(),
                               makePe(false, {nb10Record("a.pdb", 1, 1)}).data(),
                               makePdb().data(),
                               makeElf({.debugLink = "a.debug"}).data(),
                               makeElf({.is64Bit = false}).data()};
  for (const std::string& seed : seeds)
    for (std::size_t at = 4; at + 4 <= seed.size(); at += 2) {
      std::string head = seed;
      head.replace(at, 4, "\xFF\xFF\xFF\x7F");
      EndlessSource source(std::move(head), at % 4 ? '\x41' : '\0');
      g_largest = 0;
      const SoughtResult sought = soughtFileOf(source, "x.dll");
      static_cast<void>(readPdbIdentity(source));
      static_cast<void>(readPortablePdbIdentity(source));
      ASSERT_LE(g_largest.load(), kLimit) << at;
    }
}

TEST(HostileSizes, AreCountedAtAll) {
  g_largest = 0;
  std::string text(kLimit + 1, 'x');
  EXPECT_GT(g_largest.load(), kLimit) << text.size();
}

}  // namespace
}  // namespace symsrv_1_0::internal

// MD5 by the system's cryptographic primitives.

#include <windows.h>
#include <bcrypt.h>
#include <new>

#include "paku/md5.h"

namespace PAKU_3_1::internal {

namespace {

constexpr NTSTATUS kNoMemory = static_cast<NTSTATUS>(0xC0000017);

}  // namespace

struct Md5::State {
  BCRYPT_ALG_HANDLE algorithm = nullptr;
  BCRYPT_HASH_HANDLE hash = nullptr;
  bool works = false;

  State() {
    NTSTATUS status = BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_MD5_ALGORITHM, nullptr, 0);
    if (status >= 0)
      status = BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0);
    works = status >= 0;
    if (status == kNoMemory) {
      close();
      throw std::bad_alloc();
    }
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() { close(); }

  void close() const {
    if (hash)
      BCryptDestroyHash(hash);
    if (algorithm)
      BCryptCloseAlgorithmProvider(algorithm, 0);
  }
};

Md5::Md5() : m_state(std::make_unique<State>()) {}

Md5::~Md5() = default;

void Md5::add(const void* bytes, std::size_t count) {
  // The call takes its input as if it might change it.
  auto* const input = static_cast<unsigned char*>(const_cast<void*>(bytes));
  m_state->works =
      m_state->works && BCryptHashData(m_state->hash, input, static_cast<ULONG>(count), 0) >= 0;
}

std::wstring Md5::finish() {
  unsigned char digest[16];
  if (!m_state->works || BCryptFinishHash(m_state->hash, digest, sizeof digest, 0) < 0)
    return {};
  return digestText(digest, sizeof digest);
}

}  // namespace PAKU_3_1::internal

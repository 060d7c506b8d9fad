// The MD5 of a stream of bytes, computed by the system's cryptographic library.

#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace PAKU_3_1::internal {

/// Returns two lower-case hexadecimal digits for each byte.
std::wstring digestText(const unsigned char* digest, std::size_t length);

class Md5 final {
 public:
  Md5();
  ~Md5();

  Md5(const Md5&) = delete;
  Md5& operator=(const Md5&) = delete;

  void add(const void* bytes, std::size_t count);

  /// Returns 32 lower-case hexadecimal digits. Empty when the library would not compute it.
  std::wstring finish();

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace PAKU_3_1::internal

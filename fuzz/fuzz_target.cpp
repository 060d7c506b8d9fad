// One fuzzer: the function that the build names, for libFuzzer or for run_corpus.cpp.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include QUIVER_FUZZ_HEADER

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  QUIVER_FUZZ_ENTRY(std::string_view(reinterpret_cast<const char*>(bytes), count));
  return 0;
}

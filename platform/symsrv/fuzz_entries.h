// One function per reader of foreign bytes: takes anything, ends soon, harms nothing. Fuzzers call
// these, and so do tests with the cases that fuzzers found.

#pragma once

#include <string_view>

namespace symsrv_1_0::internal {

void fuzzPe(std::string_view bytes);
void fuzzPdb(std::string_view bytes);
void fuzzElf(std::string_view bytes);
void fuzzChain(std::string_view bytes);
void fuzzPointerFile(std::string_view bytes);

}  // namespace symsrv_1_0::internal

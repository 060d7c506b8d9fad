// The one function that leaves the module.

#include <cstdio>
#include <string>

#include "paku/environment.h"
#include "symsrv/helper.h"

#include "quiver/export.h"

namespace {

using namespace symsrv_1_0;

void writeLine(const std::string& line) {
  // In one piece: other threads write too.
  const std::string whole = "[quiver] symbols: " + line + "\n";
  std::fwrite(whole.data(), 1, whole.size(), stderr);
}

}  // namespace

extern "C" QV_API ISymSrvHelper* quiver_symsrv_create(std::int32_t interfaceVersion) {
  if (interfaceVersion != kInterfaceVersion)
    return nullptr;
  internal::Report report;
  if (!PAKU_3_1::environmentValue(L"QUIVER_SYMBOL_LOG").empty())
    report = writeLine;
  return new internal::SymSrvHelper(
      internal::settingsFromEnvironment(), internal::makeTransport(), std::move(report));
}

#include "find_command.h"

#include "lookup.h"
#include "report.h"
#include "symbol_servers.h"

namespace quiver_tool {

Answer runFind(const FindOptions& options) {
  applySymbolOptions(options, options.isVerbose && options.category == QV_2_9::scSymbolFiles);
  const Outcome outcome = lookUp(options);
  if (outcome.isInterrupted)
    return {kExitInterrupted, "", "quiver: stopped while a symbol file was downloaded\n"};
  const Report report = makeReport(options, outcome);
  return {outcome.found ? kExitFound : kExitNotFound, report.out, report.err};
}

}  // namespace quiver_tool

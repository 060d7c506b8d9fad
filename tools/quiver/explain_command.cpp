#include "explain_command.h"

#include "explain_advice.h"
#include "explain_report.h"
#include "lookup.h"
#include "report.h"
#include "symbol_servers.h"

namespace quiver_tool {

Answer runExplain(const FindOptions& options) {
  const bool areServersOff = isAnyServerTurnedOff(options);
  applySymbolOptions(options, false);
  Story story;
  const Outcome outcome = lookUp(options, &story);
  if (outcome.isInterrupted)
    return {kExitInterrupted, "", "quiver: stopped while a symbol file was downloaded\n"};
  const std::vector<std::string> advice = adviceFor(options, outcome, story, areServersOff);
  const auto report = options.isJson ? storyJson : storyText;
  return {outcome.found ? kExitFound : kExitNotFound,
          report(options, outcome, story, advice),
          archivedLine(outcome)};
}

}  // namespace quiver_tool

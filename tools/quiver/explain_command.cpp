#include "explain_command.h"

#include "explain_advice.h"
#include "explain_report.h"
#include "lookup.h"
#include "symbol_servers.h"

namespace quiver_tool {

Answer runExplain(const FindOptions& options) {
  applySymbolOptions(options, false);
  Story story;
  const Outcome outcome = lookUp(options, &story);
  if (outcome.isInterrupted)
    return {kExitInterrupted, "", "quiver: stopped while a symbol file was downloaded\n"};
  const std::vector<std::string> advice = adviceFor(options, outcome, story);
  const auto report = options.isJson ? storyJson : storyText;
  return {outcome.found ? kExitFound : kExitNotFound, report(options, outcome, story, advice), ""};
}

}  // namespace quiver_tool

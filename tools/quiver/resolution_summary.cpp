#include "resolution_summary.h"

#include <cstddef>
#include <vector>

#include "text_encoding.h"
#include "text_table.h"
#include "words.h"

namespace quiver_tool {
namespace {

using Row = std::vector<std::string>;

void count(const ResolvedFile& file, KindSummary& kind) {
  ++kind.files;
  if (file.state == FileState::NotTried)
    ++kind.notTried;
  if (file.state == FileState::NotFound) {
    ++kind.notFound;
    ++kind.missed[missReason(file)];
  }
  if (file.state != FileState::Found)
    return;
  ++kind.found;
  StepCount& step = kind.foundBy[file.found->step];
  ++(file.found->confidence == 0 ? step.confirmed : step.notContradicted);
}

std::string confidenceText(const StepCount& step) {
  if (step.notContradicted == 0)
    return "confirmed";
  if (step.confirmed == 0)
    return "not contradicted";
  return std::to_string(step.confirmed) + " confirmed, " + std::to_string(step.notContradicted) +
         " not contradicted";
}

void addRows(const KindSummary& kind, std::vector<Row>& rows) {
  rows.push_back({categoryTitle(kind.category),
                  std::to_string(kind.found) + " of " + std::to_string(kind.files),
                  "found"});
  for (const auto& [step, files] : kind.foundBy) {
    rows.push_back({std::string("  ") + stepWords(step),
                    std::to_string(files.confirmed + files.notContradicted),
                    confidenceText(files)});
  }
  for (const auto& [reason, files] : kind.missed)
    rows.push_back({std::string("  ") + missWords(reason), std::to_string(files), "not found"});
  if (kind.notTried > 0)
    rows.push_back({"  stopped before", std::to_string(kind.notTried), "not tried"});
}

std::string mappingLine(const UsedMapping& mapping) {
  std::string text = mapping.isLearned ? "learned " : "mapped ";
  text += escapeControls(toBytes(mapping.from)) + " -> " + escapeControls(toBytes(mapping.to));
  if (mapping.confirmations > 0) {
    text += ", confirmed " + std::to_string(mapping.confirmations) +
            (mapping.confirmations == 1 ? " time" : " times");
  }
  return text + "\n";
}

}  // namespace

std::array<KindSummary, 3> summarize(const Resolution& resolution) {
  std::array<KindSummary, 3> kinds;
  kinds[0].category = QV_2_9::scBinaryFiles;
  kinds[1].category = QV_2_9::scSymbolFiles;
  kinds[2].category = QV_2_9::scSourceFiles;
  for (const ResolvedFile& file : resolution.files)
    count(file, kinds.at(static_cast<std::size_t>(file.recorded.category) - 1));
  return kinds;
}

std::string summaryText(const Resolution& resolution) {
  std::vector<Row> rows;
  for (const KindSummary& kind : summarize(resolution)) {
    if (kind.files > 0)
      addRows(kind, rows);
  }
  std::string text = alignedTable(rows);
  for (const UsedMapping& mapping : resolution.mappings) text += mappingLine(mapping);
  return text;
}

}  // namespace quiver_tool

#include "resolve_run.h"

#include <algorithm>
#include <exception>

#include "output_file.h"
#include "recorded_manifest.h"
#include "report.h"
#include "resolution_json.h"
#include "resolution_summary.h"
#include "resolve_progress.h"
#include "resolve_report.h"
#include "resolver.h"
#include "standard_streams.h"
#include "symbol_servers.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

constexpr int kIndent = 2;

std::string line(const std::string& text) {
  return "quiver: " + escapeControls(text) + "\n";
}

// Empty when there is no reason.
std::string reportComplaint(const ResolveOptions& options, const std::string& reason) {
  return reason.empty()
             ? ""
             : line("cannot write the report " + toBytes(*options.report) + ": " + reason);
}

// Asked before the lookups, which may take long.
std::string reportObstacle(const ResolveOptions& options, const std::vector<RecordedFile>& files) {
  if (!options.report)
    return "";
  if (isSameFile(*options.report, options.manifest))
    return reportComplaint(options, "it is the manifest");
  const auto isReport = [&options](const RecordedFile& file) {
    return isSameFile(*options.report, file.name);
  };
  if (std::ranges::any_of(files, isReport))
    return reportComplaint(options, "it is a file that the manifest records");
  return reportComplaint(options, outputObstacle(*options.report));
}

// A report takes the place of nothing that was found either. Returns why it was not written.
std::string writeReport(const ResolveOptions& options, const Resolution& resolution) {
  for (const ResolvedFile& file : resolution.files) {
    if (file.found && isSameFile(*options.report, file.found->path))
      return "it is the file found for " + toBytes(file.recorded.name);
  }
  return writeOutputFile(*options.report, reportPage(resolution));
}

Resolution resolveWithProgress(const ResolveOptions& options,
                               const std::vector<RecordedFile>& files) {
  const bool isShown = isTerminalForDiagnostics();
  ResolveProgress progress(isShown ? writeDiagnostics : nullptr);
  ResolveCounts counts;
  counts.all = files.size();
  ResolveWatcher watcher;
  watcher.beforeFile = [&](const Resolution& resolution, std::size_t next) {
    counts.done = next;
    if (next > 0 && resolution.files[next - 1].state == FileState::NotFound)
      ++counts.missed;
    progress.show(counts, toBytes(files[next].name));
  };
  if (isShown) {
    watcher.writeDownloads = [&progress](const std::string& bytes) {
      progress.hide();
      writeDiagnostics(bytes);
    };
  }
  Resolution resolution = resolveFiles(options, files, watcher);
  progress.hide();
  return resolution;
}

std::string missedLines(const Resolution& resolution) {
  std::string text;
  for (const ResolvedFile& file : resolution.files) {
    if (file.state == FileState::NotFound)
      text += line(toBytes(file.recorded.name) + ": not found: " + missSentence(file));
  }
  return text;
}

std::string remarks(const ResolveOptions& options, const Resolution& resolution) {
  std::string text = options.isVerbose ? missedLines(resolution) : "";
  text += unusableLines(resolution.unusable);
  if (resolution.isInterrupted)
    text += line("stopped; the remaining files were not tried");
  return text;
}

int statusOf(const Resolution& resolution) {
  if (resolution.isInterrupted)
    return kExitInterrupted;
  for (const ResolvedFile& file : resolution.files) {
    if (file.state != FileState::Found)
      return kExitNotFound;
  }
  return kExitFound;
}

std::string output(const ResolveOptions& options, const Resolution& resolution) {
  using Json = nlohmann::ordered_json;
  if (!options.isJson)
    return summaryText(resolution);
  return resolutionDocument(resolution, true)
             .dump(kIndent, ' ', false, Json::error_handler_t::replace) +
         "\n";
}

Answer answerTo(const ResolveOptions& options, const Resolution& resolution) {
  Answer answer{statusOf(resolution), output(options, resolution), remarks(options, resolution)};
  if (!options.report)
    return answer;
  const std::string complaint = reportComplaint(options, writeReport(options, resolution));
  answer.err += complaint;
  if (!complaint.empty())
    answer.status = kExitFailure;
  return answer;
}

}  // namespace

Answer runResolve(const ResolveOptions& options) {
  RecordedManifest manifest;
  try {
    manifest = readRecordedManifest(options.manifest);
  } catch (const std::exception& error) {
    return {kExitFailure, "", line(toBytes(options.manifest) + ": " + error.what())};
  }
  if (const std::string obstacle = reportObstacle(options, manifest.files); !obstacle.empty())
    return {kExitFailure, "", obstacle};
  ResolveOptions used = options;
  if (!used.places.osType)
    used.places.osType = manifest.osType;
  applySymbolOptions(used.places, false);
  return answerTo(used, resolveWithProgress(used, manifest.files));
}

}  // namespace quiver_tool

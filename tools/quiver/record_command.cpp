#include "record_command.h"

#include <algorithm>

#include "help_texts.h"
#include "manifest_words.h"
#include "manifest_writer.h"
#include "option_texts.h"
#include "output_file.h"
#include "record_module.h"
#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

constexpr const char* kCommand = "record";

struct RecordOptions {
  std::vector<std::wstring> binaries;
  std::wstring output;
};

std::string line(const std::wstring& path, const std::string& text) {
  return "quiver: " + escapeControls(toBytes(path)) + ": " + text + "\n";
}

bool isKnown(const Manifest& manifest, const ManifestModule& module) {
  return std::ranges::any_of(manifest.modules, [&module](const ManifestModule& known) {
    return known.binary.path == module.binary.path;
  });
}

std::string counted(std::size_t count, const std::string& one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string summary(const RecordOptions& options, const Manifest& manifest) {
  std::size_t sources = 0;
  std::size_t checked = 0;
  for (const ManifestModule& module : manifest.modules) {
    sources += module.sources.size();
    checked += static_cast<std::size_t>(std::ranges::count_if(
        module.sources, [](const ManifestFile& file) { return file.md5.has_value(); }));
  }
  return escapeControls(toBytes(options.output)) + ": " +
         counted(manifest.modules.size(), "module") + ", " + counted(sources, "source") + ", " +
         std::to_string(checked) + " with MD5\n";
}

std::string complaint(const RecordOptions& options, const std::string& reason) {
  return "quiver: cannot write the manifest " + escapeControls(toBytes(options.output)) + ": " +
         reason + "\n";
}

bool isOutput(const RecordOptions& options, const ManifestFile& file) {
  return file.size && isSameFile(options.output, file.path);
}

/// A manifest takes the place of nothing that it records. Empty when it does not.
std::string recordedOutput(const RecordOptions& options, const Manifest& manifest) {
  for (const ManifestModule& module : manifest.modules) {
    if (module.symbolFile && isOutput(options, *module.symbolFile))
      return "it is the symbol file of " + toBytes(module.binary.path);
    for (const ManifestFile& source : module.sources) {
      if (isOutput(options, source))
        return "it is a source of " + toBytes(module.binary.path);
    }
  }
  return "";
}

// Asked before the work, which may take long.
std::string obstacleOf(const RecordOptions& options) {
  for (const std::wstring& binary : options.binaries) {
    if (isSameFile(options.output, binary))
      return "it is the binary that is to be recorded";
  }
  return outputObstacle(options.output);
}

Manifest recordAll(const RecordOptions& options, Answer& answer) {
  Manifest manifest;
  bool hasPe = false;
  bool hasOther = false;
  for (const std::wstring& path : options.binaries) {
    RecordedBinary binary = recordBinary(path);
    for (const std::string& remark : binary.remarks) answer.err += line(path, remark);
    if (!binary.module) {
      answer.status = kExitNotFound;
      continue;
    }
    (binary.isPe ? hasPe : hasOther) = true;
    if (!isKnown(manifest, *binary.module))
      manifest.modules.push_back(std::move(*binary.module));
  }
  if (hasPe != hasOther)
    manifest.osType = hasPe ? kSystemWindows : kSystemOther;
  return manifest;
}

Answer runRecord(const RecordOptions& options) {
  if (const std::string obstacle = obstacleOf(options); !obstacle.empty())
    return {kExitFailure, "", complaint(options, obstacle)};
  Answer answer;
  const Manifest manifest = recordAll(options, answer);
  if (manifest.modules.empty()) {
    answer.err += line(options.output, "not written, since no binary could be recorded");
    return answer;
  }
  std::string reason = recordedOutput(options, manifest);
  if (reason.empty())
    reason = writeOutputFile(options.output, manifestText(manifest));
  if (!reason.empty())
    return {kExitFailure, "", answer.err + complaint(options, reason)};
  answer.out = summary(options, manifest);
  return answer;
}

}  // namespace

ProgramCommand addRecordCommand(CLI::App& app) {
  CLI::App& record = *app.add_subcommand(kCommand, kRecordDescription);
  record.footer(kRecordExamples);
  CLI::Option* binaries = addTexts(record, "BINARY", "", "Program or library; may be repeated");
  binaries->required()->allow_extra_args();
  CLI::Option* output = addText(record, "-o,--output", "FILE", "The manifest to write; needed");
  return {&record, kCommand, [binaries, output] {
            if (!isGiven(output))
              throw UsageError("--output is needed: the manifest to write");
            return [options = RecordOptions{textsOf(*binaries), *textOf(output)}] {
              return runRecord(options);
            };
          }};
}

}  // namespace quiver_tool

#include "record_command.h"

#include <algorithm>
#include <fstream>

#include "help_texts.h"
#include "manifest_words.h"
#include "manifest_writer.h"
#include "option_texts.h"
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

bool writeFile(const std::wstring& path, const std::string& text) {
  std::ofstream file(toNativePath(path), std::ios::binary | std::ios::trunc);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  file.close();
  return static_cast<bool>(file);
}

Answer runRecord(const RecordOptions& options) {
  Answer answer;
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
  if (!writeFile(options.output, manifestText(manifest)))
    return {kExitFailure, "", answer.err + line(options.output, "it cannot be written")};
  answer.out = summary(options, manifest);
  return answer;
}

}  // namespace

ProgramCommand addRecordCommand(CLI::App& app) {
  CLI::App& record = *app.add_subcommand(kCommand, kRecordDescription);
  record.footer(kRecordExamples);
  CLI::Option* binaries = addTexts(record, "BINARY", "", "Program or library");
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

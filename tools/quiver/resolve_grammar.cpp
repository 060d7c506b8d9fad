// The options of `quiver resolve`.

#include <filesystem>
#include <system_error>

#include "help_texts.h"
#include "option_texts.h"
#include "place_options.h"
#include "resolve_command.h"
#include "resolve_run.h"
#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

constexpr const char* kCommand = "resolve";
constexpr const wchar_t* kManifestName = L"manifest.json";

struct ResolveCommand {
  CLI::Option* manifest = nullptr;
  PlaceOptions places;
  CLI::Option* rules = nullptr;
  CLI::Option* learn = nullptr;
  CLI::Option* report = nullptr;
  CLI::Option* json = nullptr;
  CLI::Option* verbose = nullptr;
};

// A result directory is searched too, before those of --result and --parent.
void readManifest(const ResolveCommand& command, ResolveOptions& options) {
  const std::wstring path = textOf(command.manifest).value_or(std::wstring());
  const std::filesystem::path native = toNativePath(path);
  std::error_code ignored;
  options.manifest = path;
  if (!std::filesystem::is_directory(native, ignored))
    return;
  options.manifest = fromNativePath(native / toNativePath(kManifestName));
  options.places.results.insert(options.places.results.begin(), path);
}

PathRule ruleOf(const std::wstring& text) {
  const std::size_t sign = text.find(L'=');
  if (sign == std::wstring::npos || sign == 0 || sign + 1 == text.size())
    throw UsageError("--map: '" + toBytes(text) + "' is not FROM=TO");
  std::error_code ignored;
  const std::filesystem::path to =
      std::filesystem::absolute(toNativePath(text.substr(sign + 1)), ignored);
  return {text.substr(0, sign), fromNativePath(to.lexically_normal())};
}

ResolveOptions readResolveOptions(const ResolveCommand& command) {
  ResolveOptions options;
  readPlaces(command.places, QV_2_9::scAllFiles, options.places);
  readManifest(command, options);
  if (options.places.isArchivingFound && options.places.results.empty())
    throw UsageError("--archive-found needs a result directory: DIR, --result or --parent");
  for (const std::wstring& rule : textsOf(*command.rules)) options.rules.push_back(ruleOf(rule));
  options.isLearning = isGiven(command.learn);
  options.report = textOf(command.report);
  options.isJson = isGiven(command.json);
  options.isVerbose = isGiven(command.verbose);
  return options;
}

void addOutputOptions(CLI::App& app, ResolveCommand& command) {
  command.report =
      addText(app, "--report", "FILE.html", "Write a page with every file and its journal");
  command.json = addFlag(app, "--json", "Print the result as JSON");
  command.verbose = addFlag(app, "-v,--verbose", "Name every file that was not found, and why");
}

}  // namespace

ProgramCommand addResolveCommand(CLI::App& app) {
  ResolveCommand command;
  CLI::App& resolve = *app.add_subcommand(kCommand, kResolveDescription);
  resolve.footer(kResolveExamples);
  command.manifest =
      addText(resolve, "FILE|DIR", "", "Manifest, or result directory with a manifest.json");
  command.manifest->required();
  addPlaceOptions(resolve, command.places);
  addServerOptions(resolve, command.places);
  addSystemOption(resolve, command.places);
  command.rules = addTexts(
      resolve, "--map", "FROM=TO", "Files recorded below FROM lie below TO; may be repeated");
  command.learn = addFlag(resolve, "--learn", "Learn such mappings from the files that are found");
  addOutputOptions(resolve, command);
  return {&resolve, kCommand, [command] {
            return [options = readResolveOptions(command)] { return runResolve(options); };
          }};
}

}  // namespace quiver_tool

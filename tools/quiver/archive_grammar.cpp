#include "archive_grammar.h"

#include <filesystem>
#include <system_error>

#include "archive_command.h"
#include "help_texts.h"
#include "option_texts.h"
#include "text_encoding.h"
#include "usage_error.h"
#include "words.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

constexpr const char* kCommand = "archive";

struct ArchiveCommand {
  CLI::Option* directory = nullptr;
  CLI::Option* files = nullptr;
  CLI::Option* category = nullptr;
  CLI::Option* list = nullptr;
  CLI::Option* verify = nullptr;
  CLI::Option* json = nullptr;
};

std::wstring directoryOf(const CLI::Option& option) {
  std::wstring path = textOf(&option).value_or(std::wstring());
  std::error_code ignored;
  if (!std::filesystem::is_directory(toNativePath(path), ignored))
    throw UsageError("no such directory: " + toBytes(path));
  return path;
}

search_category_t categoryOf(const CLI::Option& option) {
  constexpr const char* kChoices = "'bin', 'sym', 'src', 'all'";
  if (!isGiven(&option))
    throw UsageError(std::string("--category is needed: one of ") + kChoices);
  const std::string word = toBytes(*textOf(&option));
  for (const search_category_t category :
       {QV_2_9::scBinaryFiles, QV_2_9::scSymbolFiles, QV_2_9::scSourceFiles, QV_2_9::scAllFiles}) {
    if (word == categoryWord(category))
      return category;
  }
  throw UsageError("--category: '" + word + "' is none of " + kChoices);
}

ArchiveOptions readArchiveOptions(const ArchiveCommand& command) {
  ArchiveOptions options;
  options.isVerifying = isGiven(command.verify);
  options.isListing = isGiven(command.list) || options.isVerifying;
  options.isJson = isGiven(command.json);
  options.files = textsOf(*command.files);
  if (options.isListing != options.files.empty())
    throw UsageError(options.isListing ? "--list and --verify take no FILE"
                                       : "name a FILE to archive, or give --list or --verify");
  if (options.isListing && isGiven(command.category))
    throw UsageError("--category goes with FILE only");
  if (!options.isListing && options.isJson)
    throw UsageError("--json goes with --list and --verify only");
  if (!options.isListing)
    options.category = categoryOf(*command.category);
  options.directory = directoryOf(*command.directory);
  return options;
}

}  // namespace

ProgramCommand addArchiveCommand(CLI::App& app) {
  ArchiveCommand command;
  CLI::App& archive = *app.add_subcommand(kCommand, kArchiveDescription);
  archive.footer(kArchiveExamples);
  command.directory = addText(archive, "DIR", "", "Result directory; its archive is DIR/archive");
  command.directory->required();
  command.files = addTexts(archive, "FILE", "", "File to copy into the archive; may be repeated");
  command.files->allow_extra_args();
  command.category =
      addText(archive, "--category", "bin|sym|src|all", "What the files are; needed with FILE");
  command.list = addFlag(archive, "--list", "Show what the archive holds");
  command.verify =
      addFlag(archive, "--verify", "The same; the exit status is 1 when something does not agree");
  command.json = addFlag(archive, "--json", "Show it as JSON");
  return {&archive, kCommand, [command] {
            return [options = readArchiveOptions(command)] { return runArchive(options); };
          }};
}

}  // namespace quiver_tool

#include "place_options.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "option_texts.h"
#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

constexpr std::int32_t kOsWindows = 1;
constexpr std::int32_t kOsOther = 2;

bool isExistingDirectory(const std::wstring& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(toNativePath(path), ignored);
}

std::vector<SearchDirectory> directoriesOf(const PlaceOptions& options, search_category_t sought) {
  std::vector<SearchDirectory> directories;
  for (const std::string& bytes : options.directories->results())
    directories.push_back(parseSearchDirectory(toWide(bytes), sought, isExistingDirectory));
  return directories;
}

std::optional<std::int32_t> osTypeOf(const CLI::Option* option) {
  if (!isGiven(option))
    return std::nullopt;
  const std::string& word = option->results().back();
  if (word == "windows")
    return kOsWindows;
  if (word == "other")
    return kOsOther;
  throw UsageError("--os: '" + word + "' is neither 'windows' nor 'other'");
}

std::optional<std::int32_t> secondsOf(const CLI::Option* option) {
  const std::optional<std::wstring> text = textOf(option);
  if (!text)
    return std::nullopt;
  const bool isNumber = text->size() <= 5 && std::ranges::all_of(*text, [](wchar_t c) {
                          return c >= L'0' && c <= L'9';
                        });
  const std::int32_t seconds = isNumber ? static_cast<std::int32_t>(std::stol(*text)) : 0;
  if (seconds == 0)
    throw UsageError("--timeout: '" + toBytes(*text) + "' is no number of seconds from 1 to 99999");
  return seconds;
}

}  // namespace

void addPlaceOptions(CLI::App& app, PlaceOptions& options) {
  options.directories = addTexts(
      app,
      "-d,--dir",
      "[bin:|sym:|src:|all:]PATH[,recursive][,high]",
      "Directory to search, or with 'recursive' its whole tree; with 'high' before the recorded "
      "name itself; may be repeated, the order counts");
  options.archives = addTexts(
      app,
      "--archive",
      "DIR",
      "Archive directory: the tree DIR/<file name> holds copies of the file; may be repeated");
  options.result =
      addText(app, "--result", "DIR", "Result directory: search its archive and its folders too");
  options.parents = addTexts(app,
                             "--parent",
                             "DIR",
                             "Further result directory behind that of --result; may be repeated, "
                             "the nearest first");
  options.archiveFound = addFlag(
      app, "--archive-found", "Copy the file that was found into the archive of the result");
}

void addServerOptions(CLI::App& app, PlaceOptions& options) {
  options.symbolPath = addText(app,
                               "--symbol-path",
                               "TEXT",
                               "Symbol path: directories and servers (srv*cache*address) between "
                               "semicolons, instead of _NT_SYMBOL_PATH");
  options.noServers = addFlag(app, "--no-servers", "Ask no symbol server");
  options.timeout =
      addText(app, "--timeout", "SECONDS", "Give a request to a symbol server up after this time");
}

void addSystemOption(CLI::App& app, PlaceOptions& options) {
  options.os = addText(app, "--os", "windows|other", "System that the name was recorded on");
}

void readPlaces(const PlaceOptions& options, search_category_t sought, SearchPlaces& places) {
  places.directories = directoriesOf(options, sought);
  places.archives = textsOf(*options.archives);
  if (const std::optional<std::wstring> result = textOf(options.result))
    places.results.push_back(*result);
  for (const std::wstring& parent : textsOf(*options.parents)) places.results.push_back(parent);
  places.isArchivingFound = isGiven(options.archiveFound);
  places.symbolPath = textOf(options.symbolPath);
  places.isWithoutServers = isGiven(options.noServers);
  places.serverSeconds = secondsOf(options.timeout);
  places.osType = osTypeOf(options.os);
}

}  // namespace quiver_tool

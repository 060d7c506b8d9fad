// What the user asked for, read from the command line.

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "quiver/search_dirs.h"
#include "search_directory.h"

namespace quiver_tool {

/// How a run ends.
enum ExitStatus : int {
  kExitFound = 0,          ///< Also after help and version texts.
  kExitNotFound = 1,       ///< No file was found, or something in or for an archive is wrong.
  kExitFailure = 2,        ///< A usage error, or output that could not be written.
  kExitInterrupted = 130,  ///< Ctrl-C stopped a download; as shells have it.
};

/// Where to look, whatever is looked for.
struct SearchPlaces {
  std::vector<SearchDirectory> directories;
  std::vector<std::wstring> archives;
  std::vector<std::wstring> results;  ///< Result directories, the nearest first.
  bool isArchivingFound = false;
  std::optional<std::wstring> symbolPath;  ///< Instead of the variable's.
  bool isWithoutServers = false;
  std::optional<std::int32_t> serverSeconds;  ///< For one request.
  std::optional<std::int32_t> osType;
};

struct FindOptions : SearchPlaces {
  QV_2_9::search_category_t category = QV_2_9::scBinaryFiles;
  std::wstring name;
  std::optional<std::wstring> binary;
  // At most one check: the MD5, the time and the size, or the reference file.
  std::optional<std::wstring> md5;
  std::optional<std::int64_t> modificationTime;
  std::optional<std::int64_t> size;
  std::optional<std::wstring> notNewerThan;
  std::optional<std::wstring> suggestion;
  bool isAll = false;
  bool isJson = false;
  bool isVerbose = false;
};

/// What is asked of the archive of a result directory: to take files in, or to show itself.
struct ArchiveOptions {
  std::wstring directory;  ///< The result directory, which exists.
  std::vector<std::wstring> files;
  QV_2_9::search_category_t category = QV_2_9::scAllFiles;
  bool isListing = false;
  bool isVerifying = false;  ///< Listing, with an exit status of its own.
  bool isJson = false;
};

/// What a run prints, and how it ends.
struct Answer {
  int status = kExitFound;
  std::string out;
  std::string err;
};

/// What a command line asks for. It may throw what the library throws.
using Job = std::function<Answer()>;

/// Never fails: for a wrong command line the job is to say so.
Job parseCommandLine(int argc, const char* const* argv);

}  // namespace quiver_tool

#include "record_module.h"

#include <chrono>
#include <filesystem>
#include <system_error>

#include "file_identity.h"
#include "listed_sources.h"
#include "quiver/checksum.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

namespace fs = std::filesystem;

std::optional<std::int64_t> timeOf(const fs::path& path) {
  std::error_code error;
  const fs::file_time_type time = fs::last_write_time(path, error);
  if (error)
    return std::nullopt;
  const auto system = std::chrono::file_clock::to_sys(time);
  return std::chrono::floor<std::chrono::seconds>(system).time_since_epoch().count();
}

/// Takes in what this machine has under the path; returns false when that is no readable file.
bool takeContent(ManifestFile& file) {
  const fs::path path = toNativePath(file.path);
  std::error_code error;
  if (!path.is_absolute() || !fs::is_regular_file(path, error))
    return false;
  const auto checksum =
      QV_2_9::IChecksumCalculator::create()->calculate(file.path.c_str(), QV_2_9::ctMD5);
  const std::uintmax_t size = fs::file_size(path, error);
  if (!checksum || error)
    return false;
  file.md5 = checksum->getValue();
  file.size = static_cast<std::int64_t>(size);
  file.time = timeOf(path);
  return true;
}

// Intended: the line table knows which content was compiled. A file that has changed since gives
// neither size nor time.
ManifestFile toSource(const ListedSource& listed) {
  ManifestFile file{toWide(listed.path), {}, {}, {}};
  takeContent(file);
  if (listed.md5 && file.md5 != toWide(*listed.md5))
    return {file.path, toWide(*listed.md5), {}, {}};
  return file;
}

void takeSources(const SourceList& list, RecordedBinary& binary) {
  std::size_t unwritable = 0;
  for (const ListedSource& listed : list.sources) {
    if (toUtf8(toWide(listed.path)) == listed.path)
      binary.module->sources.push_back(toSource(listed));
    else
      ++unwritable;
  }
  if (!list.remark.empty())
    binary.remarks.push_back(list.remark);
  if (unwritable > 0)
    binary.remarks.push_back(std::to_string(unwritable) +
                             " of its sources are left out: their names are no UTF-8");
}

std::wstring absolutePath(const std::wstring& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(toNativePath(path), error);
  return error ? path : fromNativePath(absolute.lexically_normal());
}

void takeSymbolFile(const std::wstring& path, RecordedBinary& binary) {
  if (path.empty())
    return;
  ManifestFile file{path, {}, {}, {}};
  takeContent(file);
  binary.module->symbolFile = std::move(file);
}

}  // namespace

RecordedBinary recordBinary(const std::wstring& path) {
  const IdentifiedFile file = identify(path);
  if (!file.identity)
    return {std::nullopt, false, {file.reason}};
  const std::string& format = file.identity->format;
  const bool isElf = format == "ELF64" || format == "ELF32";
  RecordedBinary binary;
  binary.isPe = format == "PE32" || format == "PE32+";
  if (!isElf && !binary.isPe)
    return {std::nullopt, false, {"it is no binary that can be read (" + format + ")"}};
  ManifestFile self{absolutePath(path), {}, {}, {}};
  if (toWide(toUtf8(self.path)) != self.path)
    return {std::nullopt, false, {"its name is no UTF-8"}};
  if (!takeContent(self))
    return {std::nullopt, false, {"it cannot be read"}};
  binary.module = ManifestModule{std::move(self), {}, {}};
  const std::wstring named = toWide(file.identity->symbolFile.value_or(""));
  if (binary.isPe) {
    takeSymbolFile(named, binary);
    binary.remarks.emplace_back("the sources of PE files are not listed");
    return binary;
  }
  const SourceList list = listElfSources(binary.module->binary.path);
  takeSymbolFile(list.debugFile.empty() ? named : toWide(list.debugFile), binary);
  takeSources(list, binary);
  return binary;
}

}  // namespace quiver_tool

// Makes the lists, and judges answers.

#include "load/sought_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace quiver_load {

using namespace QV_2_9;

namespace {

/// As the result was recorded, on another machine.
std::wstring recordedName(const std::wstring& name, bool isWindows) {
  return isWindows ? L"C:\\ci\\work\\source\\" + name : L"/builds/work/source/" + name;
}

bool liesBelow(const std::wstring& path, const std::wstring& directory) {
  return path.starts_with(directory + L"/");
}

std::string wrongInStill(const std::wstring& path, bool confirmed, const SoughtFile& sought) {
  if (sought.check && !confirmed)
    return "a file that is there was not confirmed";
  const bool isDecoy = !sought.check && !sought.still->decoy.empty() && path == sought.still->decoy;
  return path == sought.still->path || isDecoy ? "" : "another file was found";
}

std::string wrongInMoving(const std::wstring& path,
                          bool confirmed,
                          const SoughtFile& sought,
                          const Places& places) {
  if (!liesBelow(path, places.path("moving")))
    return "it was found elsewhere";
  if (std::filesystem::path(path).filename() != std::filesystem::path(sought.recorded).filename() &&
      !sought.recorded.ends_with(L"\\" + std::filesystem::path(path).filename().wstring()))
    return "another name was found";
  if (confirmed && path.find(L"/wrong/") != std::wstring::npos)
    return "a file was confirmed that never had the recorded content";
  return {};
}

/// What is in a cache is complete for as long as it is there.
std::string wrongInSymbol(const std::wstring& path,
                          const SoughtFile& sought,
                          const Places& places) {
  // The default store takes what another could not while it was being emptied.
  constexpr const char* kOurs[] = {"cache", "default", "store", "steady"};
  if (std::ranges::none_of(kOurs,
                           [&](const char* name) { return liesBelow(path, places.path(name)); }))
    return "it was found elsewhere";
  std::ifstream file{std::filesystem::path(path), std::ios::binary};
  const std::string content{std::istreambuf_iterator<char>(file), {}};
  return !file.is_open() || content == sought.symbols->content ? "" : "its content is another";
}

std::string wrongInFound(const std::wstring& path,
                         bool confirmed,
                         const SoughtFile& sought,
                         const Places& places) {
  if (confirmed && !sought.check)
    return "it was confirmed without a check";
  switch (sought.fate) {
    case Fate::kStill:
      return wrongInStill(path, confirmed, sought);
    case Fate::kMoving:
      return wrongInMoving(path, confirmed, sought, places);
    case Fate::kSymbol:
      return wrongInSymbol(path, sought, places);
    case Fate::kMissing:
      break;
  }
  return "a file was found that never was";
}

}  // namespace

SoughtFiles::SoughtFiles(const Places& places) {
  for (const StillFile& still : places.stillFiles())
    add({Fate::kStill,
         still.category,
         recordedName(still.name, still.category == scSourceFiles),
         {},
         &still},
        still.path);
  for (int number = 0; number < Places::kMovingNames; ++number) {
    const std::string name = Places::movingName(number);
    add({Fate::kMoving,
         scSourceFiles,
         recordedName({name.begin(), name.end()}, number % 2 == 0),
         {}},
        places.recordedFile());
  }
  for (const RealBinary& real : places.binaries())
    for (int copies = 0; copies < 6; ++copies)  // downloads are what is slow, and not to be rare
      add({Fate::kSymbol,
           scSymbolFiles,
           recordedName(real.symbolName, true),
           real.path,
           nullptr,
           &real},
          real.symbolFile);
  for (const search_category_t category : {scBinaryFiles, scSymbolFiles, scSourceFiles})
    m_files.push_back({Fate::kMissing, category, recordedName(L"missing.cpp", true), {}});
}

/// Sought with a check and, but for symbol files, without.
void SoughtFiles::add(SoughtFile file, const std::wstring& original) {
  if (file.fate != Fate::kSymbol)
    m_files.push_back(file);
  file.check =
      &m_checks.emplace_back(file.category, m_calculator->calculate(original.c_str(), ctMD5));
  m_files.push_back(file);
}

const SoughtFile& SoughtFiles::any(std::minstd_rand& random) const {
  return m_files[random() % m_files.size()];
}

std::string wrongIn(const ObjectPtr<IValidFile>& answer,
                    const SoughtFile& sought,
                    const CallbackAnswers& callbacks,
                    const Places& places) {
  const bool isThere = sought.fate == Fate::kStill ||
                       (sought.symbols && sought.symbols->source == SymbolSource::kSteady);
  const bool mayBeMissing = !isThere || callbacks.isCanceled || callbacks.isRefused;
  const std::string wrong =
      answer ? wrongInFound(answer->getPath(), answer->getConfidenceLevel() == 0, sought, places)
             : (mayBeMissing ? "" : "a file that is there was not found");
  if (wrong.empty())
    return {};
  return wrong + ": " + std::filesystem::path(sought.recorded).string() +
         (sought.check ? ", with its MD5" : "") +
         (answer ? ", found " + std::filesystem::path(answer->getPath()).string() + " in step " +
                       std::to_string(answer->getStep())
                 : "");
}

}  // namespace quiver_load

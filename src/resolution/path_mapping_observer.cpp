// See path_mapping_observer.h.

#include "resolution/path_mapping_observer.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "os/path_utils.h"

namespace QV_2_9::internal {
namespace {

bool bearsPath(const std::wstring& place, const wchar_t* path) {
  return compareIgnoreCase(toCanonicalAbsolutePath(place.c_str(), false).c_str(), path) == 0;
}

}  // namespace

// Suggestions are valid files in the order in which they were made. The first file is theirs when
// one of them was valid: all of ours in front of it were not, and what others suggested says
// nothing about ours. A mapping that another thread added while this search ran may be dropped
// without having been asked; it is learned again.
void observeFirstFile(PathMappingTable& mappings, const wchar_t* name, IValidFile& first) {
  const std::vector<std::wstring> places = mappings.placesOf(name);
  auto end = places.end();
  if (first.getStep() == kSuggestedResolutionStep) {
    end = std::ranges::find_if(
        places, [&](const std::wstring& place) { return bearsPath(place, first.getPath()); });
    if (end == places.end())
      return;
    if (first.getConfidenceLevel() == 0)
      mappings.confirm(name, *end);
  }
  std::for_each(places.begin(), end, [&](const std::wstring& place) {
    if (isReadable(place.c_str()))
      mappings.refute(name, place);
  });
}

void observeRejectedFiles(PathMappingTable& mappings,
                          const wchar_t* name,
                          IInvalidFileIterator& invalidFiles) {
  const std::vector<std::wstring> places = mappings.placesOf(name);
  if (places.empty())
    return;
  while (const ObjectPtr<IInvalidFile> file = invalidFiles.next()) {
    if (file->getStep() != kSuggestedResolutionStep || !isReadable(file->getPath()))
      continue;
    for (const std::wstring& place : places) {
      if (bearsPath(place, file->getPath()))
        mappings.refute(name, place);
    }
  }
  invalidFiles.reset();
}

bool isRejected(IValidFile& answer, IInvalidFileIterator& invalidFiles) {
  bool isAmongThem = false;
  invalidFiles.reset();
  while (const ObjectPtr<IInvalidFile> file = isAmongThem ? nullptr : invalidFiles.next())
    isAmongThem = compareIgnoreCase(file->getPath(), answer.getPath()) == 0;
  invalidFiles.reset();
  return isAmongThem;
}

void learnFromAnswer(PathMappingTable& mappings, const wchar_t* name, IValidFile& answer) {
  const std::int32_t step = answer.getStep();
  if (answer.getConfidenceLevel() == 0 && step != ssArchiveSearchDirs && step != ssSystemDirs)
    mappings.learn(name, answer.getPath());
}

}  // namespace QV_2_9::internal

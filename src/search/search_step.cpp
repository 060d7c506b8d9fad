// The names of the search steps.

#include "search/search_step.h"

namespace QV_2_9 {

const wchar_t* searchStepToString(search_step_t step) {
  static constexpr const wchar_t* kNames[] = {
      L"ssArchiveSearchDirs",
      L"ssHighPrioritySearchDirs",
      L"ssAbsoluteNameLookup",
      L"ssSystemDirs",
      L"ssAroundBinaryLookup",
      L"ssLowPrioritySearchDirs",
  };
  if (step < ssArchiveSearchDirs || step > ssLowPrioritySearchDirs)
    return L"Internal error: unknown search step";
  return kNames[step - ssArchiveSearchDirs];
}

}  // namespace QV_2_9

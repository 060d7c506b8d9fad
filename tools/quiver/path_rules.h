// Rules "files recorded below FROM lie below TO", given or learned, which suggest paths to
// searches.
//
// A suggestion is checked like any other candidate: a wrong rule costs time, it yields no wrong
// file. From one file that was found and confirmed the rules learn where its whole tree lies.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "lookup.h"
#include "quiver/search_callbacks.h"
#include "quiver/string_container.h"
#include "resolution.h"

namespace quiver_tool {

/// Returns what lies in front of the longest common end of two paths, in whole names:
/// "/ci/src/a.c" and "/home/u/src/a.c" give "/ci" and "/home/u". Letter case does not count when
/// the recorded path is one of Windows. Both are empty when the paths have no name in common, or
/// nothing else.
UsedMapping learnedMapping(const std::wstring& recorded, const std::wstring& found);

/// Returns where the rule puts a recorded path; empty when it says nothing about it.
std::wstring mappedPath(const UsedMapping& rule, const std::wstring& recorded);

class PathRules final : public QV_2_9::ISearchStartedCallback {
 public:
  /// Given rules come before learned ones and stay whatever checks say.
  void add(const std::wstring& from, const std::wstring& to);

  /// Takes in what became of a lookup. A rule whose suggestion was confirmed counts that, a learned
  /// one whose suggestion a check refuted goes; with `isLearning` a new one may come.
  void note(const std::wstring& recorded, const Outcome& outcome, bool isLearning);

  const std::vector<UsedMapping>& rules() const { return m_rules; }

  bool onBinSearchStarted(const wchar_t* file, QV_2_9::IStringContainer& suggestions) override;
  bool onSymSearchStarted(const wchar_t* file,
                          const wchar_t* binary,
                          const wchar_t* checksum,
                          QV_2_9::IStringContainer& suggestions) override;
  bool onSrcSearchStarted(const wchar_t* file,
                          const wchar_t* binary,
                          const wchar_t* checksum,
                          QV_2_9::IStringContainer& suggestions) override;

 private:
  bool suggest(const wchar_t* file, QV_2_9::IStringContainer& suggestions) const;
  void learn(const std::wstring& recorded, const std::wstring& found);

  std::vector<UsedMapping> m_rules;
};

}  // namespace quiver_tool

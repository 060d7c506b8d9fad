// The two callbacks through which a lookup sees all candidates.
//
// The files-found callback notes its choice and declines it, so that the no-files-found callback is
// asked in every case: that one sees the rejected candidates too, and hands the choice back.

#pragma once

#include "lookup.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_results.h"

namespace quiver_tool {

using QV_2_9::IInvalidFileIterator;
using QV_2_9::IValidator;
using QV_2_9::IValidFile;
using QV_2_9::IValidFileIterator;
using QV_2_9::ObjectPtr;

class ChoosingCallback final : public QV_2_9::IFilesFoundCallback {
 public:
  explicit ChoosingCallback(bool isAll) : m_isAll(isAll) {}

  ObjectPtr<IValidFile> choice() const { return m_choice; }
  /// Call it between two lookups.
  void forgetChoice() { m_choice = nullptr; }

  ObjectPtr<IValidFile> onBinFilesFound(const wchar_t*, IValidFileIterator& files) override {
    return choose(files);
  }
  ObjectPtr<IValidFile> onSymFilesFound(const wchar_t*,
                                        const wchar_t*,
                                        const wchar_t*,
                                        IValidFileIterator& files) override {
    return choose(files);
  }
  ObjectPtr<IValidFile> onSrcFilesFound(const wchar_t*,
                                        const wchar_t*,
                                        const wchar_t*,
                                        IValidFileIterator& files) override {
    return choose(files);
  }

 private:
  ObjectPtr<IValidFile> choose(IValidFileIterator& files);

  bool m_isAll;
  ObjectPtr<IValidFile> m_choice;
};

class ShowingCallback final : public QV_2_9::INoFilesFoundCallback {
 public:
  /// Neither is owned.
  ShowingCallback(const ChoosingCallback& choosing, Outcome& outcome)
      : m_choosing(choosing), m_outcome(outcome) {}

  ObjectPtr<IValidFile> onBinNoFilesFound(const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) override {
    return show(invalidFiles, validFiles);
  }
  ObjectPtr<IValidFile> onSymNoFilesFound(const wchar_t*,
                                          const wchar_t*,
                                          const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) override {
    return show(invalidFiles, validFiles);
  }
  ObjectPtr<IValidFile> onSrcNoFilesFound(const wchar_t*,
                                          const wchar_t*,
                                          const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) override {
    return show(invalidFiles, validFiles);
  }

 private:
  ObjectPtr<IValidFile> show(IInvalidFileIterator& invalidFiles, IValidFileIterator& validFiles);

  const ChoosingCallback& m_choosing;
  Outcome& m_outcome;
};

FoundFile toFoundFile(IValidFile& file);

}  // namespace quiver_tool

// The result directories of one run as a chain of contexts, the user's context behind them all.

#pragma once

#include <string>
#include <vector>

#include "quiver/resolution_context.h"

namespace quiver_tool {

/// Owns the manager's memory of the run: keep one at a time.
class ResultScope final {
 public:
  /// `directories`: the nearest first. One that is named again counts where it came first:
  /// linking it twice would cut off what is between.
  explicit ResultScope(const std::vector<std::wstring>& directories);

  /// Searches `dirs` too, after the nearest result's own folders.
  void setSearchDirs(const QV_2_9::ObjectPtr<QV_2_9::ISearchDirContainer>& dirs);
  /// Neither is owned; both must outlive the searches.
  void setCallbacks(QV_2_9::IFilesFoundCallback& filesFound,
                    QV_2_9::INoFilesFoundCallback& noFilesFound);
  /// Likewise.
  void setCallback(QV_2_9::ISearchStartedCallback& searchStarted);

  /// Returns what the whole chain has; `archives` are searched after its own.
  QV_2_9::ObjectPtr<QV_2_9::ISearchEnv> createSearchEnv(
      const QV_2_9::ObjectPtr<QV_2_9::ISearchDirContainer>& archives,
      const QV_2_9::ObjectPtr<QV_2_9::IEnvironmentInfo>& info);

  /// Copies the file into the archive of the nearest result.
  QV_2_9::archive_result_t archive(const std::wstring& file, QV_2_9::search_category_t category);

 private:
  void append(const QV_2_9::ObjectPtr<QV_2_9::IResolutionContext>& context);
  QV_2_9::IResolutionContext* nearest() const { return m_chain.front().get(); }

  QV_2_9::ObjectPtr<QV_2_9::IResolutionContextMgr> m_manager =
      QV_2_9::IResolutionContextMgr::create();
  std::vector<QV_2_9::ObjectPtr<QV_2_9::IResolutionContext>> m_chain;
};

}  // namespace quiver_tool

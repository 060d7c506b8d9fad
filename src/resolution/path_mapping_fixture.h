// What the tests of path mappings share: a set of mappings, a tree to search, and a check.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "quiver/checksum.h"
#include "quiver/path_mapping.h"
#include "quiver/search_results.h"
#include "resolution/search_manipulator_fixture.h"
#include "search/test_doubles.h"

namespace QV_2_9 {

inline constexpr const wchar_t* kMd5OfNew = L"22af645d1859cb5ca6da0c484f1f37ea";  // "new"

/// A check that compares with the MD5 of "new", as a viewer's own does.
class IsNew final : public IValidatorCallback {
 public:
  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& error) override {
    return m_check.validate(path, error);
  }

 private:
  ObjectPtr<IChecksumCalculator> m_calculator = IChecksumCalculator::create();
  ChecksumValidator m_check{scSourceFiles, m_calculator->createChecksum(ctMD5, kMd5OfNew)};
};

class PathMappingsTest : public SearchManipulatorTest {
 protected:
  void install() const {
    manager->setSearchStartedCallback(context.get(), L"key", mappings->getSearchStartedCallback());
    manager->setFilesFoundCallback(context.get(), L"key", mappings->getFilesFoundCallback());
    manager->setNoFilesFoundCallback(context.get(), L"key", mappings->getNoFilesFoundCallback());
  }
  void scan(const std::wstring& directory) const {
    const auto dirs = IEditableSearchDirContainer::create();
    dirs->addSearchDir(scSourceFiles, directory.c_str(), true, true);
    manager->setSearchDirs(context.get(), dirs, L"dirs");
  }
  ObjectPtr<IValidFile> find(const wchar_t* name, IValidatorCallback* check) {
    system.calls.clear();
    return manager->createFileSearch(context.get(), L"key", nullptr)
        ->findSrcFile(name, L"/ci/app", L"", check, nullptr);
  }
  ObjectPtr<IValidFile> find(const wchar_t* name) { return find(name, &isNew); }
  /// Whether the last search ran its steps, which ask the system.
  bool searched() const { return !system.calls.empty(); }

  /// The mappings as "recorded>local*confirmations", with a "!" in front of those set by hand.
  std::vector<std::wstring> rows() const {
    std::vector<std::wstring> texts;
    for (std::int32_t i = 0; i < mappings->getMappingCount(); ++i) {
      const ObjectPtr<IPathMapping> row = mappings->getMapping(i);
      texts.push_back((row->isLearned() ? L"" : L"!") + std::wstring(row->getRecordedPrefix()) +
                      L">" + row->getLocalPrefix() + L"*" +
                      std::to_wstring(row->getConfirmationCount()));
    }
    return texts;
  }

  using Rows = std::vector<std::wstring>;

  internal::ScriptedRoutines system;
  IsNew isNew;
  ObjectPtr<IPathMappings> mappings = IPathMappings::create();
};

}  // namespace QV_2_9

// Two callbacks: one that looks at every candidate before it chooses, one that explains why nothing
// was found. Both are asked for source files only; the other two questions are declined.

#include <clocale>
#include <cstdio>

#include "quiver/quiver.h"

using namespace QV_2_9;

namespace {

// Prefers a candidate that a low-priority directory offered: those hold the user's own checkout.
class PreferCheckout final : public IFilesFoundCallback {
 public:
  ObjectPtr<IValidFile> onBinFilesFound(const wchar_t*, IValidFileIterator&) override {
    return nullptr;
  }
  ObjectPtr<IValidFile> onSymFilesFound(const wchar_t*,
                                        const wchar_t*,
                                        const wchar_t*,
                                        IValidFileIterator&) override {
    return nullptr;
  }
  ObjectPtr<IValidFile> onSrcFilesFound(const wchar_t* srcFile,
                                        const wchar_t*,
                                        const wchar_t*,
                                        IValidFileIterator& files) override {
    std::printf("%ls:\n", srcFile);
    ObjectPtr<IValidFile> choice;
    // Asking for more than was found runs the remaining steps.
    while (const ObjectPtr<IValidFile> file = files.next()) {
      std::printf("  step %d: %ls\n", file->getStep(), file->getPath());
      if (!choice || file->getStep() == ssLowPrioritySearchDirs)
        choice = file;
    }
    return choice;
  }
};

class ShowReasons final : public INoFilesFoundCallback {
 public:
  ObjectPtr<IValidFile> onBinNoFilesFound(const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator&,
                                          IValidFileIterator&) override {
    return nullptr;
  }
  ObjectPtr<IValidFile> onSymNoFilesFound(const wchar_t*,
                                          const wchar_t*,
                                          const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator&,
                                          IValidFileIterator&) override {
    return nullptr;
  }
  ObjectPtr<IValidFile> onSrcNoFilesFound(const wchar_t* srcFile,
                                          const wchar_t*,
                                          const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator&) override {
    std::printf("%ls:\n", srcFile);
    while (const ObjectPtr<IInvalidFile> file = invalidFiles.next())
      std::printf("  rejected: %ls: %ls\n", file->getPath(), file->getErrorMessage());
    return nullptr;
  }
};

void find(IFileSearch& search, const wchar_t* name, IValidatorCallback* check) {
  const ObjectPtr<IValidFile> file = search.findSrcFile(name, nullptr, nullptr, check, nullptr);
  std::printf("  answer: %ls\n", file ? file->getPath() : L"none");
}

}  // namespace

int main() {
  std::setlocale(LC_ALL, "");  // For printing names that are not ASCII.
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scSourceFiles, L"shared", /*recursive=*/true, /*highPriority=*/true);
  dirs->addSearchDir(scSourceFiles, L"checkout", /*recursive=*/true, /*highPriority=*/false);

  // The environment refers to callbacks; they belong to us and live as long as the searches.
  PreferCheckout preferCheckout;
  ShowReasons showReasons;
  ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(dirs);
  env->setFilesFoundCallback(&preferCheckout);
  env->setNoFilesFoundCallback(&showReasons);
  const ObjectPtr<IFileSearch> search = IFileSearch::create(env);

  find(*search, L"/ci/lib/parse.c", nullptr);

  const ObjectPtr<IChecksum> other =
      IChecksumCalculator::create()->createChecksum(ctMD5, L"00000000000000000000000000000000");
  ChecksumValidator check(scSourceFiles, other);
  find(*search, L"/ci/lib/parse.c", &check);
}

// A check of the caller's own: only scripts that begin with "#!" count. Every candidate that exists
// and can be read comes here; the answer decides what becomes of it.

#include <clocale>
#include <cstdio>
#include <fstream>
#include <string>

#include "quiver/quiver.h"

using namespace QV_2_9;

namespace {

// The paths of this example are plain ASCII.
std::string narrow(const wchar_t* path) {
  const std::wstring text(path);
  return std::string(text.begin(), text.end());
}

class IsScript final : public IValidatorCallback {
 public:
  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& errorInfo) override {
    std::ifstream file(narrow(path), std::ios::binary);
    char start[2] = {};
    if (!file.read(start, sizeof start))
      return vrUndecided;
    if (start[0] == '#' && start[1] == '!')
      return vrValid;
    errorInfo.setErrorCode(ecUnusable);
    errorInfo.setErrorMessage(L"not a script");
    return vrInvalid;
  }
};

void find(IFileSearch& search, const wchar_t* name) {
  IsScript check;
  const ObjectPtr<IValidFile> file = search.findBinFile(name, &check, nullptr);
  if (file)
    std::printf("%ls: %ls, confidence %d\n", name, file->getPath(), file->getConfidenceLevel());
  else
    std::printf("%ls: not found\n", name);
}

}  // namespace

int main() {
  std::setlocale(LC_ALL, "");  // For printing names that are not ASCII.
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scBinaryFiles, L"tools", /*recursive=*/true, /*highPriority=*/true);
  ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(dirs);
  const ObjectPtr<IFileSearch> search = IFileSearch::create(env);

  find(*search,
       L"/ci/tools/qv_deploy");          // tools/new/qv_deploy is a script, tools/qv_deploy is not.
  find(*search, L"/ci/tools/qv_empty");  // Too short to say: taken, but not confirmed.
  find(*search, L"/ci/tools/qv_data");   // There, but no script.
}

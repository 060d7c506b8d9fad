// Where is the symbol file of this binary? From nothing to an answer.

#include <clocale>
#include <cstdio>

#include "quiver/quiver.h"

int main() {
  using namespace QV_2_9;
  std::setlocale(LC_ALL, "");  // For printing names that are not ASCII.
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scSymbolFiles, L"symbols", /*recursive=*/true, /*highPriority=*/true);

  ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(dirs);

  ObjectPtr<IFileSearch> search = IFileSearch::create(env);
  ObjectPtr<IValidFile> file = search->findSymFile(
      L"C:\\ci\\out\\app.pdb", L"C:\\ci\\out\\app.exe", nullptr, nullptr, nullptr, nullptr);

  std::printf("%ls\n", file ? file->getPath() : L"not found");
}

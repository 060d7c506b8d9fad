// Asks a symbol server from another directory than the one that the program was started in. The
// test starts it with a relative path to the library.
//
// usage: boundary_moved_away BINARY

#include <cstdlib>
#include <string>
#include <unistd.h>

#include "quiver/quiver.h"

int main(int argc, char** argv) {
  using namespace QV_2_9;
  if (argc != 2 || chdir("/") != 0)
    return 2;
  setenv("_NT_SYMBOL_PATH", "srv*/no/such/store", 1);
  setenv("QUIVER_SYMBOL_LOG", "1", 1);
  const std::string binary = argv[1];
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(IEditableSearchDirContainer::create());
  const ObjectPtr<IFileSearch> search = IFileSearch::create(env);
  search->findSymFile(L"a.pdb",
                      std::wstring(binary.begin(), binary.end()).c_str(),
                      nullptr,
                      nullptr,
                      nullptr,
                      nullptr);
  return 0;
}

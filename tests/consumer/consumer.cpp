// Finds a file below a directory: consumer DIRECTORY NAME. Ends with 0 when it is there.

#include <cstdio>
#include <quiver/quiver.h>
#include <string>

namespace {

std::wstring widened(const char* text) {
  return std::wstring(text, text + std::char_traits<char>::length(text));
}

}  // namespace

int main(int argc, char** argv) {
  using namespace QV_2_9;
  if (argc != 3)
    return 2;
  const std::wstring directory = widened(argv[1]);
  const std::wstring name = widened(argv[2]);
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scAllFiles, directory.c_str(), true, true);
  ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(dirs);
  ObjectPtr<IFileSearch> search = IFileSearch::create(env);
  ObjectPtr<IValidFile> file =
      search->findSrcFile(name.c_str(), nullptr, nullptr, nullptr, nullptr);
  std::printf("%ls\n", file ? file->getPath() : L"not found");
  return file ? 0 : 1;
}

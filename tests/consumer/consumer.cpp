// Finds a file below a directory: consumer DIRECTORY NAME. Ends with 0 when it is there.

#include <cstdio>
#include <quiver/file_system_path.h>
#include <quiver/quiver.h>
#include <string>

int main(int argc, char** argv) {
  using namespace QV_2_9;
  if (argc != 3)
    return 2;
  const std::wstring directory = fromNativePath(argv[1]);
  const std::wstring name = fromNativePath(argv[2]);
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scAllFiles, directory.c_str(), true, true);
  ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(dirs);
  ObjectPtr<IFileSearch> search = IFileSearch::create(env);
  ObjectPtr<IValidFile> file =
      search->findSrcFile(name.c_str(), nullptr, nullptr, nullptr, nullptr);
  std::printf("%s\n", file ? toNativePath(file->getPath()).string().c_str() : "not found");
  return file ? 0 : 1;
}

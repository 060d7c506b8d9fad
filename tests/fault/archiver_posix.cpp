// A process that archives every file of a directory and can be killed at any moment.
//
//   fault_archiver ARCHIVE DIRECTORY
//
// After each file it writes the result code's digit to its standard output. It fails when a file
// could neither be archived nor was archived before.

#include <algorithm>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "quiver/resolution_context.h"

namespace {

using namespace QV_2_9;

std::vector<std::filesystem::path> filesIn(const char* directory) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(directory))
    files.push_back(entry.path());
  std::ranges::sort(files);
  return files;
}

bool report(archive_result_t result) {
  const char digit = static_cast<char>('0' + result);
  return write(STDOUT_FILENO, &digit, 1) == 1 &&
         (result == arArchived || result == arAlreadyArchived);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3)
    return 2;
  const ObjectPtr<IResolutionContextMgr> manager = IResolutionContextMgr::create();
  const ObjectPtr<IResolutionContext> context = manager->createUserContext();
  manager->setArchiveDir(context.get(), std::filesystem::path(arguments[1]).wstring().c_str());
  bool succeeded = true;
  for (const std::filesystem::path& file : filesIn(arguments[2]))
    succeeded &= report(manager->archiveFile(context.get(), file.wstring().c_str(), scBinaryFiles));
  return succeeded ? 0 : 1;
}

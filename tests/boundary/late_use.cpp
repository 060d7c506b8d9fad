// A viewer whose library objects live in a static one: its last lookup is made while the program
// ends. usage: late_use FILE

#include <cstdio>
#include <cwchar>
#include <string>

#include "quiver/quiver.h"

using namespace QV_2_9;

namespace {

struct Viewer {
  std::wstring file;
  ObjectPtr<IFileSearch> search;

  void work(const char* when) const {
    const ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
    const ObjectPtr<IChecksum> checksum = calculator->calculate(file.c_str(), ctMD5);
    const ObjectPtr<IValidFile> found =
        search->findSrcFile(L"absent.c", nullptr, nullptr, nullptr, nullptr);
    std::printf("%s %ls %s\n",
                when,
                checksum ? checksum->getValue() : L"none",
                found ? "found" : "not found");
  }

  ~Viewer() {
    if (search)
      work("late");
  }
};

Viewer g_viewer;

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2)
    return 2;
  for (const char* c = argv[1]; *c; ++c) g_viewer.file += static_cast<unsigned char>(*c);
  g_viewer.search = IFileSearch::create(IEditableSearchEnv::create());
  g_viewer.work("early");
}

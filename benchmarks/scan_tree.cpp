// One recursive scan of a tree for one name, as a process of its own: what `compare` times beside
// other finders. Prints the paths that it found.

#include <cstdio>

#include "paku/file_search.h"
#include "paku/text_encoding.h"

namespace {

constexpr int kWholeTree = -1;

class Printer final : public PAKU_3_1::IFileScanCallback {
 public:
  bool onFileFound(const PAKU_3_1::String& path) override {
    std::string bytes;
    if (PAKU_3_1::encode(path.text(), bytes))
      std::puts(bytes.c_str());
    return true;
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: scan_tree DIRECTORY NAME\n", stderr);
    return 2;
  }
  PAKU_3_1::FileSearch search;
  search.addSearchDirectory(PAKU_3_1::Filename(PAKU_3_1::decode(argv[1])), kWholeTree, 0);
  Printer printer;
  search.find(PAKU_3_1::decode(argv[2]), printer);
}

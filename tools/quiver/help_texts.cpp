#include "help_texts.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

constexpr const char* kBinExamples =
    "Examples:\n"
    "  quiver find bin 'C:\\build\\out\\app.exe' -d ~/builds\n"
    "      looks for build/out/app.exe, then out/app.exe, then app.exe in ~/builds\n"
    "  quiver find bin libparse.so -d /opt/product,recursive,high\n"
    "      looks into the whole tree, before any other place\n"
    "  quiver find bin app -d ~/builds,recursive --md5 9e107d9d372bb6826bd81d3542a419d6 -v\n"
    "      takes only this very build, and says why others were rejected\n";

constexpr const char* kSymExamples =
    "Examples:\n"
    "  quiver find sym app.debug --binary ~/builds/bin/app\n"
    "      looks beside the binary and in every directory above it\n"
    "  quiver find sym 'C:\\build\\out\\app.pdb' -d ~/symbols,recursive -d all:/builds\n"
    "      the directories for symbol files first, then those for every kind\n"
    "  quiver find sym app.debug -d ~/symbols,recursive --all --json\n"
    "      every candidate, for a program to read\n"
    "\n"
    "_NT_SYMBOL_PATH may name more directories, separated by ';'.\n";

constexpr const char* kSrcExamples =
    "Examples:\n"
    "  quiver find src /ci/work/lib/parse.c -d ~/checkout\n"
    "      looks for ci/work/lib/parse.c, then work/lib/parse.c, lib/parse.c, parse.c in "
    "~/checkout\n"
    "  quiver find src parse.c -d ~/new,recursive -d ~/old,recursive --all\n"
    "      lists every parse.c in both trees\n"
    "  quiver find src 'C:\\ci\\parse.c' -d ~/src,recursive --md5 "
    "9e107d9d372bb6826bd81d3542a419d6\n"
    "      takes only the version that the binary was built from\n"
    "  quiver find src parse.c -d ~/src --mtime 1700000000 --size 5120\n"
    "      the same by time and size\n"
    "  quiver find src parse.c -d ~/src --not-newer-than ~/builds/app\n"
    "      not what was changed after the build\n"
    "  quiver find src parse.c -d ~/src --result ~/results/r1 --archive-found\n"
    "      keeps a copy with the result; the next search answers with it\n";

}  // namespace

const char* kindDescription(search_category_t category) {
  switch (category) {
    case QV_2_9::scSymbolFiles:
      return "Finds a symbol file by its recorded name.";
    case QV_2_9::scSourceFiles:
      return "Finds a source file by its recorded name.";
    default:
      return "Finds a binary module by its recorded name.";
  }
}

const char* kindExamples(search_category_t category) {
  switch (category) {
    case QV_2_9::scSymbolFiles:
      return kSymExamples;
    case QV_2_9::scSourceFiles:
      return kSrcExamples;
    default:
      return kBinExamples;
  }
}

}  // namespace quiver_tool

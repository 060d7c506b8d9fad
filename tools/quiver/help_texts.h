// The texts that teach the program by example; they stand below the option lists of --help.

#pragma once

#include "quiver/search_dirs.h"

namespace quiver_tool {

inline constexpr const char* kProgramDescription =
    "quiver finds the files that an analysis result names: binaries, their symbol files, their\n"
    "sources. It looks for a name that was recorded on another machine in the directories that "
    "you\n"
    "give, step by step, and prints the path of the first file that passes every check.\n";

inline constexpr const char* kProgramExamples =
    "Examples:\n"
    "  quiver find bin 'C:\\build\\out\\app.exe' -d ~/builds,recursive\n"
    "  quiver find sym app.debug --binary ~/builds/app\n"
    "  quiver find src /ci/work/lib/parse.c -d ~/checkout --md5 9e107d9d372bb6826bd81d3542a419d6\n"
    "\n"
    "See 'quiver find --help', 'quiver find sym --help', 'quiver archive --help',\n"
    "'quiver explain --help', 'quiver identify --help', 'quiver record --help' and\n"
    "'quiver resolve --help'; the manual is quiver(1).\n";

inline constexpr const char* kFindDescription = "Finds a file by its recorded name.";

inline constexpr const char* kFindExamples =
    "The path goes to standard output, everything else to standard error.\n"
    "Exit status: 0 found, 1 not found, 2 usage or output error, 130 stopped by Ctrl-C.\n"
    "\n"
    "The steps, in this order, until a file is found:\n"
    "  1  archive directories         the archive of --result; --archive\n"
    "  2  high-priority directories   the folders of --result; --dir PATH,high\n"
    "  3  the recorded name itself\n"
    "  4  system directories          search path, library and symbol directories\n"
    "  5  around the binary           --binary\n"
    "  6  low-priority directories    --dir PATH\n"
    "\n"
    "Examples:\n"
    "  quiver find bin libparse.so -d /opt/product,recursive\n"
    "  quiver find src 'C:\\ci\\lib\\parse.c' -d ~/checkout -d ~/old,recursive --all -v\n"
    "  quiver find src parse.c -d ~/checkout --result ~/results/r1 --archive-found\n"
    "\n"
    "See 'quiver find bin --help', 'quiver find sym --help', 'quiver find src --help'.\n";

inline constexpr const char* kArchiveDescription =
    "Copies files into the archive of a result directory, or shows what it holds.";

inline constexpr const char* kArchiveExamples =
    "Exit status: 0 every file is in the archive, 1 one is not, or --verify found a file that "
    "does\n"
    "not agree with its folder, 2 usage or output error.\n"
    "\n"
    "Examples:\n"
    "  quiver archive ~/results/r1 parse.c lexer.c --category src\n"
    "      copies two sources; 'quiver find src --result ~/results/r1' finds them first\n"
    "  quiver archive --list ~/results/r1\n"
    "      name, kind, MD5 and size of every copy\n"
    "  quiver archive --verify ~/results/r1 && echo sound\n"
    "      compares every copy with the MD5 that its folder is named by\n";

inline constexpr const char* kExplainDescription =
    "Tells all that a lookup of one file tries, and what would make it found.";

/// Of the commands for each kind of file.
inline constexpr const char* kExplainKindDescription =
    "Tells all that 'quiver find' would try for a file of this kind.";

inline constexpr const char* kExplainExamples =
    "The options are those of 'quiver find'. What was looked at stands step by step, each "
    "candidate\n"
    "with its verdict, what was not tried with the reason.\n"
    "Examples:\n"
    "  quiver explain src /ci/work/a.cpp -d ~/checkout,recursive --md5 "
    "9e107d9d372bb6826bd81d3542a419d6\n"
    "      says which files of that name were rejected, and why\n"
    "  quiver explain sym app.pdb --binary app.exe --json\n"
    "      the same for programs: which stores were asked, and what they answered\n";

inline constexpr const char* kIdentifyDescription =
    "Shows what binaries and symbol files say of themselves: format, GUID and age or build-id, "
    "the\n"
    "symbol file that they name, MD5 and size.";

inline constexpr const char* kIdentifyExamples =
    "Symbol servers go by this identity: a symbol file belongs to a binary when both show the "
    "same.\n"
    "Exit status: 0 every file was read, 1 one was not, 2 usage or output error.\n"
    "\n"
    "Examples:\n"
    "  quiver identify app.exe app.pdb\n"
    "      the same GUID and age in both: they were made by one link\n"
    "  quiver identify --json /usr/lib/libparse.so\n"
    "      also where stores keep the symbol file (store_key)\n";

inline constexpr const char* kRecordDescription =
    "Makes a manifest of binaries: what they are, their symbol files, their sources.";

inline constexpr const char* kRecordExamples =
    "Sources are those that the debug data of ELF files names; those of PE files are not listed.\n"
    "Nothing is downloaded.\n"
    "Exit status: 0 every binary was recorded, 1 one was not, 2 usage or output error.\n"
    "\n"
    "Examples:\n"
    "  quiver record build/app build/libparse.so -o app.json\n"
    "      'quiver resolve app.json' looks for all of it on another machine\n";

inline constexpr const char* kResolveDescription =
    "Finds all files of a manifest: the modules, their symbol files, their sources.";

inline constexpr const char* kResolveExamples =
    "Prints how many files of each kind were found, by which step, and why the others were not.\n"
    "Ctrl-C stops before the next file; what was done until then is reported.\n"
    "Exit status: 0 every file was found, 1 one was not, 2 usage or output error or a wrong "
    "manifest,\n"
    "130 stopped by Ctrl-C.\n"
    "\n"
    "Examples:\n"
    "  quiver resolve app.json -d ~/checkout,recursive -v\n"
    "      names the files that are missing, and why\n"
    "  quiver resolve app.json -d ~/checkout,recursive --learn --report app.html\n"
    "      learns where the checkout lies from the first source; a page shows every lookup\n"
    "  quiver resolve app.json --map /ci/work=/home/me/checkout\n"
    "      files recorded below /ci/work lie below /home/me/checkout\n"
    "  quiver resolve ~/results/r1 --archive-found\n"
    "      resolves ~/results/r1/manifest.json and keeps copies with the result\n";

/// Returns the description of `quiver find bin`, `sym` or `src`.
const char* kindDescription(QV_2_9::search_category_t category);

/// Returns the text below its options.
const char* kindExamples(QV_2_9::search_category_t category);

}  // namespace quiver_tool

// The program where names are bytes, may lead elsewhere, and devices and times are odd.

#include <filesystem>
#include <fstream>
#include <future>
#include <linux/capability.h>
#include <string>
#include <sys/prctl.h>
#include <vector>

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using testing::HasSubstr;

const std::string kMd5OfNew = "22af645d1859cb5ca6da0c484f1f37ea";  // "new"

class ProgramPosix : public Program {
 protected:
  std::string copy(const std::string& name) {
    return "r/archive/sources/" + name + "/" + kMd5OfNew + "/" + name;
  }
  RunResult verify() const { return runProgram({"archive", "--verify", path("r")}); }
};

TEST_F(ProgramPosix, KeepsFileNamesThatAreNotText) {
  const std::string name = "qv_\xFF\xC3.c";
  const std::string file = path("") + name;
  std::ofstream(std::filesystem::path(file)) << "x";
  const RunResult run = runProgram({"find", "src", name, "-d", path("")});
  EXPECT_EQ(run.out, file + "\n");
  const RunResult missing = runProgram({"find", "src", "no" + name});
  EXPECT_THAT(missing.err, HasSubstr("'no" + name + "'"));
}

TEST_F(ProgramPosix, TakesADirectoryThatLooksLikeOneWithACategory) {
  const std::string file = add("sym:s/a.c");
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("sym:s") + ","}).out, file + "\n");
}

TEST_F(ProgramPosix, TakesTheModificationTimeOfAFileFromBefore1970) {
  add("new/a.c");
  add("old/a.c");
  add("reference");
  m_tree.setModificationTime("reference", -5, 250000000);
  m_tree.setModificationTime("old/a.c", -5);
  for (const std::string& time : {"--mtime=" + path("reference"), std::string("--mtime=-5")}) {
    const RunResult run =
        runProgram({"find", "src", "a.c", "-d", path("new"), "-d", path("old"), time});
    EXPECT_EQ(run.out, path("old/a.c") + "\n") << time;
  }
}

TEST_F(ProgramPosix, SpellsOutControlCharactersOfArchivedNames) {
  add("r/keep");
  runProgram({"archive", path("r"), add("b\n.c", "new"), "--category", "src"});
  EXPECT_THAT(verify().out, HasSubstr("\nb\\x0a.c  src"));
}

TEST_F(ProgramPosix, SaysThatADeviceIsFull) {
  add("a.c");
  RunSettings settings;
  settings.output = OutputTo::FullDevice;
  const RunResult run = runProgram({"find", "src", "a.c", "-d", path("")}, settings);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "quiver: cannot write the result: No space left on device\n");
}

TEST_F(ProgramPosix, FollowsNoLinkAndOpensNoSpecialFile) {
  add("outside/a.c/" + kMd5OfNew + "/a.c", "new");
  m_tree.addLink("r/archive/binaries", path("outside"));
  m_tree.addUnreadableFile(copy("a.c"));
  m_tree.addLink(copy("b.c"), path("outside/a.c/" + kMd5OfNew + "/a.c"));
  const RunResult run = verify();
  EXPECT_EQ(run.status, 1);
  const std::string fifo = copy("a.c").substr(2);
  const std::string link = copy("b.c").substr(2);
  const auto row = [&](const std::string& name, const char* kind) {
    return name + std::string(fifo.size() - name.size() + 2, ' ') + kind + "    -     foreign\n";
  };
  EXPECT_EQ(run.out,
            "name" + std::string(fifo.size() - 2, ' ') + "category  md5  size  content\n" +
                row("archive/binaries", "-         -") + row(fifo, "src       -") +
                row(link, "src       -"));
}

TEST_F(ProgramPosix, DoesNotFollowALinkInPlaceOfTheArchive) {
  add("outside/sources/a.c/" + kMd5OfNew + "/a.c", "new");
  m_tree.addLink("r/archive", path("outside"));
  const RunResult run = verify();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "name     category  md5  size  content\n"
            "archive  -         -    -     foreign\n");
}

TEST_F(ProgramPosix, TakesNoFifoForAReference) {
  const std::string fifo = toBytes(m_tree.addUnreadableFile("fifo"));
  EXPECT_THAT(runProgram({"find", "src", "a", "--mtime", fifo}).err,
              HasSubstr("--mtime: '" + fifo + "' is neither"));
  EXPECT_THAT(runProgram({"find", "src", "a", "--not-newer-than", fifo}).err,
              HasSubstr("--not-newer-than: no such file: " + fifo));
}

TEST_F(ProgramPosix, SaysThatAFileCannotBeReadWhichCanBeOpened) {
  const RunResult run = runProgram({"identify", "/proc/self/mem"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quiver: /proc/self/mem: it cannot be read\n");
}

/// As an ordinary user in a tree that everybody may enter.
class ClosedDirectoriesPosix : public ProgramPosix {
 protected:
  ClosedDirectoriesPosix() {
    std::filesystem::permissions(path("."), std::filesystem::perms(0755));
    add("closed/a.c");
    add("m.json", R"({"modules": [{"path": "/ci/app"}]})");
    std::filesystem::permissions(path("closed"), std::filesystem::perms(0111));
  }
  ~ClosedDirectoriesPosix() override {
    std::filesystem::permissions(path("closed"), std::filesystem::perms(0755));
  }

  /// Root reads everything. A program gets no more rights than the thread that starts it may pass
  /// on; another user might not even reach the program. Whoever is not root has no such rights.
  static RunResult runWithoutPrivileges(const std::vector<std::string>& arguments) {
    const auto run = [&arguments] {
      constexpr unsigned long kRights[] = {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH};
      for (const unsigned long right : kRights) prctl(PR_CAPBSET_DROP, right);
      return runProgram(arguments);
    };
    return std::async(std::launch::async, run).get();
  }
};

TEST_F(ClosedDirectoriesPosix, AreNamedWhenNothingWasFound) {
  const std::vector<std::string> arguments = {"find", "src", "b.c", "-d", path("closed")};
  const std::string sentence =
      "quiver: no source file found for 'b.c': no candidate existed in any place searched; cannot "
      "be read: " +
      path("closed") + "\n";
  EXPECT_EQ(runWithoutPrivileges(arguments).err, sentence);
  std::vector<std::string> verbose = arguments;
  verbose.push_back("-v");
  EXPECT_EQ(runWithoutPrivileges(verbose).err,
            "quiver: " + path("closed") + ": cannot be read\n" + sentence);
  std::vector<std::string> asJson = arguments;
  asJson.push_back("--json");
  EXPECT_THAT(runWithoutPrivileges(asJson).out,
              HasSubstr("\"unreadable_directories\": [\n    \"" + path("closed") + "\"\n  ]"));
}

TEST_F(ClosedDirectoriesPosix, AreNamedByResolve) {
  EXPECT_EQ(runWithoutPrivileges({"resolve", path("m.json"), "-d", path("closed")}).err,
            "quiver: " + path("closed") + ": cannot be read\n");
}

TEST_F(ClosedDirectoriesPosix, MakeWhatIsArchivedUnreadable) {
  add("r/archive/sources/a.c/" + kMd5OfNew + "/a.c", "new");
  std::filesystem::permissions(path("r/archive/sources"), std::filesystem::perms(0444));
  const RunResult run = runWithoutPrivileges({"archive", "--verify", path("r")});
  std::filesystem::permissions(path("r/archive/sources"), std::filesystem::perms(0755));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "name                 category  md5  size  content\n"
            "archive/sources/a.c  src       -    -     unreadable\n");
}

}  // namespace
}  // namespace quiver_tool

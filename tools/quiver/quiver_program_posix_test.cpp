// The program where names are bytes, may lead elsewhere, and devices and times are odd.

#include <filesystem>
#include <fstream>
#include <string>

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

}  // namespace
}  // namespace quiver_tool

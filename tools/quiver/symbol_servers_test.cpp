#include "symbol_servers.h"

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"

namespace quiver_tool {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(SymbolServers, AreKnownByTheirPrefix) {
  EXPECT_TRUE(isSymbolServer(L"srv*x"));
  EXPECT_TRUE(isSymbolServer(L"SymSrv*symsrv.dll*x"));
  EXPECT_FALSE(isSymbolServer(L"srv"));
  EXPECT_FALSE(isSymbolServer(L"c:\\srv*x"));
  EXPECT_FALSE(isSymbolServer(L""));
}

TEST(SymbolServers, CanBeTakenOutOfASymbolPath) {
  EXPECT_EQ(withoutServers(L"a;srv*b*https://c;d"), L"a;d");
  EXPECT_EQ(withoutServers(L"SRV*b;cache*e"), L"");
  EXPECT_EQ(withoutServers(L"a;b"), L"a;b");
  EXPECT_EQ(withoutServers(L""), L"");
}

class ProgramWithSymbolPath : public Program {};

TEST_F(ProgramWithSymbolPath, SearchesTheDirectoriesGivenInsteadOfTheVariables) {
  const std::string given = add("given/qv.pdb");
  const std::string usual = add("usual/qv.pdb");
  RunSettings settings;
  settings.environment = {"_NT_SYMBOL_PATH=" + path("usual")};
  EXPECT_EQ(runProgram({"find", "sym", "qv.pdb"}, settings).out, usual + "\n");
  EXPECT_EQ(runProgram({"find", "sym", "qv.pdb", "--symbol-path", path("given")}, settings).out,
            given + "\n");
}

TEST_F(ProgramWithSymbolPath, KeepsDirectoriesWithoutServers) {
  const std::string file = add("d/qv.pdb");
  const RunResult run = runProgram({"find",
                                    "sym",
                                    "qv.pdb",
                                    "--no-servers",
                                    "--symbol-path",
                                    "srv*" + path("cache") + "*" + path("store") + ";" + path("d"),
                                    "-d",
                                    "srv*" + path("cache") + "*" + path("other")});
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_EQ(run.status, 0);
}

TEST_F(ProgramWithSymbolPath, SaysWhatServersWereAskedWhenItIsVerbose) {
  const std::string binary = add("app.exe", "no binary at all");
  const std::vector<std::string> arguments = {"find",
                                              "sym",
                                              "qv.pdb",
                                              "--binary",
                                              binary,
                                              "--symbol-path",
                                              "srv*" + path("cache") + "*" + path("store")};
  EXPECT_THAT(runProgram(arguments).err, Not(HasSubstr("app.exe")));
  std::vector<std::string> verbose = arguments;
  verbose.push_back("-v");
  EXPECT_THAT(runProgram(verbose).err, HasSubstr("app.exe"));
  verbose.push_back("--no-servers");
  EXPECT_THAT(runProgram(verbose).err, Not(HasSubstr("app.exe")));
}

TEST_F(ProgramWithSymbolPath, RefusesATimeoutThatIsNone) {
  for (const char* text : {"0", "x", "-1", "1.5", "100000", "1s"}) {
    const RunResult run = runProgram({"find", "sym", "a", std::string("--timeout=") + text});
    EXPECT_EQ(run.status, 2) << text;
    EXPECT_THAT(run.err, HasSubstr("--timeout: '" + std::string(text) + "'"));
  }
  EXPECT_EQ(runProgram({"find", "sym", "qv-missing", "--timeout", "5"}).status, 1);
}

TEST_F(ProgramWithSymbolPath, TakesTheOptionsForSymbolFilesAlone) {
  EXPECT_EQ(runProgram({"find", "src", "a.c", "--no-servers"}).status, 2);
  EXPECT_EQ(runProgram({"find", "bin", "a", "--symbol-path", "x"}).status, 2);
}

TEST_F(ProgramWithSymbolPath, NamesDirectoriesThatDoNotExist) {
  add("there/x");
  const std::string text = path("gone") + ";;srv*" + path("c") + "*" + path("s") + ";cache*" +
                           path("k") + ";" + path("there");
  const RunResult run = runProgram({"find", "sym", "qv.pdb", "--symbol-path", text});
  EXPECT_THAT(run.err, testing::EndsWith("; no such directory: " + path("gone") + "\n"));
}

}  // namespace
}  // namespace quiver_tool

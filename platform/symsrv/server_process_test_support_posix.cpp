// Starts programs.

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "symsrv/server_process_test_support.h"

extern char** environ;

namespace symsrv_1_0::internal {
namespace {

pid_t start(const std::vector<std::string>& arguments, int output) {
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (output >= 0)
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  else
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = -1;
  if (posix_spawnp(&process, argv[0], &actions, nullptr, argv.data(), environ) != 0)
    process = -1;
  posix_spawn_file_actions_destroy(&actions);
  return process;
}

}  // namespace

ServerProcess::ServerProcess(const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0)
    return;
  m_output = ends[0];
  m_process = start(arguments, ends[1]);
  close(ends[1]);
}

ServerProcess::~ServerProcess() {
  if (m_process > 0) {
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
  }
  close(m_output);
}

std::string ServerProcess::readLine() {
  std::string line;
  for (char c = 0; read(m_output, &c, 1) == 1 && c != '\n';) line += c;
  return line;
}

int runProgram(const std::vector<std::string>& arguments) {
  return resultOf(start(arguments, -1));
}

std::string makeCertificate(const std::string& name) {
  EXPECT_EQ(runProgram({"openssl",
                        "req",
                        "-x509",
                        "-newkey",
                        "ec",
                        "-pkeyopt",
                        "ec_paramgen_curve:prime256v1",
                        "-nodes",
                        "-keyout",
                        name + ".key",
                        "-out",
                        name + ".pem",
                        "-days",
                        "2",
                        "-subj",
                        "/CN=localhost",
                        "-addext",
                        "subjectAltName=DNS:localhost,IP:127.0.0.1"}),
            0);
  return name;
}

pid_t startChild(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0)
    _exit(work());
  return child;
}

int resultOf(pid_t child) {
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
    return -1;
  return WEXITSTATUS(status);
}

}  // namespace symsrv_1_0::internal

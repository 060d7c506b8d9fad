// Programs that run beside a test.

#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace symsrv_1_0::internal {

/// Starts a program with its output read by the test; ends it with SIGKILL at the end.
class ServerProcess final {
 public:
  explicit ServerProcess(const std::vector<std::string>& arguments);
  ~ServerProcess();

  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  /// Returns the next line that the program prints. Empty when it printed none and ended.
  std::string readLine();

  bool isRunning() const { return m_process > 0; }

 private:
  pid_t m_process = -1;
  int m_output = -1;
};

/// Runs a program to its end. Returns its exit status, -1 when it could not be run.
int runProgram(const std::vector<std::string>& arguments);

/// Makes the files NAME.pem and NAME.key for localhost. Returns NAME.
std::string makeCertificate(const std::string& name);

/// Runs `work` in a process of its own, which ends with the number that it returns.
pid_t startChild(const std::function<int()>& work);

/// Waits for a child. Returns its number, -1 when it was killed.
int resultOf(pid_t child);

}  // namespace symsrv_1_0::internal

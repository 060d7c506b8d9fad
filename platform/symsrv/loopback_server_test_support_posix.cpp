// The server on the loopback, in a process of its own.

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/server_process_test_support.h"

namespace symsrv_1_0::internal {
namespace {

class PythonServer final : public LoopbackServer {
 public:
  explicit PythonServer(const std::vector<std::string>& arguments)
      : m_process(arguments), m_port(m_process.readLine()) {}
  std::string port() const override { return m_port; }

 private:
  ServerProcess m_process;
  std::string m_port;
};

}  // namespace

std::unique_ptr<LoopbackServer> startLoopbackServer(const std::string& certificate) {
  std::vector<std::string> arguments = {
      "python3", SYMSRV_SOURCE_DIR "/loopback_server.py", SYMSRV_REAL_FILES};
  if (!certificate.empty()) {
    arguments.push_back(certificate + ".pem");
    arguments.push_back(certificate + ".key");
  }
  return std::make_unique<PythonServer>(arguments);
}

}  // namespace symsrv_1_0::internal

// Servers with certificates, and what the system's transport must notice by itself.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/server_process_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class SecureDownloadOnPosix : public DownloadFixture {
 protected:
  SecureDownloadOnPosix() {
    const std::string certificate = makeCertificate(at("certificate"));
    serve(certificate);
    m_certificate = certificate + ".pem";
  }

  std::string m_certificate;
};

TEST_F(SecureDownloadOnPosix, WorksWithATrustedCertificate) {
  m_settings.caFile = m_certificate;
  EXPECT_EQ(obtainFrom("good"), at("cache/" + key())) << reports();
}

TEST_F(SecureDownloadOnPosix, TrustsNobodyByItself) {
  EXPECT_EQ(obtainFrom("good"), "");
  EXPECT_THAT(reports(), HasSubstr("certificate"));
}

TEST_F(SecureDownloadOnPosix, IsNotTriedAgainWithoutTrust) {
  m_settings.serverExpiry = m_settings.leastServerExpiry = std::chrono::seconds(0);
  EXPECT_EQ(obtainFrom("good"), "");
  m_reports.clear();
  EXPECT_EQ(obtainFrom("good"), "");
  EXPECT_THAT(reports(), HasSubstr("left alone"));
}

TEST_F(SecureDownloadOnPosix, NeverFallsToPlainHttp) {
  m_settings.caFile = m_certificate;
  EXPECT_EQ(obtainFrom("to-http"), "");
  EXPECT_THAT(reports(), HasSubstr("from https to http"));
}

class ServerDownloadOnPosix : public DownloadFixture {
 protected:
  ServerDownloadOnPosix() { serve(); }

  mode_t modeOf(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(stat(at(name).c_str(), &status), 0) << name;
    return status.st_mode & 0777;
  }
};

TEST_F(ServerDownloadOnPosix, AnEndlessHeaderIsNotReadToItsEnd) {
  EXPECT_EQ(obtainFrom("flood-headers"), "");
  EXPECT_THAT(reports(), HasSubstr("header"));
  EXPECT_THAT(reports(), Not(HasSubstr("within"))) << "no limit on time had to end it";
  EXPECT_THAT(filesIn("cache"), IsEmpty());
}

// Elsewhere the system takes what has come for the whole, and only its content tells.
TEST_F(ServerDownloadOnPosix, ChunksThatAreCutOffAreNoMiss) {
  for (std::size_t asked : {3u, 5u}) {
    m_reports.clear();
    EXPECT_EQ(obtainFrom("cut-chunked"), "");
    EXPECT_THAT(requests(), ::testing::SizeIs(asked)) << "the tiers once, the file twice each time";
    EXPECT_THAT(reports(), HasSubstr("cut off"));
  }
  EXPECT_THAT(filesIn("cache"), IsEmpty());
}

TEST_F(ServerDownloadOnPosix, TheDefaultStoreIsForTheUserAloneFromTheFirstMissOn) {
  const mode_t old = umask(002);
  EXPECT_EQ(obtain({"srv*" + address("missing")}), "");
  EXPECT_EQ(modeOf("default"), 0700u);
  EXPECT_EQ(modeOf("default/.misses"), 0700u);
  EXPECT_EQ(obtain({"srv*" + address("good")}), at("default/" + key())) << reports();
  umask(old);
}

/// A port where connections are never made, or are made and never served.
class SilentPort final {
 public:
  explicit SilentPort(bool isFull) {
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(m_listener, plain, size), 0);
    EXPECT_EQ(listen(m_listener, isFull ? 0 : 16), 0);
    EXPECT_EQ(getsockname(m_listener, plain, &size), 0);
    m_port = ntohs(address.sin_port);
    // The system drops what comes when nobody takes the first ones.
    for (int i = 0; isFull && i < 4; ++i) {
      m_waiting.push_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
      static_cast<void>(connect(m_waiting.back(), plain, size));
    }
  }
  ~SilentPort() {
    for (const int fd : m_waiting) close(fd);
    close(m_listener);
  }

  SilentPort(const SilentPort&) = delete;
  SilentPort& operator=(const SilentPort&) = delete;

  std::string address(const std::string& scheme) const {
    return scheme + "://127.0.0.1:" + std::to_string(m_port) + "/x";
  }

 private:
  int m_listener = -1;
  int m_port = 0;
  std::vector<int> m_waiting;
};

class SilentServerOnPosix : public DownloadFixture, public ::testing::WithParamInterface<bool> {};

TEST_P(SilentServerOnPosix, IsGivenUpAfterTheLimitOnConnections) {
  const SilentPort port(GetParam());
  m_settings.limits.connect = std::chrono::milliseconds(200);
  // Where a connection is made the handshake of https hangs.
  const std::string element =
      "srv*" + at("cache") + "*" + port.address(GetParam() ? "http" : "https");
  EXPECT_EQ(obtain({element}), "");
  EXPECT_THAT(reports(), ::testing::ContainsRegex("[Tt]imed out|[Tt]imeout"));
  EXPECT_THAT(reports(), Not(HasSubstr("within"))) << "the limit on the answer came first";
  m_reports.clear();
  EXPECT_EQ(obtain({element}), "");
  EXPECT_THAT(reports(), HasSubstr("left alone"));
  EXPECT_THAT(filesIn("cache"), IsEmpty());
}

TEST_P(SilentServerOnPosix, IsCanceledWhileItIsConnected) {
  const SilentPort port(GetParam());
  m_progress.m_cancelAfter = 0;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(obtain({"srv*" + at("cache") + "*" + port.address(GetParam() ? "http" : "https")}), "");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, m_settings.limits.connect / 2);
  EXPECT_EQ(m_progress.m_finished, 1);
  EXPECT_THAT(reports(), HasSubstr("canceled"));
}

INSTANTIATE_TEST_SUITE_P(Ports, SilentServerOnPosix, ::testing::Bool(), [](const auto& row) {
  return row.param ? "NoConnection" : "NoHandshake";
});

}  // namespace
}  // namespace symsrv_1_0::internal

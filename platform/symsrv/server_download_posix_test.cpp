// Servers with certificates.

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/server_process_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::HasSubstr;

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

TEST_F(SecureDownloadOnPosix, NeverFallsToPlainHttp) {
  m_settings.caFile = m_certificate;
  EXPECT_EQ(obtainFrom("to-http"), "");
  EXPECT_THAT(reports(), HasSubstr("from https to http"));
}

}  // namespace
}  // namespace symsrv_1_0::internal

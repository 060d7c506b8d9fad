// Servers with certificates, and what the system's transport must notice by itself.

#include <sys/stat.h>

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

TEST_F(ServerDownloadOnPosix, TheDefaultStoreIsForTheUserAloneFromTheFirstMissOn) {
  const mode_t old = umask(002);
  EXPECT_EQ(obtain({"srv*" + address("missing")}), "");
  EXPECT_EQ(modeOf("default"), 0700u);
  EXPECT_EQ(modeOf("default/.misses"), 0700u);
  EXPECT_EQ(obtain({"srv*" + address("good")}), at("default/" + key())) << reports();
  umask(old);
}

}  // namespace
}  // namespace symsrv_1_0::internal

// Servers that others made: nginx, Python's own, and a server of debug files.

#include <arpa/inet.h>
#include <chrono>
#include <fstream>
#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/server_process_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::HasSubstr;

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int freePort() {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  EXPECT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), size), 0);
  EXPECT_EQ(getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size), 0);
  close(fd);
  return ntohs(address.sin_port);
}

bool waitForPort(int port) {
  for (int tries = 0; tries < 6000; ++tries) {
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    const bool isOpen =
        connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    if (isOpen)
      return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

class PeersOnPosix : public DownloadFixture {
 protected:
  PeersOnPosix() {
    file("one", "tiny64.pdb");
    m_tree.addFile("two/index2.txt");
    file("two", "tiny64.pdb", "ti/" + key());
    file("packed", "tiny64.pd_", key("tiny64.pd_"));
    const std::string id = contentOf(realFile("hello.id")).substr(0, 40);
    file("one", "hello.debug", "_.debug/elf-buildid-sym-" + id + "/_.debug");
  }

  void expectRight(const std::string& url) {
    std::filesystem::remove_all(at("cache"));
    const std::string path = obtain({"srv*" + at("cache") + "*" + url});
    EXPECT_EQ(path, at("cache/" + key())) << url << "\n" << reports();
    EXPECT_TRUE(path.empty() || contentOf(path) == contentOf(realFile("tiny64.pdb")));
  }
};

TEST_F(PeersOnPosix, PythonsServer) {
  ServerProcess server(
      {"python3", "-u", "-m", "http.server", "0", "--bind", "127.0.0.1", "--directory", at("")});
  const std::string line = server.readLine();
  const std::size_t start = line.find("http://");
  ASSERT_NE(start, std::string::npos) << line;
  const std::string root = line.substr(start, line.find("/)") - start);
  for (const char* store : {"/one", "/two", "/packed", "/one/"}) expectRight(root + store);
  EXPECT_THAT(obtain({"srv*" + at("cache") + "*" + root + "/one"}, "hello"),
              HasSubstr("/.build-id/"))
      << reports();
  EXPECT_EQ(obtain({"srv*" + at("cache") + "*" + root + "/one"}, "tiny32.exe"), "");
}

class NginxOnPosix : public PeersOnPosix {
 protected:
  NginxOnPosix()
      : m_plain(freePort()),
        m_secure(freePort()),
        m_certificate(makeCertificate(at("certificate"))) {
    const std::string plain = std::to_string(m_plain), secure = std::to_string(m_secure);
    std::ofstream(at("nginx.conf"))
        << "daemon off; master_process off; pid " << at("pid") << ";\n"
        << "events { worker_connections 64; }\nhttp { access_log off; types { }\n"
        << "default_type application/octet-stream;\n"
        << "client_body_temp_path " << at("t1") << "; proxy_temp_path " << at("t2")
        << "; fastcgi_temp_path " << at("t3") << "; uwsgi_temp_path " << at("t4")
        << "; scgi_temp_path " << at("t5") << ";\n"
        << "server { listen 127.0.0.1:" << plain << "; root " << at("") << ";\n"
        << "  location ~ ^/away/(.*)$ { return 302 http://localhost:" << plain
        << "/one/$1?sig=x; }\n"
        << "  location /loop/ { return 302 $request_uri; }\n"
        << "  location /tofile/ { return 302 file:///etc/hostname; }\n"
        << "  location /e500/ { return 500; } }\n"
        << "server { listen 127.0.0.1:" << secure << " ssl; root " << at("") << ";\n"
        << "  ssl_certificate " << m_certificate << ".pem; ssl_certificate_key " << m_certificate
        << ".key;\n"
        << "  location ~ ^/down/(.*)$ { return 302 http://127.0.0.1:" << plain << "/one/$1; }\n"
        << "  location ~ ^/away/(.*)$ { return 307 https://localhost:" << secure << "/one/$1; } }\n"
        << "}\n";
    m_settings.caFile = m_certificate + ".pem";
    m_server = std::make_unique<ServerProcess>(
        std::vector<std::string>{"/usr/sbin/nginx", "-e", at("errors"), "-c", at("nginx.conf")});
  }

  void SetUp() override {
    ASSERT_TRUE(waitForPort(m_plain) && waitForPort(m_secure)) << contentOf(at("errors"));
  }
  std::string plain() const { return "http://127.0.0.1:" + std::to_string(m_plain); }
  std::string secure() const { return "https://127.0.0.1:" + std::to_string(m_secure); }

  int m_plain;
  int m_secure;
  std::string m_certificate;
  std::unique_ptr<ServerProcess> m_server;
};

TEST_F(NginxOnPosix, PlainAndSecureRedirectedAndPacked) {
  for (const std::string& root : {plain(), secure()})
    for (const char* store : {"/one", "/two", "/packed", "/away"}) expectRight(root + store);
}

TEST_F(NginxOnPosix, WhatMustNotBeFollowedIsNot) {
  for (const std::string& url : {plain() + "/loop", plain() + "/tofile", secure() + "/down"}) {
    forget();
    EXPECT_EQ(obtain({"srv*" + at("cache") + "*" + url}), "") << url;
  }
  EXPECT_THAT(reports(), HasSubstr("redirected too often"));
  EXPECT_THAT(reports(), HasSubstr("not supported"));
  EXPECT_THAT(reports(), HasSubstr("from https to http"));
}

/// Brings up a loopback of the process's own, where nobody else can reach a server that listens on
/// every address.
bool enterOwnNetwork() {
  if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
    return false;
  const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request{};
  request.ifr_name[0] = 'l';
  request.ifr_name[1] = 'o';
  request.ifr_flags = IFF_UP;
  const bool isUp = ioctl(fd, SIOCSIFFLAGS, &request) == 0;
  close(fd);
  return isUp;
}

constexpr int kNoNetwork = 77;

TEST_F(PeersOnPosix, AServerOfDebugFiles) {
  m_tree.addFile("elf/hello", contentOf(realFile("hello")));
  m_tree.addFile("elf/hello.debug", contentOf(realFile("hello.debug")));
  const pid_t child = startChild([this] {
    if (!enterOwnNetwork())
      return kNoNetwork;
    unsetenv("DEBUGINFOD_URLS");  // or the server asks others
    ServerProcess server({"debuginfod", "-F", "-d", ":memory:", "-p", "18002", at("elf")});
    const std::string root = "http://127.0.0.1:18002";
    const std::string id = contentOf(realFile("hello.id")).substr(0, 40);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (runProgram({"curl", "-sf", root + "/buildid/" + id + "/debuginfo"}) != 0)
      if (std::chrono::steady_clock::now() > end)
        return 2;
    const std::string path = obtain({"srv*" + at("cache") + "*" + root}, "hello");
    if (path.empty() || contentOf(path) != contentOf(realFile("hello.debug")))
      return 3;
    // What it does not have is missing, and the server still works afterwards.
    const bool isMissing = obtain({"srv*" + at("other") + "*" + root}, "tiny64.exe").empty();
    return isMissing && reports().find("hello") == std::string::npos ? 0 : 4;
  });
  const int result = resultOf(child);
  if (result == kNoNetwork)
    GTEST_SKIP() << "NOT TESTED against debuginfod: this system allows no network of one's own";
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace symsrv_1_0::internal

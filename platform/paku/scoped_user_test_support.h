// An ordinary user for the time of a test: root may read and write everything.

#pragma once

#include <unistd.h>

namespace PAKU_3_1::internal {

class OrdinaryUser final {
 public:
  OrdinaryUser() : m_wasRoot(geteuid() == 0) {
    if (m_wasRoot)
      m_isOrdinary = seteuid(kNobody) == 0;
  }
  ~OrdinaryUser() {
    if (m_wasRoot && seteuid(0) != 0)
      _exit(1);  // no later test could be trusted
  }

  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  bool isOrdinary() const { return m_isOrdinary; }

 private:
  static constexpr uid_t kNobody = 65534;

  bool m_wasRoot;
  bool m_isOrdinary = true;
};

}  // namespace PAKU_3_1::internal

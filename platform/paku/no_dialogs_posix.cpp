// These systems ask nobody for a disk.

#include "paku/no_dialogs.h"

namespace PAKU_3_1 {

NoDialogs::NoDialogs() {
  static_cast<void>(m_former);
}

NoDialogs::~NoDialogs() = default;

}  // namespace PAKU_3_1

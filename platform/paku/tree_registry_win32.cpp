// One registry for the process.

#include "paku/tree_registry.h"

namespace PAKU_3_1::internal {

TreeRegistry& TreeRegistry::instance() {
  static TreeRegistry registry;
  return registry;
}

unsigned rightsOfThread() {
  return 0;
}

}  // namespace PAKU_3_1::internal

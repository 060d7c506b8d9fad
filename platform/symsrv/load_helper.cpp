// Makes helpers from the module. This file and its neighbours load_module_* are linked into the
// library; everything else is the module's.

#include "symsrv/load_module.h"
#include "symsrv/symsrv_helper.h"

namespace symsrv_1_0 {

QV_2_9::ObjectPtr<ISymSrvHelper> ISymSrvHelper::create() {
  const CreateFunction create = internal::loadCreateFunction();
  return create ? create(kInterfaceVersion) : nullptr;
}

}  // namespace symsrv_1_0

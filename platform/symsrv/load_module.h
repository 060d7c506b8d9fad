// Opens the module that lies in the directory of the library.

#pragma once

#include "symsrv/symsrv_helper.h"

namespace symsrv_1_0::internal {

/// Returns null when there is no module, or not in that directory: it is opened by its full path
/// alone, so that no other file of its name is ever run. Once open it stays: threads and
/// connections of its libraries outlive any helper.
CreateFunction loadCreateFunction();

}  // namespace symsrv_1_0::internal

// The dump of a search environment for the trace.

#pragma once

#include <string>

#include "quiver/object.h"
#include "quiver/search_dirs.h"
#include "quiver/search_env.h"

namespace QV_2_9 {

/// Returns the ordinary search directories of `category` with their flags, as one line. `env` may
/// be null. Asks the environment's containers, which may be the caller's.
std::wstring searchEnvToString(ObjectPtr<ISearchEnv> env, search_category_t category);

}  // namespace QV_2_9

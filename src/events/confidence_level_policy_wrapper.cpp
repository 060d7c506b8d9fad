// Passes the policy's question on.

#include "events/confidence_level_policy_wrapper.h"

#include "events/locked_callback.h"

namespace QV_2_9 {

bool ConfidenceLevelPolicyWrapper::decideConfidenceLevel(search_category_t category,
                                                         std::int32_t step) {
  if (!m_env)
    return false;
  const LockedCallback<IConfidenceLevelPolicyCallback> policy(
      m_env->getConfidenceLevelPolicyCallback());
  return policy && policy->decideConfidenceLevel(category, step);
}

}  // namespace QV_2_9

// The policy that every search asks: passes the question on to whatever policy callback the search
// environment holds at that moment.

#pragma once

#include <cstdint>

#include "quiver/object.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_env.h"

namespace QV_2_9 {

class ConfidenceLevelPolicyWrapper final : public IConfidenceLevelPolicyCallback {
 public:
  /// `env` may be null.
  explicit ConfidenceLevelPolicyWrapper(const ObjectPtr<ISearchEnv>& env) : m_env(env) {}

  /// Returns false when there is nobody to ask.
  bool decideConfidenceLevel(search_category_t category, std::int32_t step) override;

 private:
  ObjectPtr<ISearchEnv> m_env;
};

}  // namespace QV_2_9

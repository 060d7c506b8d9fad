// A resolution context: nothing but its name.

#pragma once

#include <string>
#include <utility>

#include "quiver/ref_count.h"
#include "quiver/resolution_context.h"

namespace QV_2_9 {

namespace internal {

/// Returns the name under which the context is remembered: empty for none and for one without name.
inline std::wstring contextName(IResolutionContext* context) {
  const wchar_t* name = context ? context->getName() : nullptr;
  return name ? name : L"";
}

}  // namespace internal

class BasicResolutionContext final : public RefCountImpl<IResolutionContext> {
 public:
  explicit BasicResolutionContext(std::wstring name) : m_name(std::move(name)) {}
  explicit BasicResolutionContext(IResolutionContext& other)
      : m_name(internal::contextName(&other)) {}

  const wchar_t* getName() override { return m_name.c_str(); }

 private:
  const std::wstring m_name;
};

}  // namespace QV_2_9

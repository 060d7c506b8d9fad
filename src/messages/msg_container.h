// Takes the text of one rejection; validators build one on the stack for each.

#pragma once

#include <string>

#include "quiver/messages.h"

namespace QV_2_9 {

class MsgContainer final : public IMsgContainer {
 public:
  void setMessage(const wchar_t* text) override { m_text = text; }
  const wchar_t* getMessage() override { return m_text.empty() ? nullptr : m_text.c_str(); }

 private:
  std::wstring m_text;
};

}  // namespace QV_2_9

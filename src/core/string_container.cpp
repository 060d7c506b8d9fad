// The list of suggested resolutions, and its dump.

#include "core/string_container.h"

namespace QV_2_9 {

void StringContainer::add(const wchar_t* text) {
  if (text)
    m_list.emplace_back(text);
}

std::wstring stringContainerToString(const StringContainer& container) {
  std::wstring text = L"[StringContainer: m_list = ";
  for (const std::wstring& element : container.m_list) text += element + L", ";
  text += L"]";
  return text;
}

}  // namespace QV_2_9

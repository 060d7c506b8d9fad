// The directories of a file name, outermost first.
//
// A list remembers which style of path it was taken from: directories of a Windows path are joined
// with '\' again, wherever that happens.

#pragma once

#include <cstddef>
#include <deque>
#include <utility>

#include "paku/path_style.h"
#include "paku/string.h"

namespace PAKU_3_1 {

class StringList final {
 public:
  using value_type = String;
  using const_iterator = std::deque<String>::const_iterator;

  /// An empty list in this system's own style.
  StringList() : m_style(internal::systemPathStyle()) {}
  explicit StringList(PathStyle style) : m_style(style) {}

  void append(const String& text) { m_items.push_back(text); }

  /// On an empty list both do nothing.
  void removeHead() {
    if (!m_items.empty())
      m_items.pop_front();
  }
  void removeTail() {
    if (!m_items.empty())
      m_items.pop_back();
  }

  bool isEmpty() const { return m_items.empty(); }
  std::size_t size() const { return m_items.size(); }
  const_iterator begin() const { return m_items.begin(); }
  const_iterator end() const { return m_items.end(); }

  PathStyle style() const { return m_style; }

 private:
  std::deque<String> m_items;
  PathStyle m_style;
};

}  // namespace PAKU_3_1

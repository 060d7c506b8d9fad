// A tree of files for the built program, for tests.

#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/temp_tree.h"
#include "text_encoding.h"

namespace quiver_tool {

class Program : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return toBytes(m_tree.path(name.c_str())); }
  std::string add(const std::string& name, std::string_view content = "") {
    return toBytes(m_tree.addFile(name.c_str(), content));
  }

  quiver_test::TempTree m_tree;
};

}  // namespace quiver_tool

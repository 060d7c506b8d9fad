// A viewer that searches odd directories.

#pragma once

#include <string>

#include "scenario/viewer.h"

namespace QV_2_9 {

class BadInput : public quiver_test::Viewer {
 protected:
  void addTree(const std::wstring& dir) {
    m_dirs->addSearchDir(scAllFiles, dir.c_str(), true, true);
    m_archives->addSearchDir(scAllFiles, dir.c_str(), true, true);
  }
  void expectNothing(const std::wstring& name) {
    EXPECT_FALSE(findBin(name));
    EXPECT_FALSE(findSym(name, name));
    EXPECT_FALSE(findSrc(name, name));
  }
};

}  // namespace QV_2_9

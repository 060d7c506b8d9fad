// The callback that goes on when memory runs out.

#include "fault/allocation/quiet_callbacks.h"

#include <new>

namespace quiver_test {

FilePtr LastFilesFound::next(QV_2_9::IValidFileIterator& files) const {
  constexpr int kTries = 3;
  for (int i = 1;; ++i) {
    try {
      return files.next();
    } catch (const std::bad_alloc&) {
      if (!m_isStubborn || i == kTries)
        throw;
    }
  }
}

FilePtr LastFilesFound::last(QV_2_9::IValidFileIterator& files) {
  FilePtr last;
  m_count = 0;
  for (FilePtr file = next(files); file; file = next(files)) {
    last = file;
    ++m_count;
  }
  return last;
}

}  // namespace quiver_test

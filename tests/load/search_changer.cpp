// Directories that are there, that come and go, and that never were.

#include "load/search_changer.h"

#include <chrono>
#include <thread>

namespace quiver_load {

using namespace QV_2_9;

namespace {

constexpr std::chrono::milliseconds kPause{1};
constexpr unsigned kChangesOfOneSearch = 100;

}  // namespace

void SearchChanger::run() {
  for (unsigned changes = 1; !m_load.isOver.load(std::memory_order_relaxed); ++changes) {
    m_load.shared.changeDirs([this](SearchSetup& setup) { changeDirs(setup); });
    if (changes % kChangesOfOneSearch == 0) {
      m_load.shared.replace();
      m_load.counts.add(Work::kSearchReplaced);
    }
    std::this_thread::sleep_for(kPause);
  }
}

void SearchChanger::changeDirs(SearchSetup& setup) {
  const auto category = static_cast<search_category_t>(1 + m_random() % 4);
  switch (m_random() % 8) {
    case 0:
    case 1:
      setup.extraDirs().clearSearchDirs(category);
      return m_load.counts.add(Work::kSearchDirsCleared);
    case 2:
      if (setup.addContainer(anyDirectory().c_str()))
        m_load.counts.add(Work::kContainerAdded);
      return;
    default:
      setup.extraDirs().addSearchDir(
          category, anyDirectory().c_str(), m_random() % 2 == 0, m_random() % 2 == 0);
      m_load.counts.add(Work::kSearchDirAdded);
  }
}

std::wstring SearchChanger::anyDirectory() {
  switch (m_random() % 4) {
    case 0:
      return m_load.places.path("moving/0/both/d" + std::to_string(m_random() % 4));
    case 1:
      return m_load.places.path("nowhere");
    default:
      return m_load.places.stillDir(static_cast<int>(m_random() % Places::kStillDirs));
  }
}

}  // namespace quiver_load

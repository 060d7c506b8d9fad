// The table of descriptors: a handful, each in a cell of its own.

#include "paku/own_descriptor_posix.h"

#include <array>
#include <atomic>

namespace PAKU_3_1::internal {
namespace {

constexpr int kEmpty = -1;

struct Cell {
  std::atomic<int> fd = kEmpty;
};
std::array<Cell, 64> s_cells;

bool replaceInTable(int from, int to) {
  for (Cell& cell : s_cells) {
    int expected = from;
    if (cell.fd.compare_exchange_strong(expected, to))
      return true;
  }
  return false;
}

}  // namespace

OwnDescriptor::OwnDescriptor(int fd) : m_fd(fd) {
  if (fd >= 0 && !replaceInTable(kEmpty, fd))
    m_fd = FileDescriptor();
}

OwnDescriptor::~OwnDescriptor() {
  if (m_fd)
    replaceInTable(m_fd.get(), kEmpty);
}

void OwnDescriptor::closeAll() {
  for (Cell& cell : s_cells)
    if (const int fd = cell.fd.exchange(kEmpty); fd != kEmpty)
      close(fd);
}

}  // namespace PAKU_3_1::internal

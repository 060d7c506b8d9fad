// A sequence that grows without moving what it has, and wastes no more than one block.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace PAKU_3_1::internal {

/// Its elements lie in blocks of `BlockSize`, a power of two; those that are not set are zero.
template <class T, std::size_t BlockSize>
class BlockVector final {
 public:
  std::size_t size() const { return m_size; }

  T& operator[](std::size_t i) { return m_blocks[i / BlockSize][i % BlockSize]; }
  const T& operator[](std::size_t i) const { return m_blocks[i / BlockSize][i % BlockSize]; }

  /// Returns where `count` elements are that lie behind each other in one block.
  std::size_t append(std::size_t count) {
    if (m_size % BlockSize + count > BlockSize)
      m_size += BlockSize - m_size % BlockSize;
    const std::size_t at = m_size;
    if (at + count > m_blocks.size() * BlockSize)
      m_blocks.push_back(std::make_unique<T[]>(BlockSize));
    m_size += count;
    return at;
  }

  std::size_t bytes() const {
    return m_blocks.size() * BlockSize * sizeof(T) + m_blocks.capacity() * sizeof(void*);
  }

 private:
  std::vector<std::unique_ptr<T[]>> m_blocks;
  std::size_t m_size = 0;
};

}  // namespace PAKU_3_1::internal

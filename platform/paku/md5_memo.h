// Checksums of files that were read before and have not changed since.
//
// A file is known by its place on the disk, its size and both of its times. Only files that rested
// for a while when they were read are remembered: a change within the same tick of the clock would
// not show, nor would one through a mapping of the file that is still being written. In memory file
// systems no change through a mapping ever shows: their files are read each time.

#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "paku/file_state.h"

namespace PAKU_3_1::internal {

/// Safe to use from several threads.
class Md5Memo final {
 public:
  static constexpr std::size_t kMostFiles = 16384;
  static constexpr std::chrono::seconds kRest{60};

  Md5Memo() = default;
  Md5Memo(const Md5Memo&) = delete;
  Md5Memo& operator=(const Md5Memo&) = delete;

  /// Returns that of the process.
  static Md5Memo& instance();

  /// Returns the checksum of a file in exactly this state. Nothing when it is not remembered.
  std::optional<std::wstring> find(const FileState& state);

  /// Remembers the checksum of a file that was in this state before and after it was read.
  /// `begun` is when reading began, in nanoseconds since 1970.
  void remember(const FileState& state, std::int64_t begun, const std::wstring& md5);

  /// How long a file must have rested. For tests and benchmarks.
  void setRest(std::chrono::nanoseconds rest) { m_rest = rest.count(); }

  void clear();
  std::size_t size();
  std::size_t hits() const { return m_hits; }

 private:
  struct Known {
    FileState state;
    std::wstring md5;
  };
  struct Place {
    std::uint64_t device;
    std::uint64_t file;
    bool operator==(const Place&) const = default;
  };
  struct PlaceHash {
    std::size_t operator()(const Place& place) const {
      return std::hash<std::uint64_t>()(place.file ^ (place.device << 40 | place.device >> 24));
    }
  };

  std::mutex m_lock;         // guards the next two
  std::list<Known> m_known;  // the one used last comes first
  std::unordered_map<Place, std::list<Known>::iterator, PlaceHash> m_byPlace;
  std::atomic<std::int64_t> m_rest = std::chrono::nanoseconds(kRest).count();
  std::atomic<std::size_t> m_hits = 0;
};

/// Returns the time of day in nanoseconds since 1970.
std::int64_t nanosecondsNow();

/// Returns what `read` returns, without reading when the state is known. `state` looks at the open
/// file, nothing when it cannot be told; `read` returns an empty text when reading fails.
template <class State, class Read>
std::wstring rememberedMd5(const State& state, const Read& read) {
  Md5Memo& memo = Md5Memo::instance();
  const std::optional<FileState> before = state();
  if (!before)
    return read();
  if (std::optional<std::wstring> known = memo.find(*before))
    return *std::move(known);
  const std::int64_t begun = nanosecondsNow();
  std::wstring md5 = read();
  if (!md5.empty() && state() == before)
    memo.remember(*before, begun, md5);
  return md5;
}

}  // namespace PAKU_3_1::internal

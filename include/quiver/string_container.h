// The suggested resolutions of one search, as callbacks see them.

#pragma once

namespace QV_2_9 {

/// Collects suggested paths; they are tried in the order added.
///
/// Implemented by: the library.
/// Lifetime: borrowed for the call.
/// Threads: the thread of the search.
/// Failure: a null text is ignored.
class IStringContainer {
 public:
  /// Appends a copy of `text`. Duplicates and empty texts are kept.
  virtual void add(const wchar_t* text) = 0;  // 0

 protected:
  ~IStringContainer() = default;
};

}  // namespace QV_2_9

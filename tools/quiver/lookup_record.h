// The journal of one lookup as numbers, for keeping ten thousand of them.
//
// Lookups look at the same places over and over: each text is kept once, in a pool that all records
// of a run share, and a path as its directory and its last name.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quiver_tool {

/// Numbers texts in the order in which they first came.
class TextPool final {
 public:
  TextPool() = default;
  TextPool(TextPool&&) = default;
  TextPool& operator=(TextPool&&) = default;

  std::int64_t numberOf(std::wstring_view text);
  const std::deque<std::wstring>& texts() const { return m_texts; }

 private:
  std::deque<std::wstring> m_texts;
  std::unordered_map<std::wstring_view, std::int64_t> m_numbers;
};

/// The first number of an event. The page of reports reads them: each is followed by
enum RecordedEvent : std::int64_t {
  kRecordedSuggestion = 1,  ///< text
  kRecordedStep = 2,        ///< step
  kRecordedDirectory = 3,   ///< text, 1 recursive + 2 searched + 4 by an index, entries, text
  kRecordedCandidate = 4,   ///< text of the directory, text of the name, outcome, step value, text
  kRecordedServer = 5,      ///< text of the element, of the identity, of the outcome, bytes
  kRecordedStepEnd = 6,     ///< step, microseconds, text
  kRecordedStepOff = 7,     ///< step, text
  kRecordedEnd = 8,         ///< text
};

enum RecordedOutcome : std::int64_t {
  kOutcomeMissing = 0,
  kOutcomeDuplicate = 1,
  kOutcomeInvalid = 2,
  kOutcomeValid = 3,
};

struct RecordedDirectory {
  std::wstring_view text;
  bool isRecursive = false;
  bool isSearched = false;
  bool isFromIndex = false;
  std::int64_t entries = 0;  ///< Of one that was searched.
  std::wstring_view remark;
};

struct RecordedServer {
  std::wstring_view element;
  std::wstring_view identity;
  std::wstring_view outcome;
  std::int64_t bytes = 0;
};

/// Events one behind the other, each with the count of its numbers in front.
class LookupRecord final {
 public:
  void addSuggestion(TextPool& texts, std::wstring_view path);
  void addStep(std::int64_t step);
  void addDirectory(TextPool& texts, const RecordedDirectory& directory);
  void addCandidate(TextPool& texts,
                    std::wstring_view path,
                    RecordedOutcome outcome,
                    std::int64_t stepValue,
                    std::wstring_view verdict);
  void addServer(TextPool& texts, const RecordedServer& server);
  void addStepEnd(TextPool& texts,
                  std::int64_t step,
                  std::int64_t microseconds,
                  std::wstring_view remark);
  void addStepOff(TextPool& texts, std::int64_t step, std::wstring_view why);
  void addEnd(TextPool& texts, std::wstring_view who);

  bool isEmpty() const { return m_numbers.empty(); }
  /// Returns the events in order.
  std::vector<std::vector<std::int64_t>> events() const;

 private:
  void add(std::initializer_list<std::int64_t> event);

  std::vector<std::int64_t> m_numbers;
};

}  // namespace quiver_tool

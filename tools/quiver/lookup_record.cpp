#include "lookup_record.h"

#include <cstddef>

namespace quiver_tool {

std::int64_t TextPool::numberOf(std::wstring_view text) {
  const auto known = m_numbers.find(text);
  if (known != m_numbers.end())
    return known->second;
  // Elements of a deque stay where they are: the keys are views of them.
  m_texts.emplace_back(text);
  const auto number = static_cast<std::int64_t>(m_texts.size() - 1);
  m_numbers.emplace(m_texts.back(), number);
  return number;
}

void LookupRecord::addSuggestion(TextPool& texts, std::wstring_view path) {
  add({kRecordedSuggestion, texts.numberOf(path)});
}

void LookupRecord::addStep(std::int64_t step) {
  add({kRecordedStep, step});
}

void LookupRecord::addDirectory(TextPool& texts, const RecordedDirectory& directory) {
  const std::int64_t flags = (directory.isRecursive ? 1 : 0) + (directory.isSearched ? 2 : 0) +
                             (directory.isFromIndex ? 4 : 0);
  const std::int64_t text = texts.numberOf(directory.text);
  add({kRecordedDirectory, text, flags, directory.entries, texts.numberOf(directory.remark)});
}

void LookupRecord::addCandidate(TextPool& texts,
                                std::wstring_view path,
                                RecordedOutcome outcome,
                                std::int64_t stepValue,
                                std::wstring_view verdict) {
  const std::size_t separator = path.find_last_of(L"/\\");
  const std::size_t name = separator == std::wstring_view::npos ? 0 : separator + 1;
  const std::int64_t directory = texts.numberOf(path.substr(0, name));
  add({kRecordedCandidate,
       directory,
       texts.numberOf(path.substr(name)),
       outcome,
       stepValue,
       texts.numberOf(verdict)});
}

void LookupRecord::addServer(TextPool& texts, const RecordedServer& server) {
  const std::int64_t element = texts.numberOf(server.element);
  const std::int64_t identity = texts.numberOf(server.identity);
  add({kRecordedServer, element, identity, texts.numberOf(server.outcome), server.bytes});
}

void LookupRecord::addStepEnd(TextPool& texts,
                              std::int64_t step,
                              std::int64_t microseconds,
                              std::wstring_view remark) {
  add({kRecordedStepEnd, step, microseconds, texts.numberOf(remark)});
}

void LookupRecord::addStepOff(TextPool& texts, std::int64_t step, std::wstring_view why) {
  add({kRecordedStepOff, step, texts.numberOf(why)});
}

void LookupRecord::addEnd(TextPool& texts, std::wstring_view who) {
  add({kRecordedEnd, texts.numberOf(who)});
}

std::vector<std::vector<std::int64_t>> LookupRecord::events() const {
  std::vector<std::vector<std::int64_t>> events;
  for (auto at = m_numbers.begin(); at != m_numbers.end();) {
    const auto end = at + 1 + static_cast<std::ptrdiff_t>(*at);
    events.emplace_back(at + 1, end);
    at = end;
  }
  return events;
}

void LookupRecord::add(std::initializer_list<std::int64_t> event) {
  m_numbers.push_back(static_cast<std::int64_t>(event.size()));
  m_numbers.insert(m_numbers.end(), event.begin(), event.end());
}

}  // namespace quiver_tool

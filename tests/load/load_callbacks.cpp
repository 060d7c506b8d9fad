// What the callbacks answer.

#include "load/load_callbacks.h"

#include <chrono>
#include <string>
#include <string_view>
#include <thread>

#include "load/load_messages.h"
#include "quiver/string_container.h"
#include "quiver/validation.h"

namespace quiver_load {
namespace {

/// Counts the calls of this thread, so that the rare answers come in turn.
bool isTurn(unsigned every) {
  thread_local unsigned calls = 0;
  return ++calls % every == 0;
}

/// The time of a call, from its beginning to its end.
class Call final {
 public:
  Call(const LifeMark& mark, const CallbackFrame& frame, Work work)
      : m_mark(mark), m_frame(frame), m_work(work) {
    expectAlive();
    frame.counts.add(work);
    if (isTurn(43))  // a viewer may ask its user
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ~Call() { expectAlive(); }

  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

 private:
  void expectAlive() const {
    if (!m_mark.isAlive())
      m_frame.findings.add(std::string("a callback is gone and called: ") + nameOf(m_work));
  }

  const LifeMark& m_mark;
  const CallbackFrame m_frame;  // a copy: the callback's own may be gone
  const Work m_work;
};

}  // namespace

CallbackAnswers& answersOfThisThread() {
  thread_local CallbackAnswers answers;
  return answers;
}

bool LoadSearchStarted::answer(Text name, QV_2_9::IStringContainer& suggestions) const {
  const Call call(m_mark, m_frame, Work::kSearchStartedCall);
  const StillFile* const still = m_frame.places.stillFile(name);
  if (isTurn(7))
    suggestions.add(still && isTurn(2) ? still->path.c_str()
                                       : m_frame.places.path("still").c_str());
  if (isTurn(89))
    throw CallbackException();
  if (!isTurn(61))
    return true;
  suggestions.add(m_frame.places.path("still").c_str());  // rejected: it is a directory
  answersOfThisThread().isCanceled = true;
  return false;
}

bool LoadSearchStarted::onBinSearchStarted(Text name, QV_2_9::IStringContainer& suggestions) {
  return answer(name, suggestions);
}

bool LoadSearchStarted::onSymSearchStarted(Text name,
                                           Text,
                                           Text,
                                           QV_2_9::IStringContainer& suggestions) {
  return answer(name, suggestions);
}

bool LoadSearchStarted::onSrcSearchStarted(Text name,
                                           Text,
                                           Text,
                                           QV_2_9::IStringContainer& suggestions) {
  return answer(name, suggestions);
}

ValidFile LoadFilesFound::answer(QV_2_9::IValidFileIterator& files) const {
  const Call call(m_mark, m_frame, Work::kFilesFoundCall);
  if (isTurn(31)) {
    answersOfThisThread().isRefused = true;
    return nullptr;
  }
  if (isTurn(17)) {
    while (files.next()) {
    }
    files.reset();
  }
  return files.next();
}

ValidFile LoadFilesFound::onBinFilesFound(Text, QV_2_9::IValidFileIterator& files) {
  return answer(files);
}

ValidFile LoadFilesFound::onSymFilesFound(Text, Text, Text, QV_2_9::IValidFileIterator& files) {
  return answer(files);
}

ValidFile LoadFilesFound::onSrcFilesFound(Text, Text, Text, QV_2_9::IValidFileIterator& files) {
  return answer(files);
}

ValidFile LoadNoFilesFound::answer(Text name,
                                   QV_2_9::IValidator& validator,
                                   QV_2_9::IInvalidFileIterator& invalidFiles,
                                   QV_2_9::IValidFileIterator& validFiles) const {
  const Call call(m_mark, m_frame, Work::kNoFilesFoundCall);
  while (const QV_2_9::ObjectPtr<QV_2_9::IInvalidFile> file = invalidFiles.next()) {
    const std::wstring_view message = file->getErrorMessage();
    if (message == kLoadMessage)
      m_frame.counts.add(Work::kMessageWritten);
    else if (!message.starts_with(L"%"))
      m_frame.findings.add("a rejected file has an unknown message");
  }
  if (ValidFile file = validFiles.next())
    return file;
  const StillFile* const still = m_frame.places.stillFile(name);
  return still ? validator.validate(still->path.c_str())->getValidFile() : nullptr;
}

ValidFile LoadNoFilesFound::onBinNoFilesFound(Text name,
                                              QV_2_9::IValidator& validator,
                                              QV_2_9::IInvalidFileIterator& invalidFiles,
                                              QV_2_9::IValidFileIterator& validFiles) {
  return answer(name, validator, invalidFiles, validFiles);
}

ValidFile LoadNoFilesFound::onSymNoFilesFound(Text name,
                                              Text,
                                              Text,
                                              QV_2_9::IValidator& validator,
                                              QV_2_9::IInvalidFileIterator& invalidFiles,
                                              QV_2_9::IValidFileIterator& validFiles) {
  return answer(name, validator, invalidFiles, validFiles);
}

ValidFile LoadNoFilesFound::onSrcNoFilesFound(Text name,
                                              Text,
                                              Text,
                                              QV_2_9::IValidator& validator,
                                              QV_2_9::IInvalidFileIterator& invalidFiles,
                                              QV_2_9::IValidFileIterator& validFiles) {
  return answer(name, validator, invalidFiles, validFiles);
}

bool LoadPolicy::decideConfidenceLevel(QV_2_9::search_category_t, std::int32_t) {
  const Call call(m_mark, m_frame, Work::kPolicyCall);
  return isTurn(2);
}

}  // namespace quiver_load

// The four callbacks, which answer as viewers may: they suggest, refuse, cancel, walk on and throw.
//
// Each says when it is called after its end. What a callback did in the lookup that runs on this
// thread is in `answersOfThisThread`.

#pragma once

#include "load/findings.h"
#include "load/places.h"
#include "load/work_counts.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_results.h"

namespace quiver_load {

/// What callbacks need; all are borrowed.
struct CallbackFrame {
  const Places& places;
  WorkCounts& counts;
  Findings& findings;
};

/// What callbacks answered in one lookup.
struct CallbackAnswers {
  bool isCanceled = false;
  bool isRefused = false;
};
CallbackAnswers& answersOfThisThread();

/// Leaves through a lookup.
struct CallbackException {};

/// Part of a callback: notices calls after its end. A plain field: the thread sanitizer is to see a
/// call and an end that are not ordered.
class LifeMark final {
 public:
  LifeMark() = default;
  ~LifeMark() { m_mark = kGone; }
  LifeMark(const LifeMark&) = delete;
  LifeMark& operator=(const LifeMark&) = delete;

  bool isAlive() const { return m_mark == kAlive; }

 private:
  static constexpr int kAlive = 0x11FE;
  static constexpr int kGone = 0xDEAD;
  volatile int m_mark = kAlive;  // volatile: the last write is one
};

using ValidFile = QV_2_9::ObjectPtr<QV_2_9::IValidFile>;
using Text = const wchar_t*;

class LoadSearchStarted final : public QV_2_9::ISearchStartedCallback {
 public:
  explicit LoadSearchStarted(const CallbackFrame& frame) : m_frame(frame) {}
  ~LoadSearchStarted() override { disconnectHandlers(); }

  bool onBinSearchStarted(Text name, QV_2_9::IStringContainer& suggestions) override;
  bool onSymSearchStarted(Text name, Text, Text, QV_2_9::IStringContainer& suggestions) override;
  bool onSrcSearchStarted(Text name, Text, Text, QV_2_9::IStringContainer& suggestions) override;

 private:
  bool answer(Text name, QV_2_9::IStringContainer& suggestions) const;

  CallbackFrame m_frame;
  LifeMark m_mark;
};

class LoadFilesFound final : public QV_2_9::IFilesFoundCallback {
 public:
  explicit LoadFilesFound(const CallbackFrame& frame) : m_frame(frame) {}
  ~LoadFilesFound() override { disconnectHandlers(); }

  ValidFile onBinFilesFound(Text, QV_2_9::IValidFileIterator& files) override;
  ValidFile onSymFilesFound(Text, Text, Text, QV_2_9::IValidFileIterator& files) override;
  ValidFile onSrcFilesFound(Text, Text, Text, QV_2_9::IValidFileIterator& files) override;

 private:
  ValidFile answer(QV_2_9::IValidFileIterator& files) const;

  CallbackFrame m_frame;
  LifeMark m_mark;
};

class LoadNoFilesFound final : public QV_2_9::INoFilesFoundCallback {
 public:
  explicit LoadNoFilesFound(const CallbackFrame& frame) : m_frame(frame) {}
  ~LoadNoFilesFound() override { disconnectHandlers(); }

  ValidFile onBinNoFilesFound(Text name,
                              QV_2_9::IValidator& validator,
                              QV_2_9::IInvalidFileIterator& invalidFiles,
                              QV_2_9::IValidFileIterator& validFiles) override;
  ValidFile onSymNoFilesFound(Text name,
                              Text,
                              Text,
                              QV_2_9::IValidator& validator,
                              QV_2_9::IInvalidFileIterator& invalidFiles,
                              QV_2_9::IValidFileIterator& validFiles) override;
  ValidFile onSrcNoFilesFound(Text name,
                              Text,
                              Text,
                              QV_2_9::IValidator& validator,
                              QV_2_9::IInvalidFileIterator& invalidFiles,
                              QV_2_9::IValidFileIterator& validFiles) override;

 private:
  ValidFile answer(Text name,
                   QV_2_9::IValidator& validator,
                   QV_2_9::IInvalidFileIterator& invalidFiles,
                   QV_2_9::IValidFileIterator& validFiles) const;

  CallbackFrame m_frame;
  LifeMark m_mark;
};

class LoadPolicy final : public QV_2_9::IConfidenceLevelPolicyCallback {
 public:
  explicit LoadPolicy(const CallbackFrame& frame) : m_frame(frame) {}
  ~LoadPolicy() override { disconnectHandlers(); }

  bool decideConfidenceLevel(QV_2_9::search_category_t category, std::int32_t step) override;

 private:
  CallbackFrame m_frame;
  LifeMark m_mark;
};

}  // namespace quiver_load

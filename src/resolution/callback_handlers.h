// What a default callback does for one category: ask the user's callback, use the history.
//
// Handlers live on the stack of one callback operation. Each holds one reference on the history and
// borrows the rest. They are written once per kind; what differs between binaries, symbol files and
// source files is in the Ops.

#pragma once

#include "quiver/search_callbacks.h"
#include "quiver/search_history.h"
#include "search/category_ops.h"

namespace QV_2_9 {

class ISearchStartedHandler {
 public:
  /// Returns the answer of the user's callback, true without one.
  virtual bool callUserCallback(IStringContainer& suggestions) = 0;  // 0
  /// Returns null when nothing is remembered.
  virtual ObjectPtr<IFileAssociation> findAssociation() = 0;  // 1

 protected:
  ~ISearchStartedHandler() = default;
};

class IFilesFoundHandler {
 public:
  /// Returns the choice of the user's callback, null without one.
  virtual ObjectPtr<IValidFile> callUserCallback(IValidFileIterator& files) = 0;  // 0
  virtual void addAssociation(const wchar_t* path) = 0;                           // 1

 protected:
  ~IFilesFoundHandler() = default;
};

class INoFilesFoundHandler {
 public:
  /// Returns the choice of the user's callback, null without one.
  virtual ObjectPtr<IValidFile> callUserCallback() = 0;  // 0
  virtual void addAssociation(const wchar_t* path) = 0;  // 1

 protected:
  ~INoFilesFoundHandler() = default;
};

template <class Ops>
class SearchStartedHandler final : public ISearchStartedHandler {
 public:
  SearchStartedHandler(const ObjectPtr<ISearchHistory>& history,
                       ISearchStartedCallback* userCallback,
                       const internal::SoughtFile& file)
      : m_history(history), m_userCallback(userCallback), m_file(file) {}

  bool callUserCallback(IStringContainer& suggestions) override {
    return !m_userCallback || Ops::searchStarted(*m_userCallback, m_file, suggestions);
  }
  ObjectPtr<IFileAssociation> findAssociation() override {
    return Ops::findAssociation(*m_history, m_file);
  }

 private:
  ObjectPtr<ISearchHistory> m_history;
  ISearchStartedCallback* m_userCallback;
  internal::SoughtFile m_file;
};

template <class Ops>
class FilesFoundHandler final : public IFilesFoundHandler {
 public:
  FilesFoundHandler(const ObjectPtr<ISearchHistory>& history,
                    IFilesFoundCallback* userCallback,
                    const internal::SoughtFile& file)
      : m_history(history), m_userCallback(userCallback), m_file(file) {}

  ObjectPtr<IValidFile> callUserCallback(IValidFileIterator& files) override {
    return m_userCallback ? Ops::filesFound(*m_userCallback, m_file, files) : nullptr;
  }
  void addAssociation(const wchar_t* path) override {
    Ops::addAssociation(*m_history, m_file, path);
  }

 private:
  ObjectPtr<ISearchHistory> m_history;
  IFilesFoundCallback* m_userCallback;
  internal::SoughtFile m_file;
};

template <class Ops>
class NoFilesFoundHandler final : public INoFilesFoundHandler {
 public:
  NoFilesFoundHandler(const ObjectPtr<ISearchHistory>& history,
                      INoFilesFoundCallback* userCallback,
                      const internal::SoughtFile& file,
                      IValidator& validator,
                      IInvalidFileIterator& invalidFiles,
                      IValidFileIterator& validFiles)
      : m_history(history),
        m_userCallback(userCallback),
        m_file(file),
        m_validator(validator),
        m_invalidFiles(invalidFiles),
        m_validFiles(validFiles) {}

  ObjectPtr<IValidFile> callUserCallback() override {
    if (!m_userCallback)
      return nullptr;
    return Ops::noFilesFound(*m_userCallback, m_file, m_validator, m_invalidFiles, m_validFiles);
  }
  void addAssociation(const wchar_t* path) override {
    Ops::addAssociation(*m_history, m_file, path);
  }

 private:
  ObjectPtr<ISearchHistory> m_history;
  INoFilesFoundCallback* m_userCallback;
  internal::SoughtFile m_file;
  IValidator& m_validator;
  IInvalidFileIterator& m_invalidFiles;
  IValidFileIterator& m_validFiles;
};

using BinSearchStartedHandler = SearchStartedHandler<internal::BinOps>;
using SymSearchStartedHandler = SearchStartedHandler<internal::SymOps>;
using SrcSearchStartedHandler = SearchStartedHandler<internal::SrcOps>;
using BinFilesFoundHandler = FilesFoundHandler<internal::BinOps>;
using SymFilesFoundHandler = FilesFoundHandler<internal::SymOps>;
using SrcFilesFoundHandler = FilesFoundHandler<internal::SrcOps>;
using BinNoFilesFoundHandler = NoFilesFoundHandler<internal::BinOps>;
using SymNoFilesFoundHandler = NoFilesFoundHandler<internal::SymOps>;
using SrcNoFilesFoundHandler = NoFilesFoundHandler<internal::SrcOps>;

}  // namespace QV_2_9

// Texts for rejected candidates.
//
// The library itself only writes catalogue keys that begin with "%". A client that wants to write
// the final text registers a message object per kind with the message manager; when it writes
// nothing, the key is used. The manager, and with it every registration, exists only while somebody
// holds a reference to it: keep yours for as long as the registrations must apply.

#pragma once

#include "quiver/export.h"
#include "quiver/locks.h"
#include "quiver/object.h"

namespace QV_2_9 {

/// Receives the text of a message.
///
/// Implemented by: the library.
/// Lifetime: borrowed for the call.
/// Threads: the thread of the search.
/// Failure: none.
class IMsgContainer {
 public:
  /// Replaces the text by a copy of `text`, which must not be null.
  virtual void setMessage(const wchar_t* text) = 0;  // 0
  /// Returns the text. Null while it is empty.
  virtual const wchar_t* getMessage() = 0;  // 1

 protected:
  ~IMsgContainer() = default;
};

// Message objects, one interface per kind of rejection. All are alike:
//
// Implemented by: the caller, through `RefCountImpl` (ref_count.h).
// Lifetime: counted. A class used by searches on several threads, or replaced while one runs,
//           passes a lock of its own for the count to `RefCountImpl`, not the lock of a kind; its
//           destructor then asks for no registration and changes none.
// Threads: the thread of the search; several at once when searches run at once.
// Failure: write nothing, and the kind's key is used.
//
// `detail` is the empty text in the library's own calls.

/// A binary whose checksum differs: "%ChecksumMismatch".
class IBinChecksumMismatchMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// A symbol file whose checksum differs: "%ChecksumMismatch".
class ISymChecksumMismatchMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// A source file whose checksum differs: "%ChecksumMismatch".
class ISrcChecksumMismatchMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// A source file of another time: "%ModificationTimeOrSizeMismatch".
class IModificationTimeMismatchMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// A source file of another size: "%ModificationTimeOrSizeMismatch".
class ISizeMismatchMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// A source file newer than its reference file: "%SourceFileUpToDate".
class ISourceFileUpToDateMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// The candidate is a directory: "%FileIsDirectory".
class IFileIsDirectoryMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container) = 0;  // 4
};

/// The candidate cannot be opened: "%CantOpenFile".
class IFileIsNotReadableMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container) = 0;  // 4
};

/// The candidate does not exist: "%FileDoesNotExist".
class IFileDoesNotExistMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container) = 0;  // 4
};

/// For clients; the library never asks it.
class IInvalidSymbolFileMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// For clients; the library never asks it.
class IFileArchMismatchMessage : public IQVObject {
 public:
  virtual void formatMessage(IMsgContainer& container, const wchar_t* detail) = 0;  // 4
};

/// The process-wide registry of message objects.
///
/// For each kind: `set` replaces the registration (null clears it), `get` returns it (null when
/// there is none), and the kind's lock is for a client that replaces a message while searches may
/// run; a search takes its messages when it begins, without that lock, and keeps them to its end.
///
/// Implemented by: the library.
/// Lifetime: counted, one object per process; the last reference ends it.
/// Threads: references may be taken and dropped on any thread; see the locks for the rest.
/// Failure: none.
class IMessageMgr : public IQVObject {
 public:
  virtual void setBinChecksumMismatchMessage(
      ObjectPtr<IBinChecksumMismatchMessage> message) = 0;                             // 4
  virtual ObjectPtr<IBinChecksumMismatchMessage> getBinChecksumMismatchMessage() = 0;  // 5
  virtual ILock* getBinChecksumMismatchMessageLock() = 0;                              // 6
  virtual void setSymChecksumMismatchMessage(
      ObjectPtr<ISymChecksumMismatchMessage> message) = 0;                             // 7
  virtual ObjectPtr<ISymChecksumMismatchMessage> getSymChecksumMismatchMessage() = 0;  // 8
  virtual ILock* getSymChecksumMismatchMessageLock() = 0;                              // 9
  virtual void setSrcChecksumMismatchMessage(
      ObjectPtr<ISrcChecksumMismatchMessage> message) = 0;                             // 10
  virtual ObjectPtr<ISrcChecksumMismatchMessage> getSrcChecksumMismatchMessage() = 0;  // 11
  virtual ILock* getSrcChecksumMismatchMessageLock() = 0;                              // 12
  virtual void setModificationTimeMismatchMessage(
      ObjectPtr<IModificationTimeMismatchMessage> message) = 0;  // 13
  virtual ObjectPtr<IModificationTimeMismatchMessage>
  getModificationTimeMismatchMessage() = 0;                                          // 14
  virtual ILock* getModificationTimeMismatchMessageLock() = 0;                       // 15
  virtual void setSizeMismatchMessage(ObjectPtr<ISizeMismatchMessage> message) = 0;  // 16
  virtual ObjectPtr<ISizeMismatchMessage> getSizeMismatchMessage() = 0;              // 17
  virtual ILock* getSizeMismatchMessageLock() = 0;                                   // 18
  virtual void setSourceFileUpToDateMessage(
      ObjectPtr<ISourceFileUpToDateMessage> message) = 0;                                      // 19
  virtual ObjectPtr<ISourceFileUpToDateMessage> getSourceFileUpToDateMessage() = 0;            // 20
  virtual ILock* getSourceFileUpToDateMessageLock() = 0;                                       // 21
  virtual void setFileIsDirectoryMessage(ObjectPtr<IFileIsDirectoryMessage> message) = 0;      // 22
  virtual ObjectPtr<IFileIsDirectoryMessage> getFileIsDirectoryMessage() = 0;                  // 23
  virtual ILock* getFileIsDirectoryMessageLock() = 0;                                          // 24
  virtual void setFileIsNotReadableMessage(ObjectPtr<IFileIsNotReadableMessage> message) = 0;  // 25
  virtual ObjectPtr<IFileIsNotReadableMessage> getFileIsNotReadableMessage() = 0;              // 26
  virtual ILock* getFileIsNotReadableMessageLock() = 0;                                        // 27
  virtual void setFileDoesNotExistMessage(ObjectPtr<IFileDoesNotExistMessage> message) = 0;    // 28
  virtual ObjectPtr<IFileDoesNotExistMessage> getFileDoesNotExistMessage() = 0;                // 29
  virtual ILock* getFileDoesNotExistMessageLock() = 0;                                         // 30
  virtual void setInvalidSymbolFileMessage(ObjectPtr<IInvalidSymbolFileMessage> message) = 0;  // 31
  virtual ObjectPtr<IInvalidSymbolFileMessage> getInvalidSymbolFileMessage() = 0;              // 32
  virtual ILock* getInvalidSymbolFileMessageLock() = 0;                                        // 33
  virtual void setFileArchMismatchMessage(ObjectPtr<IFileArchMismatchMessage> message) = 0;    // 34
  virtual ObjectPtr<IFileArchMismatchMessage> getFileArchMismatchMessage() = 0;                // 35
  virtual ILock* getFileArchMismatchMessageLock() = 0;                                         // 36

  /// Returns the one manager, making it when there is none.
  QV_API static ObjectPtr<IMessageMgr> create();
};

}  // namespace QV_2_9

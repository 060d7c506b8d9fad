// The process-wide registry of message objects.
//
// There is one manager while somebody holds a reference to it. The manager lock guards its
// creation, its end and its reference count; the destructor runs under it and takes it once more.

#pragma once

#include "messages/message_slot.h"
#include "quiver/messages.h"
#include "quiver/ref_count.h"

namespace QV_2_9 {

class MessageMgr final : public RefCountImpl<IMessageMgr> {
 public:
  static ObjectPtr<IMessageMgr> instance();

  void setBinChecksumMismatchMessage(ObjectPtr<IBinChecksumMismatchMessage> message) override {
    m_binChecksumMismatch.set(message);
  }
  ObjectPtr<IBinChecksumMismatchMessage> getBinChecksumMismatchMessage() override {
    return m_binChecksumMismatch.get();
  }
  ILock* getBinChecksumMismatchMessageLock() override { return m_binChecksumMismatch.lock(); }

  void setSymChecksumMismatchMessage(ObjectPtr<ISymChecksumMismatchMessage> message) override {
    m_symChecksumMismatch.set(message);
  }
  ObjectPtr<ISymChecksumMismatchMessage> getSymChecksumMismatchMessage() override {
    return m_symChecksumMismatch.get();
  }
  ILock* getSymChecksumMismatchMessageLock() override { return m_symChecksumMismatch.lock(); }

  void setSrcChecksumMismatchMessage(ObjectPtr<ISrcChecksumMismatchMessage> message) override {
    m_srcChecksumMismatch.set(message);
  }
  ObjectPtr<ISrcChecksumMismatchMessage> getSrcChecksumMismatchMessage() override {
    return m_srcChecksumMismatch.get();
  }
  ILock* getSrcChecksumMismatchMessageLock() override { return m_srcChecksumMismatch.lock(); }

  void setModificationTimeMismatchMessage(
      ObjectPtr<IModificationTimeMismatchMessage> message) override {
    m_modificationTimeMismatch.set(message);
  }
  ObjectPtr<IModificationTimeMismatchMessage> getModificationTimeMismatchMessage() override {
    return m_modificationTimeMismatch.get();
  }
  ILock* getModificationTimeMismatchMessageLock() override {
    return m_modificationTimeMismatch.lock();
  }

  void setSizeMismatchMessage(ObjectPtr<ISizeMismatchMessage> message) override {
    m_sizeMismatch.set(message);
  }
  ObjectPtr<ISizeMismatchMessage> getSizeMismatchMessage() override { return m_sizeMismatch.get(); }
  ILock* getSizeMismatchMessageLock() override { return m_sizeMismatch.lock(); }

  void setSourceFileUpToDateMessage(ObjectPtr<ISourceFileUpToDateMessage> message) override {
    m_sourceFileUpToDate.set(message);
  }
  ObjectPtr<ISourceFileUpToDateMessage> getSourceFileUpToDateMessage() override {
    return m_sourceFileUpToDate.get();
  }
  ILock* getSourceFileUpToDateMessageLock() override { return m_sourceFileUpToDate.lock(); }

  void setFileIsDirectoryMessage(ObjectPtr<IFileIsDirectoryMessage> message) override {
    m_fileIsDirectory.set(message);
  }
  ObjectPtr<IFileIsDirectoryMessage> getFileIsDirectoryMessage() override {
    return m_fileIsDirectory.get();
  }
  ILock* getFileIsDirectoryMessageLock() override { return m_fileIsDirectory.lock(); }

  void setFileIsNotReadableMessage(ObjectPtr<IFileIsNotReadableMessage> message) override {
    m_fileIsNotReadable.set(message);
  }
  ObjectPtr<IFileIsNotReadableMessage> getFileIsNotReadableMessage() override {
    return m_fileIsNotReadable.get();
  }
  ILock* getFileIsNotReadableMessageLock() override { return m_fileIsNotReadable.lock(); }

  void setFileDoesNotExistMessage(ObjectPtr<IFileDoesNotExistMessage> message) override {
    m_fileDoesNotExist.set(message);
  }
  ObjectPtr<IFileDoesNotExistMessage> getFileDoesNotExistMessage() override {
    return m_fileDoesNotExist.get();
  }
  ILock* getFileDoesNotExistMessageLock() override { return m_fileDoesNotExist.lock(); }

  void setInvalidSymbolFileMessage(ObjectPtr<IInvalidSymbolFileMessage> message) override {
    m_invalidSymbolFile.set(message);
  }
  ObjectPtr<IInvalidSymbolFileMessage> getInvalidSymbolFileMessage() override {
    return m_invalidSymbolFile.get();
  }
  ILock* getInvalidSymbolFileMessageLock() override { return m_invalidSymbolFile.lock(); }

  void setFileArchMismatchMessage(ObjectPtr<IFileArchMismatchMessage> message) override {
    m_fileArchMismatch.set(message);
  }
  ObjectPtr<IFileArchMismatchMessage> getFileArchMismatchMessage() override {
    return m_fileArchMismatch.get();
  }
  ILock* getFileArchMismatchMessageLock() override { return m_fileArchMismatch.lock(); }

 private:
  explicit MessageMgr(ILock* managerLock) : RefCountImpl(managerLock) {}
  ~MessageMgr() override;

  // In the order of the interface; they go in reverse, after the manager has signed off.
  MessageSlot<IBinChecksumMismatchMessage> m_binChecksumMismatch;
  MessageSlot<ISymChecksumMismatchMessage> m_symChecksumMismatch;
  MessageSlot<ISrcChecksumMismatchMessage> m_srcChecksumMismatch;
  MessageSlot<IModificationTimeMismatchMessage> m_modificationTimeMismatch;
  MessageSlot<ISizeMismatchMessage> m_sizeMismatch;
  MessageSlot<ISourceFileUpToDateMessage> m_sourceFileUpToDate;
  MessageSlot<IFileIsDirectoryMessage> m_fileIsDirectory;
  MessageSlot<IFileIsNotReadableMessage> m_fileIsNotReadable;
  MessageSlot<IFileDoesNotExistMessage> m_fileDoesNotExist;
  MessageSlot<IInvalidSymbolFileMessage> m_invalidSymbolFile;
  MessageSlot<IFileArchMismatchMessage> m_fileArchMismatch;
};

}  // namespace QV_2_9

// Cabinets through the system's FDI, which is given the bytes and never a path.
//
// Its callbacks to open a file have no argument of the caller's: what is being expanded is known by
// thread.

#include <windows.h>
#include <cstdlib>
#include <exception>
#include <fdi.h>
#include <memory>
#include <new>

#include "symsrv/cabinet.h"

namespace symsrv_1_0::internal {
namespace {

struct Io {
  IByteSource* source;
  IByteSink* sink;
  bool hasFile = false;
  bool isRefused = false;
  bool cannotWrite = false;
  bool hasNoMemory = false;
  std::exception_ptr thrown = {};  // must not pass through the system's code
};

thread_local Io* t_io = nullptr;

struct Stream {
  bool isInput;
  std::uint64_t position;
};

char g_name[] = "cabinet";
char g_noPath[] = "";

Stream* streamOf(INT_PTR handle) {
  return reinterpret_cast<Stream*>(handle);
}

void* __cdecl allocate(ULONG count) {
  void* const memory = std::malloc(count);
  t_io->hasNoMemory = t_io->hasNoMemory || !memory;
  return memory;
}

void __cdecl release(void* memory) {
  std::free(memory);
}

INT_PTR newStream(bool isInput) {
  Stream* stream = new (std::nothrow) Stream{isInput, 0};
  t_io->hasNoMemory = t_io->hasNoMemory || !stream;
  return stream ? reinterpret_cast<INT_PTR>(stream) : -1;
}

INT_PTR __cdecl openStream(char*, int, int) {
  return newStream(true);
}

UINT __cdecl readStream(INT_PTR handle, void* to, UINT count) {
  Stream& stream = *streamOf(handle);
  IByteSource& source = *t_io->source;
  if (!stream.isInput || stream.position > source.size())
    return static_cast<UINT>(-1);
  const std::uint64_t rest = source.size() - stream.position;
  const UINT got = rest < count ? static_cast<UINT>(rest) : count;
  if (!source.read(stream.position, to, got))
    return static_cast<UINT>(-1);
  stream.position += got;
  return got;
}

UINT __cdecl writeStream(INT_PTR handle, void* from, UINT count) {
  if (streamOf(handle)->isInput)
    return static_cast<UINT>(-1);
  try {
    t_io->cannotWrite = t_io->cannotWrite || !t_io->sink->write(from, count);
  } catch (...) {
    t_io->thrown = std::current_exception();
    t_io->cannotWrite = true;
  }
  return t_io->cannotWrite ? static_cast<UINT>(-1) : count;
}

int __cdecl closeStream(INT_PTR handle) {
  delete streamOf(handle);
  return 0;
}

long __cdecl seekStream(INT_PTR handle, long offset, int mode) {
  Stream& stream = *streamOf(handle);
  std::int64_t base = 0;
  if (mode == SEEK_CUR)
    base = static_cast<std::int64_t>(stream.position);
  else if (mode == SEEK_END)
    base = static_cast<std::int64_t>(t_io->source->size());
  if (base + offset < 0 || base + offset > 0x7FFFFFFF)
    return -1;
  stream.position = static_cast<std::uint64_t>(base + offset);
  return static_cast<long>(stream.position);
}

INT_PTR __cdecl notify(FDINOTIFICATIONTYPE type, FDINOTIFICATION* notification) {
  switch (type) {
    case fdintCOPY_FILE:
      t_io->isRefused = t_io->isRefused || t_io->hasFile;
      t_io->hasFile = true;
      return t_io->isRefused ? -1 : newStream(false);
    case fdintCLOSE_FILE_INFO:
      closeStream(notification->hf);
      return TRUE;
    case fdintPARTIAL_FILE:
    case fdintNEXT_CABINET:
      return -1;
    default:
      return 0;
  }
}

std::string reasonOf(const Io& io, bool isDone) {
  if (io.isRefused)
    return "not a cabinet of one file";
  if (io.cannotWrite)
    return "cannot be written";
  return isDone ? std::string() : "a damaged cabinet";
}

}  // namespace

std::string expandCheckedCabinet(IByteSource& cabinet, IByteSink& to) {
  Io io{&cabinet, &to};
  t_io = &io;
  ERF error{};
  const HFDI expander = FDICreate(allocate,
                                  release,
                                  openStream,
                                  readStream,
                                  writeStream,
                                  closeStream,
                                  seekStream,
                                  cpuUNKNOWN,
                                  &error);
  const bool isDone = expander && FDICopy(expander, g_name, g_noPath, 0, notify, nullptr, nullptr);
  if (expander)
    FDIDestroy(expander);
  t_io = nullptr;
  if (io.thrown)
    std::rethrow_exception(io.thrown);
  // Which says nothing of the cabinet.
  if (!expander || io.hasNoMemory)
    throw std::bad_alloc();
  return reasonOf(io, isDone);
}

}  // namespace symsrv_1_0::internal

// Cabinets through libmspack, which is given the bytes and never a path.

#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <mspack.h>
#include <new>

#include "symsrv/cabinet.h"

namespace symsrv_1_0::internal {
namespace {

const char* const kInput = "in";
const char* const kOutput = "out";

/// What the library calls back. Its first member is the library's own table, so that the table's
/// address is the object's.
struct Io {
  mspack_system table{};
  IByteSource* source = nullptr;
  IByteSink* sink = nullptr;
  std::exception_ptr thrown;  // must not pass through the library
};

// By thread: the library asks for memory with copies of the table too.
thread_local bool t_hasNoMemory = false;

struct Stream {
  Io* io;
  bool isInput;
  std::uint64_t position;
};

Stream* streamOf(mspack_file* file) {
  return reinterpret_cast<Stream*>(file);
}

mspack_file* openStream(mspack_system* self, const char* name, int mode) {
  const bool isInput = std::strcmp(name, kInput) == 0;
  if (isInput != (mode == MSPACK_SYS_OPEN_READ))
    return nullptr;
  auto* const stream = new (std::nothrow) Stream{reinterpret_cast<Io*>(self), isInput, 0};
  t_hasNoMemory = t_hasNoMemory || !stream;
  return reinterpret_cast<mspack_file*>(stream);
}

void closeStream(mspack_file* file) {
  delete streamOf(file);
}

int readStream(mspack_file* file, void* to, int count) {
  Stream& stream = *streamOf(file);
  IByteSource& source = *stream.io->source;
  if (!stream.isInput || count < 0 || stream.position > source.size())
    return -1;
  const std::uint64_t rest = source.size() - stream.position;
  const std::size_t wanted = static_cast<std::size_t>(count);
  const std::size_t got = rest < wanted ? static_cast<std::size_t>(rest) : wanted;
  if (!source.read(stream.position, to, got))
    return -1;
  stream.position += got;
  return static_cast<int>(got);
}

int writeStream(mspack_file* file, void* from, int count) {
  Stream& stream = *streamOf(file);
  if (stream.isInput || count < 0)
    return -1;
  try {
    const std::size_t size = static_cast<std::size_t>(count);
    stream.position += size;
    return stream.io->sink->write(from, size) ? count : -1;
  } catch (...) {
    stream.io->thrown = std::current_exception();
    return -1;
  }
}

int seekStream(mspack_file* file, off_t offset, int mode) {
  Stream& stream = *streamOf(file);
  off_t base = 0;
  if (mode == MSPACK_SYS_SEEK_CUR)
    base = static_cast<off_t>(stream.position);
  else if (mode == MSPACK_SYS_SEEK_END)
    base = static_cast<off_t>(stream.io->source->size());
  if (offset < -base)
    return -1;
  stream.position = static_cast<std::uint64_t>(base + offset);
  return 0;
}

off_t tellStream(mspack_file* file) {
  return static_cast<off_t>(streamOf(file)->position);
}

void ignoreMessage(mspack_file*, const char*, ...) {}

void* allocate(mspack_system*, std::size_t count) {
  void* const memory = std::malloc(count);
  t_hasNoMemory = t_hasNoMemory || !memory;
  return memory;
}

void copyBytes(void* from, void* to, std::size_t count) {
  std::memcpy(to, from, count);
}

std::string reasonOf(int error) {
  switch (error) {
    case MSPACK_ERR_OK:
      return {};
    case MSPACK_ERR_WRITE:
      return "cannot be written";
    default:
      return "a damaged cabinet";
  }
}

std::string extract(mscab_decompressor* expander) {
  mscabd_cabinet* cabinet = expander->open(expander, kInput);
  if (!cabinet)
    return reasonOf(expander->last_error(expander));
  const bool hasOneFile = cabinet->files && !cabinet->files->next;
  const int error = hasOneFile ? expander->extract(expander, cabinet->files, kOutput) : 0;
  expander->close(expander, cabinet);
  return hasOneFile ? reasonOf(error) : "not a cabinet of one file";
}

}  // namespace

std::string expandCheckedCabinet(IByteSource& cabinet, IByteSink& to) {
  Io io;
  io.table = {openStream,
              closeStream,
              readStream,
              writeStream,
              seekStream,
              tellStream,
              ignoreMessage,
              allocate,
              std::free,
              copyBytes,
              nullptr};
  io.source = &cabinet;
  io.sink = &to;
  t_hasNoMemory = false;
  const std::unique_ptr<mscab_decompressor, decltype(&mspack_destroy_cab_decompressor)> expander(
      mspack_create_cab_decompressor(&io.table), &mspack_destroy_cab_decompressor);
  std::string reason = expander ? extract(expander.get()) : std::string();
  if (io.thrown)
    std::rethrow_exception(io.thrown);
  // Which says nothing of the cabinet.
  if (!expander || t_hasNoMemory)
    throw std::bad_alloc();
  return reason;
}

}  // namespace symsrv_1_0::internal

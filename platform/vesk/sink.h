// Where trace lines go: one sink for the whole process, standard error unless another is set.
//
// Every line is handed over under one process-wide lock, so lines of different threads never mix.

#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace vesk_1_8 {

/// One trace line; texts are UTF-8.
struct Record {
  std::string channel;
  std::string scope;
  std::string source;
  int line = 0;
  std::string text;
};

/// Takes trace lines, one at a time. Must not trace itself.
class ISink {
 public:
  virtual ~ISink() = default;
  virtual void write(const Record& record) = 0;
};

/// Writes `[channel] scope (source:line): text` and a line end to standard error, unbuffered. What
/// would break a line or steer a terminal is written as \xNN. A debugger that listens gets the line
/// as well, on systems that have a channel for that.
std::shared_ptr<ISink> makeStderrSink();

/// The same, appended to a file that is flushed after each line. Null when it cannot be opened.
std::shared_ptr<ISink> makeFileSink(const std::filesystem::path& file);

/// Makes `sink` the process's sink; null stands for standard error. Returns the one before. No line
/// reaches the old sink once this has returned.
std::shared_ptr<ISink> setSink(std::shared_ptr<ISink> sink);

/// Hands a line to the process's sink.
void writeToSink(const Record& record);

}  // namespace vesk_1_8

// The process's sink, its lock, and the two sinks that write text, which are spdlog's.

#include "vesk/sink.h"

#include <fmt/format.h>
#include <mutex>
#include <spdlog/details/log_msg.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <string_view>
#include <utility>

#include "vesk/debugger.h"

namespace vesk_1_8 {
namespace {

struct ProcessSink {
  std::mutex mutex;  // guards the pointer, and is held while a line is written
  std::shared_ptr<ISink> sink;
};

// Made when the library is loaded, not with the first line: it must outlive the objects of the
// program that make lookups.
ProcessSink s_process;

bool isControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code < 0x20 || code == 0x7F;
}

// File names may hold line breaks and escape sequences; a line of the log may not.
std::string withoutControls(std::string_view text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string clean;
  clean.reserve(text.size());
  for (const char c : text) {
    if (!isControl(c)) {
      clean += c;
      continue;
    }
    const auto code = static_cast<unsigned char>(c);
    clean += "\\x";
    clean += kDigits[code >> 4];
    clean += kDigits[code & 0xF];
  }
  return clean;
}

std::string lineOf(const Record& record) {
  return withoutControls(fmt::format("[{}] {} ({}:{}): {}",
                                     record.channel,
                                     record.scope,
                                     record.source,
                                     record.line,
                                     record.text));
}

// The process's lock makes the target's own one unnecessary.
void writeLine(spdlog::sinks::sink& target, const Record& record, const std::string& line) {
  target.log({record.channel, spdlog::level::info, line});
  target.flush();
}

std::unique_ptr<spdlog::formatter> makeFormatter() {
  return std::make_unique<spdlog::pattern_formatter>("%v", spdlog::pattern_time_type::local, "\n");
}

class StderrSink final : public ISink {
 public:
  void write(const Record& record) override {
    const std::string line = lineOf(record);
    // Made for each line: the stream may lead elsewhere since the last one.
    spdlog::sinks::stderr_sink_st target;
    target.set_formatter(makeFormatter());
    writeLine(target, record, line);
    showInDebugger(line);
  }
};

class FileSink final : public ISink {
 public:
  explicit FileSink(const std::filesystem::path& file) : m_target(file.native()) {
    m_target.set_formatter(makeFormatter());
  }

  void write(const Record& record) override { writeLine(m_target, record, lineOf(record)); }

 private:
  spdlog::sinks::basic_file_sink_st m_target;
};

}  // namespace

std::shared_ptr<ISink> makeStderrSink() {
  return std::make_shared<StderrSink>();
}

std::shared_ptr<ISink> makeFileSink(const std::filesystem::path& file) {
  try {
    return std::make_shared<FileSink>(file);
  } catch (const spdlog::spdlog_ex&) {
    return nullptr;
  }
}

std::shared_ptr<ISink> setSink(std::shared_ptr<ISink> sink) {
  const std::lock_guard<std::mutex> guard(s_process.mutex);
  s_process.sink.swap(sink);
  return sink;
}

void writeToSink(const Record& record) {
  const std::lock_guard<std::mutex> guard(s_process.mutex);
  if (!s_process.sink)
    s_process.sink = makeStderrSink();
  s_process.sink->write(record);
}

}  // namespace vesk_1_8

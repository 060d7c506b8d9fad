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

ProcessSink& processSink() {
  static ProcessSink instance;
  return instance;
}

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

// Writes records through a spdlog sink; the process's lock makes its own one unnecessary.
class TextSink final : public ISink {
 public:
  TextSink(std::unique_ptr<spdlog::sinks::sink> target, bool showsInDebugger)
      : m_target(std::move(target)), m_showsInDebugger(showsInDebugger) {
    m_target->set_formatter(
        std::make_unique<spdlog::pattern_formatter>("%v", spdlog::pattern_time_type::local, "\n"));
  }

  void write(const Record& record) override {
    const std::string line = withoutControls(fmt::format("[{}] {} ({}:{}): {}",
                                                         record.channel,
                                                         record.scope,
                                                         record.source,
                                                         record.line,
                                                         record.text));
    m_target->log({record.channel, spdlog::level::info, line});
    m_target->flush();
    if (m_showsInDebugger)
      showInDebugger(line);
  }

 private:
  std::unique_ptr<spdlog::sinks::sink> m_target;
  const bool m_showsInDebugger;
};

}  // namespace

std::shared_ptr<ISink> makeStderrSink() {
  return std::make_shared<TextSink>(std::make_unique<spdlog::sinks::stderr_sink_st>(), true);
}

std::shared_ptr<ISink> makeFileSink(const std::filesystem::path& file) {
  try {
    return std::make_shared<TextSink>(
        std::make_unique<spdlog::sinks::basic_file_sink_st>(file.native()), false);
  } catch (const spdlog::spdlog_ex&) {
    return nullptr;
  }
}

std::shared_ptr<ISink> setSink(std::shared_ptr<ISink> sink) {
  ProcessSink& process = processSink();
  const std::lock_guard<std::mutex> guard(process.mutex);
  process.sink.swap(sink);
  return sink;
}

void writeToSink(const Record& record) {
  ProcessSink& process = processSink();
  const std::lock_guard<std::mutex> guard(process.mutex);
  if (!process.sink)
    process.sink = makeStderrSink();
  process.sink->write(record);
}

}  // namespace vesk_1_8

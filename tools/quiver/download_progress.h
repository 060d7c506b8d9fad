// What a person sees of a download, and the way to stop it.

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "interrupt.h"
#include "quiver/symbol_download.h"

namespace quiver_tool {

/// Returns one line for a terminal, 60 columns at most, such as "downloading  1.5 of 3.0 MiB  50
/// %". `total` is 0 when nobody knows; both are KiB.
std::string progressLine(std::int32_t done, std::int32_t total);

/// Shows a line that is written over and over, and gives the download up after Ctrl-C.
class DownloadProgress final : public QV_2_9::ISymbolDownloadProgress {
 public:
  /// `write` gets the bytes for the terminal; an empty function shows nothing.
  explicit DownloadProgress(std::function<void(const std::string&)> write);

  void start(std::int32_t value) override;
  void progress(std::int32_t value) override;
  void finish() override;
  bool isCanceled() override;

  /// Returns true when a download was given up because of Ctrl-C.
  bool wasInterrupted() const { return m_wasInterrupted; }

 private:
  void show(const std::string& line);

  std::function<void(const std::string&)> m_write;
  std::optional<InterruptWatch> m_watch;
  std::string m_shown;
  std::int32_t m_total = 0;
  bool m_wasInterrupted = false;
};

}  // namespace quiver_tool

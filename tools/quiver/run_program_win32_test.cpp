// The runner behind run_program.h: streams go to files, so that no amount of output can block.

#include <windows.h>
#include <map>
#include <stdexcept>
#include <string_view>

#include "run_program.h"
#include "support/temp_tree.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

[[noreturn]] void fail(const char* what) {
  throw std::runtime_error(std::string(what) + ": error " + std::to_string(GetLastError()));
}

class Handle final {
 public:
  explicit Handle(HANDLE handle) : m_handle(handle) {}
  ~Handle() {
    if (m_handle && m_handle != INVALID_HANDLE_VALUE)
      CloseHandle(m_handle);
  }

  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  HANDLE get() const { return m_handle; }

 private:
  HANDLE m_handle;
};

/// Opens for the child and this process, which reads it afterwards.
HANDLE openForChild(const std::wstring& file) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  const HANDLE handle = CreateFileW(file.c_str(),
                                    GENERIC_READ | GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    &inherited,
                                    OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL,
                                    nullptr);
  if (handle == INVALID_HANDLE_VALUE)
    fail("file for a stream");
  return handle;
}

HANDLE pipeWithoutReader() {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE reader = nullptr;
  HANDLE writer = nullptr;
  if (!CreatePipe(&reader, &writer, &inherited, 0))
    fail("pipe");
  CloseHandle(reader);
  return writer;
}

HANDLE outputHandle(OutputTo output, const std::wstring& file) {
  switch (output) {
    case OutputTo::Capture:
      return openForChild(file);
    case OutputTo::ClosedPipe:
      return pipeWithoutReader();
    case OutputTo::ClosedStream:
      return nullptr;
    case OutputTo::FullDevice:
      break;
  }
  throw std::runtime_error("Windows has no device that is always full");
}

std::string contentOf(HANDLE file) {
  std::string content;
  char buffer[4096];
  DWORD size = 0;
  SetFilePointer(file, 0, nullptr, FILE_BEGIN);
  while (ReadFile(file, buffer, sizeof buffer, &size, nullptr) && size > 0)
    content.append(buffer, size);
  return content;
}

/// A word such that the program gets it back as it is.
std::wstring quoted(const std::wstring& word) {
  std::wstring result = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"')
      result.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    result += c;
  }
  return result.append(backslashes, L'\\') + L'"';
}

std::wstring commandLine(const std::vector<std::string>& arguments) {
  std::wstring line = quoted(toWide(QUIVER_PROGRAM));
  for (const std::string& argument : arguments) line += L' ' + quoted(toWide(argument));
  return line;
}

/// The test's own environment without the variables that lookups read, plus the settings'.
std::vector<wchar_t> environmentBlock(const RunSettings& settings) {
  std::map<std::wstring, std::wstring> variables;
  wchar_t* const own = GetEnvironmentStringsW();
  for (const wchar_t* entry = own; *entry; entry += std::wstring_view(entry).size() + 1) {
    const std::wstring text = entry;
    const std::size_t end = text.find(L'=', 1);
    variables[text.substr(0, end)] = text.substr(end + 1);
  }
  FreeEnvironmentStringsW(own);
  for (const wchar_t* name : {L"PATH", L"_NT_SYMBOL_PATH", L"QUIVER_DEBUG"}) variables.erase(name);
  for (const std::string& setting : settings.environment) {
    const std::size_t end = setting.find('=');
    variables[toWide(setting.substr(0, end))] = toWide(setting.substr(end + 1));
  }
  std::vector<wchar_t> block;
  for (const auto& [name, value] : variables) {
    const std::wstring entry = name + L'=' + value;
    block.insert(block.end(), entry.c_str(), entry.c_str() + entry.size() + 1);
  }
  block.push_back(L'\0');
  return block;
}

/// Wine gives up on about one of some thousand new processes before the program's first
/// instruction, with an error that Windows has no cause for. Then it is tried again.
PROCESS_INFORMATION start(const std::vector<std::string>& arguments,
                          const RunSettings& settings,
                          STARTUPINFOW& startup) {
  std::vector<wchar_t> environment = environmentBlock(settings);
  const std::wstring directory = toWide(settings.directory);
  PROCESS_INFORMATION process = {};
  for (int tries = 3;; --tries) {
    std::wstring line = commandLine(arguments);
    if (CreateProcessW(toWide(QUIVER_PROGRAM).c_str(),
                       line.data(),
                       nullptr,
                       nullptr,
                       TRUE,
                       CREATE_UNICODE_ENVIRONMENT,
                       environment.data(),
                       directory.empty() ? nullptr : directory.c_str(),
                       &startup,
                       &process))
      return process;
    if (GetLastError() != ERROR_INTERNAL_ERROR || tries == 1)
      fail(QUIVER_PROGRAM);
  }
}

int waitFor(const PROCESS_INFORMATION& process) {
  const Handle child(process.hProcess);
  const Handle thread(process.hThread);
  DWORD status = 0;
  if (WaitForSingleObject(child.get(), INFINITE) != WAIT_OBJECT_0 ||
      !GetExitCodeProcess(child.get(), &status))
    fail("wait");
  return status < 0x80000000u ? static_cast<int>(status) : -1;
}

}  // namespace

RunResult runProgram(const std::vector<std::string>& arguments, const RunSettings& settings) {
  const quiver_test::TempTree tree;
  const Handle out(outputHandle(settings.output, tree.path("out")));
  const Handle err(openForChild(tree.path("err")));
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = out.get();
  startup.hStdError = err.get();

  RunResult result;
  result.status = waitFor(start(arguments, settings, startup));
  if (settings.output == OutputTo::Capture)
    result.out = contentOf(out.get());
  result.err = contentOf(err.get());
  return result;
}

}  // namespace quiver_tool

// Recorded device paths turned into paths of this machine, and the directories of Windows.

#include "os/windows_specific_routines.h"

#include "os/drives.h"
#include "os/letter_case.h"
#include "os/path_utils.h"
#include "os/symbol_path.h"
#include "search/search_step.h"

namespace QV_2_9 {
namespace {

constexpr std::int32_t kNotWindows = 2;

constexpr std::wstring_view kObjectPrefix = L"\\??\\";
constexpr std::wstring_view kSystemRoot = L"\\SystemRoot\\";
constexpr std::wstring_view kRedirector = L"\\Device\\LanmanRedirector";

bool isSeparator(wchar_t c) {
  return c == L'/' || c == L'\\';
}

/// Hands the candidates of one name to the results.
class Offers final {
 public:
  Offers(win::IWindowsSystem& system, const std::wstring& name, ISearchResultsContainer& results)
      : m_system(system), m_name(name), m_results(results) {}

  bool run() {
    std::wstring_view rest = m_name;
    if (rest.starts_with(kObjectPrefix)) {
      rest.remove_prefix(kObjectPrefix.size());
      if (offer(std::wstring(rest)))
        return true;
    }
    // Intended: what follows is relative, so it is looked for in the current directory.
    if (begins(rest, kSystemRoot)) {
      rest.remove_prefix(kSystemRoot.size());
      if (offer(std::wstring(rest)))
        return true;
    }
    if (begins(rest, kRedirector) &&
        offer(std::wstring(L"\\").append(rest.substr(kRedirector.size()))))
      return true;
    return offerOnDrives(rest);
  }

 private:
  static bool begins(std::wstring_view text, std::wstring_view prefix) {
    return internal::startsWithIgnoreCase(std::wstring(text).c_str(), std::wstring(prefix).c_str());
  }

  bool offer(const std::wstring& candidate) {
    bool stop = false;
    return m_results.addFoundFile(
        candidate.c_str(), internal::stepValue(ssAbsoluteNameLookup, false), stop);
  }

  bool offerOnDrives(std::wstring_view rest) {
    std::vector<std::wstring> drives;
    if (!getLogicalDrives(m_system, drives))
      return false;
    for (const std::wstring& root : drives) {
      const bool isRooted = !rest.empty() && isSeparator(rest.front());
      if (isRooted && offer(root + std::wstring(rest.substr(1))))
        return true;
      if (offerOnDevice(root.substr(0, 1) + L':'))
        return true;
    }
    return false;
  }

  /// Intended: the whole name is compared, prefixes included; a device name need not end where a
  /// component ends; and a drive without a device name matches every name.
  bool offerOnDevice(const std::wstring& drive) {
    const std::wstring device = queryDosDevice(m_system, drive.c_str());
    if (!begins(m_name, device))
      return false;
    for (std::wstring below = m_name.substr(device.size()); !below.empty();
         below = dropFirstDirectory(below.c_str())) {
      const wchar_t* const separator = below.front() == L'\\' ? L"" : L"\\";
      std::wstring path = drive;
      path.append(separator).append(below);
      if (offer(path))
        return true;
    }
    return false;
  }

  win::IWindowsSystem& m_system;
  const std::wstring& m_name;
  ISearchResultsContainer& m_results;
};

/// Adds a directory below the one that Windows is installed in; nothing when that is not known.
void addBelowSystemRoot(const wchar_t* below, bool recursive, ISearchDirectoryContainer& dirs) {
  const std::wstring root = getEnvironmentVariable(L"SYSTEMROOT");
  if (!root.empty())
    dirs.addDirectory((root + below).c_str(), recursive);
}

}  // namespace

bool WindowsSpecificRoutines::findByAbsoluteName(const wchar_t* name,
                                                 ISearchResultsContainer& results,
                                                 std::int32_t osType) {
  if (osType == kNotWindows || isEmpty(name))
    return false;
  const std::wstring recorded = name;
  return Offers(m_system, recorded, results).run();
}

void WindowsSpecificRoutines::splitPathList(const wchar_t* list, std::vector<std::wstring>& out) {
  splitString(list, L';', out);
}

void WindowsSpecificRoutines::addSystemBinaryDirs(ISearchDirectoryContainer& dirs) {
  addBelowSystemRoot(L"\\System32", false, dirs);
  addDirsFromEnvironment(L"PATH", dirs);
}

void WindowsSpecificRoutines::addCommonSystemDirs(ISearchDirectoryContainer&) {}

void WindowsSpecificRoutines::addDriverDirs(ISearchDirectoryContainer& dirs) {
  addBelowSystemRoot(L"\\System32\\Drivers", false, dirs);
}

void WindowsSpecificRoutines::addSymbolPathDirs(ISearchDirectoryContainer& dirs) {
  internal::addSymbolPathElements(dirs);
  addBelowSystemRoot(L"\\Symbols", true, dirs);
}

}  // namespace QV_2_9

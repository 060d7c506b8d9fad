// Promises about recorded device paths: what is offered is bounded, and nothing follows what was
// taken.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_entries.h"
#include "fuzz_input.h"
#include "os/fake_windows_system.h"
#include "os/path_utils.h"
#include "os/windows_specific_routines.h"

namespace quiver_fuzz {
namespace {

using quiver_test::FakeDrive;
using quiver_test::FakeWindowsSystem;

/// Takes one of the candidates, and minds any that comes later.
class Taker final : public QV_2_9::ISearchResultsContainer {
 public:
  explicit Taker(std::size_t taken) : m_taken(taken) {}

  bool addFoundFile(const wchar_t* path, std::uint32_t, bool& stop) override {
    require(path != nullptr && !hasTaken());
    stop = false;
    m_offered.emplace_back(path);
    return hasTaken();
  }

  bool hasTaken() const { return m_offered.size() > m_taken; }
  const std::vector<std::wstring>& offered() const { return m_offered; }

 private:
  std::size_t m_taken;
  std::vector<std::wstring> m_offered;
};

std::vector<FakeDrive> drivesOf(FuzzInput& input) {
  std::vector<FakeDrive> drives;
  for (unsigned count = input.below(5); count > 0; --count) {
    const auto letter = static_cast<wchar_t>(L'A' + input.below(26));
    const unsigned type = input.below(7);
    std::wstring device = input.line();
    if (device.size() > 200)
      device.resize(200);  // the system has no longer ones
    drives.push_back({{letter, L':', L'\\'}, type, std::move(device)});
  }
  return drives;
}

}  // namespace

void fuzzDevicePath(std::string_view bytes) {
  constexpr std::size_t kNone = SIZE_MAX - 1;
  constexpr std::int32_t kNotWindows = 2;
  FuzzInput input(bytes);
  FakeWindowsSystem system(drivesOf(input));
  system.failingListing = static_cast<int>(input.below(8));
  const std::int32_t type = static_cast<std::int32_t>(input.below(4));
  const std::size_t taken = input.below(6);
  const std::wstring name = input.line();
  QV_2_9::WindowsSpecificRoutines routines(system);

  Taker none(kNone);
  require(!routines.findByAbsoluteName(name.c_str(), none, type));
  require(type != kNotWindows || none.offered().empty());
  require(!name.empty() || none.offered().empty());
  // Three prefixes; on each of four drives one more, and one per directory.
  require(none.offered().size() <= 3 + 4 * (2 + name.size()));
  for (const std::wstring& path : none.offered()) require(path.size() <= name.size() + 3);

  if (system.failingListing != 0)
    return;  // its calls are counted
  Taker one(taken);
  const bool isFound = routines.findByAbsoluteName(name.c_str(), one, type);
  require(isFound == (none.offered().size() > taken));
  for (std::size_t i = 0; i < one.offered().size(); ++i)
    require(one.offered()[i] == none.offered()[i]);
}

}  // namespace quiver_fuzz

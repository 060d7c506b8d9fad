#include "debug_file_places_posix.h"

#include <sys/stat.h>
#include <vector>

namespace quiver_tool {
namespace {

constexpr const char* kRoot = "/usr/lib/debug";

bool isToBeAvoided(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

std::string baseOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::string directoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

void addPlaceOfBuildId(Dwfl_Module* module, std::vector<std::string>& places) {
  const unsigned char* bytes = nullptr;
  GElf_Addr address = 0;
  const int count = dwfl_module_build_id(module, &bytes, &address);
  if (count <= 1)
    return;
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string place = std::string(kRoot) + "/.build-id/";
  for (int i = 0; i < count; ++i) {
    place += kDigits[bytes[i] >> 4];
    place += kDigits[bytes[i] & 0xF];
    if (i == 0)
      place += '/';
  }
  places.push_back(place + ".debug");
}

// Below the root the directory of the module counts, and each of its tails.
void addPlacesBelowRoot(const std::string& directory,
                        const std::string& name,
                        std::vector<std::string>& places) {
  for (std::size_t at = directory.find('/'); at != std::string::npos;
       at = directory.find('/', at + 1))
    places.push_back(kRoot + directory.substr(at) + name);
}

void addPlacesOf(const std::string& directory,
                 const std::string& name,
                 std::vector<std::string>& places) {
  places.push_back(directory + name);
  places.push_back(directory + ".debug/" + name);
  addPlacesBelowRoot(directory, name, places);
  // Those of the file that several debug files share.
  const std::string base = baseOf(name);
  places.push_back(name);
  places.push_back(directory + ".dwz/" + base);
  places.push_back(std::string(kRoot) + "/" + base);
  places.push_back(std::string(kRoot) + "/.dwz/" + base);
}

}  // namespace

std::string debugFilePlaceToAvoid(Dwfl_Module* module, const char* file, const char* link) {
  std::vector<std::string> places;
  addPlaceOfBuildId(module, places);
  const std::string path = file ? file : "";
  if (link)
    addPlacesOf(directoryOf(path), link, places);
  else
    addPlacesOf(directoryOf(path), baseOf(path) + ".debug", places);
  if (!link)
    addPlacesBelowRoot(directoryOf(path), baseOf(path), places);
  for (const std::string& place : places) {
    if (isToBeAvoided(place))
      return place;
  }
  return "";
}

}  // namespace quiver_tool

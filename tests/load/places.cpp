// Makes the trees.

#include "load/places.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace quiver_load {
namespace {

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file)
    throw std::runtime_error("cannot be read: " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string twoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string firstLineOf(const std::filesystem::path& path) {
  const std::string text = contentOf(path);
  return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

Places::Places(const std::filesystem::path& realFiles) {
  for (int number = 0; number < kStillDirs; ++number) addStill(number);
  for (int area = 0; area < kAreas; ++area) {
    for (const char* kind : {"right", "wrong", "both"})
      m_tree.addDirectory("moving/" + std::to_string(area) + "/" + kind);
    m_tree.addDirectory("staging/" + std::to_string(area));
  }
  m_tree.addFile("recorded/recorded.cpp", kRecorded);
  addReal(realFiles);
}

/// A link that leads from one of the directories into another is never used as a way by whoever
/// changes files.
void Places::addStill(int number) {
  const std::string dir = "still/" + twoDigits(number) + "/deeper/";
  const bool hasDecoy = number % 2 == 0;
  for (const bool isSource : {true, false}) {
    const std::string name =
        (isSource ? "still" : "libstill") + std::to_string(number) + (isSource ? ".cpp" : ".so");
    StillFile file{quiver_test::toWide(name),
                   m_tree.addFile(dir + name, "content of " + name + "\n"),
                   {},
                   isSource ? QV_2_9::scSourceFiles : QV_2_9::scBinaryFiles};
    if (hasDecoy)
      file.decoy = m_tree.addFile("decoy/" + name, kOther);
    m_still.push_back(std::move(file));
  }
  m_tree.addLink("still/" + twoDigits(number) + "/link", m_tree.path("recorded"));
}

void Places::addReal(const std::filesystem::path& realFiles) {
  const auto copied = [&](const std::string& name, const std::string& as) {
    return m_tree.addFile(as, contentOf(realFiles / name));
  };
  const std::string id = firstLineOf(realFiles / "hello.id");
  copied("hello.debug", "store/.build-id/" + id.substr(0, 2) + "/" + id.substr(2) + ".debug");
  copied("anonymous.debug", "steady/anonymous.debug");
  const auto add = [&](const char* binary, const char* symbols, SymbolSource source) {
    m_binaries.push_back({copied(binary, std::string("binaries/") + binary),
                          quiver_test::toWide(symbols),
                          quiver_test::toWide(realFiles / symbols),
                          contentOf(realFiles / symbols),
                          source});
  };
  add("hello", "hello.debug", SymbolSource::kStore);
  add("tiny64.exe", "tiny64.pdb", SymbolSource::kServer);
  add("anonymous", "anonymous.debug", SymbolSource::kSteady);
}

std::wstring Places::stillDir(int number) const {
  return path("still/" + twoDigits(number));
}

const StillFile* Places::stillFile(std::wstring_view recorded) const {
  const std::size_t end = recorded.find_last_of(L"/\\");
  const std::wstring_view name =
      end == std::wstring_view::npos ? recorded : recorded.substr(end + 1);
  const auto found = std::ranges::find(m_still, name, &StillFile::name);
  return found == m_still.end() ? nullptr : &*found;
}

}  // namespace quiver_load

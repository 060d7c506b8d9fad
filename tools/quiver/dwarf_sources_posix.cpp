#include "dwarf_sources_posix.h"

#include <cstring>
#include <dwarf.h>
#include <elfutils/libdwfl.h>
#include <gelf.h>
#include <memory>
#include <set>
#include <stdlib.h>
#include <string_view>

#include "debug_file_places_posix.h"
#include "line_table.h"

namespace quiver_tool {
namespace {

/// What the search for the debug file was given up for; belongs to the module.
using PlaceToAvoid = std::string;

int findDebugFile(Dwfl_Module* module,
                  void** placeToAvoid,
                  const char* name,
                  Dwarf_Addr base,
                  const char* file,
                  const char* link,
                  GElf_Word checksum,
                  char** found) {
  const std::string place = debugFilePlaceToAvoid(module, file, link);
  if (place.empty())
    return dwfl_standard_find_debuginfo(
        module, placeToAvoid, name, base, file, link, checksum, found);
  *static_cast<PlaceToAvoid*>(*placeToAvoid) = place;
  return -1;
}

char* debugFilePath = const_cast<char*>(kDebugFilePath);

constexpr Dwfl_Callbacks kCallbacks = {
    dwfl_build_id_find_elf, findDebugFile, dwfl_offline_section_address, &debugFilePath};

struct DwflEnd {
  void operator()(Dwfl* dwfl) const { dwfl_end(dwfl); }
};

/// Returns the section with the line tables; empty for files that are not little-endian.
std::string_view lineSectionOf(Dwarf* dwarf) {
  Elf* elf = dwarf_getelf(dwarf);
  GElf_Ehdr header;
  std::size_t names = 0;
  if (!elf || !gelf_getehdr(elf, &header) || header.e_ident[EI_DATA] != ELFDATA2LSB ||
      elf_getshdrstrndx(elf, &names) != 0)
    return {};
  for (Elf_Scn* section = elf_nextscn(elf, nullptr); section; section = elf_nextscn(elf, section)) {
    GElf_Shdr shape;
    if (!gelf_getshdr(section, &shape))
      continue;
    const char* name = elf_strptr(elf, names, shape.sh_name);
    if (!name || std::strcmp(name, ".debug_line") != 0)
      continue;
    if ((shape.sh_flags & SHF_COMPRESSED) != 0 && elf_compress(section, 0, 0) < 0)
      return {};
    const Elf_Data* data = elf_rawdata(section, nullptr);
    return data && data->d_buf
               ? std::string_view(static_cast<const char*>(data->d_buf), data->d_size)
               : std::string_view();
  }
  return {};
}

// What the compiler made up, and the place holder of older line tables.
bool isInvented(const std::string& path) {
  return path == "???" || path.ends_with(">");
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The reader puts the directory of the compilation in front of every name without a leading slash,
// absolute names of Windows among them.
std::string_view withoutDirectoryBeforeADrive(std::string_view path) {
  for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
       slash = path.find('/', slash + 1)) {
    const std::string_view rest = path.substr(slash + 1);
    if (rest.size() > 2 && isLetter(rest[0]) && rest[1] == ':' && rest[2] == '\\')
      return rest;
  }
  return path;
}

class Collector final {
 public:
  explicit Collector(Dwarf* dwarf) : m_lines(lineSectionOf(dwarf)) {}

  void take(Dwarf_Die& unit) {
    Dwarf_Files* files = nullptr;
    std::size_t count = 0;
    if (dwarf_getsrcfiles(&unit, &files, &count) != 0)
      return;
    const std::vector<std::string> md5s = md5sOf(unit, count);
    for (std::size_t i = 0; i < count; ++i) {
      const char* path = dwarf_filesrc(files, i, nullptr, nullptr);
      if (path && *path != '\0' && !isInvented(path))
        add(std::string(withoutDirectoryBeforeADrive(path)),
            i < md5s.size() ? md5s[i] : std::string());
    }
  }

  std::vector<ListedSource> sources;

 private:
  std::vector<std::string> md5sOf(Dwarf_Die& unit, std::size_t count) const {
    Dwarf_Attribute attribute;
    Dwarf_Word offset = 0;
    if (!dwarf_attr(&unit, DW_AT_stmt_list, &attribute) ||
        dwarf_formudata(&attribute, &offset) != 0)
      return {};
    std::vector<std::string> md5s = md5sOfLineTable(m_lines, offset);
    return md5s.size() == count ? md5s : std::vector<std::string>();
  }

  void add(const std::string& path, const std::string& md5) {
    if (m_known.insert(path).second)
      sources.push_back({path, md5.empty() ? std::nullopt : std::optional(md5)});
  }

  std::string_view m_lines;
  std::set<std::string> m_known;
};

std::string whyNone(const PlaceToAvoid& avoided) {
  const std::string none = "no sources were listed";
  return avoided.empty() ? "it has no debug data; " + none
                         : "its debug data was not looked for, since " + avoided +
                               " is no regular file; " + none;
}

}  // namespace

SourceList readDwarfSources(const char* path) {
  unsetenv("DEBUGINFOD_URLS");  // Or the library would download.
  const std::unique_ptr<Dwfl, DwflEnd> dwfl(dwfl_begin(&kCallbacks));
  Dwfl_Module* module = dwfl ? dwfl_report_offline(dwfl.get(), "", path, -1) : nullptr;
  if (!module || dwfl_report_end(dwfl.get(), nullptr, nullptr) != 0)
    return {{}, {}, "it is damaged; no sources were listed"};
  PlaceToAvoid avoided;
  void** data = nullptr;
  dwfl_module_info(module, &data, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  *data = &avoided;
  Dwarf_Addr bias = 0;
  Dwarf* dwarf = dwfl_module_getdwarf(module, &bias);
  if (!dwarf)
    return {{}, {}, whyNone(avoided)};
  Collector collector(dwarf);
  Dwarf_Die* unit = nullptr;
  while ((unit = dwfl_module_nextcu(module, unit, &bias))) collector.take(*unit);
  const char* mainFile = nullptr;
  const char* debugFile = nullptr;
  dwfl_module_info(module, nullptr, nullptr, nullptr, nullptr, nullptr, &mainFile, &debugFile);
  return {collector.sources,
          debugFile && std::string_view(debugFile) != path ? debugFile : "",
          collector.sources.empty() ? "its debug data names no sources" : ""};
}

}  // namespace quiver_tool

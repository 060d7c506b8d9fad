#include "file_identity.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "symsrv/files.h"
#include "symsrv/pdb_identity.h"
#include "symsrv/sought_file.h"
#include "symsrv/text.h"

#include "quiver/checksum.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using namespace symsrv_1_0::internal;

// As recorded; nothing for a file that names none.
std::optional<std::string> recorded(const std::string& name) {
  return name.empty() ? std::nullopt : std::optional(name);
}

void takeCodeView(const CodeView& record, FileIdentity& identity) {
  if (record.hasGuid)
    identity.guid = guidText(record.guid);
  else
    identity.signature = record.signature;
  identity.age = record.age;
  identity.symbolFile = recorded(record.name);
}

bool takePe(IByteSource& source, FileIdentity& identity) {
  const std::optional<PeIdentity> pe = readPeIdentity(source);
  if (!pe)
    return false;
  identity.format = pe->is64Bit ? "PE32+" : "PE32";
  identity.timeStamp = pe->timeStamp;
  identity.sizeOfImage = pe->sizeOfImage;
  if (pe->codeView)
    takeCodeView(*pe->codeView, identity);
  return true;
}

bool takeElf(IByteSource& source, FileIdentity& identity) {
  const std::optional<ElfIdentity> elf = readElfIdentity(source);
  if (!elf)
    return false;
  identity.format = elf->is64Bit ? "ELF64" : "ELF32";
  if (!elf->buildId.empty())
    identity.buildId = lowerHexBytes(elf->buildId);
  if (elf->debugLink)
    identity.symbolFile = elf->debugLink->name;
  return true;
}

bool isReadHere(Container container) {
  return container == Container::kPdb || container == Container::kPortablePdb ||
         container == Container::kPe || container == Container::kElf;
}

// What is no sound PE or ELF file: a symbol file, or only recognised.
void takeOther(IByteSource& source, FileIdentity& identity) {
  const Container container = recogniseContainer(source);
  identity.format = containerName(container);
  const std::optional<PdbIdentity> pdb = container == Container::kPortablePdb
                                             ? readPortablePdbIdentity(source)
                                             : readPdbIdentity(source);
  if (!pdb && isReadHere(container))
    identity.format += ", damaged";
  if (!pdb)
    return;
  if (pdb->hasGuid)
    identity.guid = guidText(pdb->guid);
  else
    identity.signature = pdb->signature;
  // The age in front goes up when tools rewrite the file; binaries name that of the link.
  if (container != Container::kPortablePdb)
    identity.age = pdb->dbiAge.value_or(pdb->age);
}

std::string join(const std::vector<std::string>& components) {
  std::string text;
  for (const std::string& component : components) text += (text.empty() ? "" : "/") + component;
  return text;
}

std::optional<std::string> storeKeyOf(IByteSource& source, const std::string& name) {
  const SoughtResult sought = soughtFileOf(source, name);
  const Place* place = sought.file ? sought.file->cachePlace() : nullptr;
  if (!place)
    return std::nullopt;
  return join(place->components(false, place->file));
}

std::string whyNot(const std::wstring& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(toNativePath(path), error);
  if (!std::filesystem::exists(status))
    return "no such file";
  if (std::filesystem::is_directory(status))
    return "it is a directory";
  return std::filesystem::is_regular_file(status) ? "it cannot be opened" : "it is no regular file";
}

std::wstring md5Of(const std::wstring& path) {
  const QV_2_9::ObjectPtr<QV_2_9::IChecksum> checksum =
      QV_2_9::IChecksumCalculator::create()->calculate(path.c_str(), QV_2_9::ctMD5);
  return checksum ? checksum->getValue() : L"";
}

}  // namespace

IdentifiedFile identify(const std::wstring& path) {
  const std::unique_ptr<FileSource> source = FileSource::open(toBytes(path));
  if (!source)
    return {path, std::nullopt, whyNot(path)};
  FileIdentity identity;
  if (!takePe(*source, identity) && !takeElf(*source, identity))
    takeOther(*source, identity);
  identity.storeKey = storeKeyOf(*source, toBytes(path));
  identity.size = source->size();
  identity.md5 = md5Of(path);
  if (identity.md5.empty())
    return {path, std::nullopt, "it cannot be read"};
  return {path, identity, {}};
}

std::string identityText(const FileIdentity& identity) {
  if (identity.buildId)
    return "build-id " + *identity.buildId;
  std::string text = identity.guid        ? *identity.guid
                     : identity.signature ? "signature " + upperHex(*identity.signature, 8)
                                          : kNoIdentity;
  if (identity.age)
    text += ", age " + std::to_string(*identity.age);
  return text;
}

}  // namespace quiver_tool

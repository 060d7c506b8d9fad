// What a fuzzer may ask of each reader. Broken promises end the process.

#include "symsrv/fuzz_entries.h"

#include <cstdlib>

#include "symsrv/chain.h"
#include "symsrv/pdb_identity.h"
#include "symsrv/pointer_file.h"
#include "symsrv/safe_name.h"
#include "symsrv/verify.h"

namespace symsrv_1_0::internal {
namespace {

void require(bool isTrue) {
  if (!isTrue)
    std::abort();
}

/// What is sought may lead to no place but one of ordinary names.
void checkPlaces(const SoughtResult& sought) {
  require(sought.file.has_value() != !sought.reason.empty());
  if (!sought.file)
    return;
  for (const Place& place : sought.file->places)
    for (const bool hasTwoTiers : {false, true})
      for (const std::string& name : place.components(hasTwoTiers, place.file))
        require(isSafeComponent(name));
}

void checkSought(std::string_view bytes) {
  MemorySource source(bytes);
  const SoughtResult sought = soughtFileOf(source, "x.dll");
  checkPlaces(sought);
  if (sought.file)
    static_cast<void>(mismatch(source, *sought.file));
}

}  // namespace

void fuzzPe(std::string_view bytes) {
  MemorySource source(bytes);
  static_cast<void>(readPeIdentity(source));
  checkSought(bytes);
}

void fuzzPdb(std::string_view bytes) {
  MemorySource source(bytes);
  static_cast<void>(recogniseContainer(source));
  static_cast<void>(readPdbIdentity(source));
  static_cast<void>(readPortablePdbIdentity(source));
}

void fuzzElf(std::string_view bytes) {
  MemorySource source(bytes);
  const std::optional<ElfIdentity> elf = readElfIdentity(source);
  require(!elf || elf->buildId.size() <= 64);
  checkSought(bytes);
}

void fuzzChain(std::string_view bytes) {
  ChainList list;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t before = list.chains().size();
    const bool isTaken = list.add(bytes, "default").empty();
    require(list.chains().size() == before + (isTaken ? 1 : 0));
  }
  for (const Chain& chain : list.chains()) {
    require(!chain.stores.empty() && chain.stores.size() <= 11);
    for (const StoreName& store : chain.stores) {
      require(store.directory.empty() == store.url.has_value());
      if (store.url)
        static_cast<void>(store.url->below({"a b", "c"}));
    }
  }
}

void fuzzPointerFile(std::string_view bytes) {
  const PointerFile pointer = parsePointerFile(bytes);
  require(pointer.kind != PointerFile::Kind::kPath || !pointer.text.empty());
}

}  // namespace symsrv_1_0::internal

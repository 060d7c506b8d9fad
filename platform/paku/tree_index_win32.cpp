// No index here: every search walks.

#include "paku/tree_index.h"

namespace PAKU_3_1::internal {

struct TreeIndex::State {};

TreeIndex::TreeIndex(TailSource /*tails*/) {}

TreeIndex::~TreeIndex() = default;

TreeIndex::Answer TreeIndex::search(const std::wstring& /*directory*/,
                                    int /*depth*/,
                                    const FoundBelow& /*found*/) {
  return Answer::kUnknown;
}

}  // namespace PAKU_3_1::internal

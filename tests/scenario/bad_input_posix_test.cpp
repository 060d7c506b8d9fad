// Links that lead nowhere or back, which only some systems let a test make.

#include <string>

#include <gmock/gmock.h>

#include "scenario/bad_input_fixture.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using quiver_test::IsValidFile;

class BadInputPosix : public BadInput {};

TEST_F(BadInputPosix, LinksThatLeadNowhereOfferNothing) {
  addTree(m_tree.addLink("dangling", "nowhere"));
  addTree(m_tree.addLink("loop", "loop"));
  expectNothing(L"wanted.txt");
}

TEST_F(BadInputPosix, TreesOfAnyDepthAreSearchedToTheEnd) {
  m_tree.addChain("d", 1500, "wanted.txt");
  addTree(m_tree.root());
  expectNothing(L"absent.txt");
}

TEST_F(BadInputPosix, LinkLoopsAreLeftAlone) {
  const std::wstring wanted = m_tree.addFile("tree/sub/wanted.txt");
  m_tree.addLink("tree/sub/up", "..");
  m_tree.addLink("tree/self", "self");
  addTree(m_tree.path("tree"));
  EXPECT_THAT(findSrc(L"wanted.txt"), IsValidFile(wanted, 1, 2));
  expectNothing(L"absent.txt");
}

}  // namespace
}  // namespace QV_2_9

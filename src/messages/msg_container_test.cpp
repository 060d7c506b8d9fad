// The text of one rejection.

#include "messages/msg_container.h"

#include <string>

#include <gtest/gtest.h>

namespace QV_2_9 {
namespace {

TEST(MsgContainer, GivesNullWhileFresh) {
  MsgContainer container;
  EXPECT_EQ(container.getMessage(), nullptr);
}

TEST(MsgContainer, GivesACopyOfTheText) {
  MsgContainer container;
  std::wstring text = L"other checksum";
  container.setMessage(text.c_str());
  text.assign(L"changed");
  EXPECT_STREQ(container.getMessage(), L"other checksum");
}

TEST(MsgContainer, ReplacesTheText) {
  MsgContainer container;
  container.setMessage(L"first");
  container.setMessage(L"second");
  EXPECT_STREQ(container.getMessage(), L"second");
}

TEST(MsgContainer, GivesNullAfterAnEmptyText) {
  MsgContainer container;
  container.setMessage(L"first");
  container.setMessage(L"");
  EXPECT_EQ(container.getMessage(), nullptr);
}

}  // namespace
}  // namespace QV_2_9

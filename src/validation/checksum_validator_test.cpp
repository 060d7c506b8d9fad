// The checksum check: when it decides, and what a mismatch is reported with.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/checksum.h"
#include "support/temp_tree.h"
#include "validation/recorders.h"

// The checks that tests derive from are never deleted through a base.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace QV_2_9 {
namespace {

using quiver_test::ContentMessage;
using quiver_test::ErrorInfoRecorder;
using quiver_test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const wchar_t* kMd5OfAbc = L"900150983cd24fb0d6963f7d28e17f72";

ObjectPtr<IChecksum> checksum(const wchar_t* value, std::int32_t type = ctMD5) {
  return IChecksumCalculator::create()->createChecksum(type, value);
}

class ChecksumValidatorTest : public ::testing::Test {
 protected:
  std::vector<std::wstring> mismatch(std::int32_t category) {
    ChecksumValidator validator(category, checksum(L"other"));
    return mismatch(validator);
  }
  std::vector<std::wstring> mismatch(ChecksumValidator& validator) {
    ErrorInfoRecorder errorInfo;
    EXPECT_EQ(validator.validate(m_file.c_str(), errorInfo), vrInvalid);
    return errorInfo.calls();
  }
  validation_result_t answer(const ObjectPtr<IChecksum>& expected, const std::wstring& path) {
    ChecksumValidator validator(scBinaryFiles, expected);
    const validation_result_t result = validator.validate(path.c_str(), m_errorInfo);
    EXPECT_THAT(m_errorInfo.calls(), IsEmpty());
    return result;
  }

  TempTree m_tree;
  const std::wstring m_file = m_tree.addFile("a.dll", "abc");
  ErrorInfoRecorder m_errorInfo;
  const ObjectPtr<IMessageMgr> m_messages = IMessageMgr::create();
};

TEST_F(ChecksumValidatorTest, ConfirmsTheRecordedChecksum) {
  EXPECT_EQ(answer(checksum(kMd5OfAbc), m_file), vrValid);
  EXPECT_EQ(answer(checksum(L"900150983CD24FB0D6963F7D28E17F72"), m_file), vrValid);
}

TEST_F(ChecksumValidatorTest, IsUndecidedWithoutAnExpectedChecksum) {
  EXPECT_EQ(answer(nullptr, m_file), vrUndecided);
  EXPECT_EQ(answer(nullptr, m_tree.path("missing")), vrUndecided);
}

TEST_F(ChecksumValidatorTest, IsUndecidedWhenNothingCanBeComputed) {
  EXPECT_EQ(answer(checksum(kMd5OfAbc), m_tree.path("missing")), vrUndecided);
  EXPECT_EQ(answer(checksum(kMd5OfAbc), m_tree.addDirectory("dir")), vrUndecided);
}

TEST_F(ChecksumValidatorTest, IsUndecidedForATypeThatIsNotComputed) {
  EXPECT_EQ(answer(checksum(kMd5OfAbc, 1), m_file), vrUndecided);
}

TEST_F(ChecksumValidatorTest, MismatchWritesTheCodeOfItsCategoryThenTheKey) {
  EXPECT_THAT(mismatch(scBinaryFiles), ElementsAre(L"code 0", L"text %ChecksumMismatch"));
  EXPECT_THAT(mismatch(scSymbolFiles), ElementsAre(L"code 0", L"text %ChecksumMismatch"));
  EXPECT_THAT(mismatch(scSourceFiles), ElementsAre(L"code 1", L"text %ChecksumMismatch"));
}

TEST_F(ChecksumValidatorTest, MismatchOfAnyOtherCategoryWritesNoCode) {
  EXPECT_THAT(mismatch(scAllFiles), ElementsAre(L"text %ChecksumMismatch"));
  EXPECT_THAT(mismatch(0), ElementsAre(L"text %ChecksumMismatch"));
}

TEST_F(ChecksumValidatorTest, MismatchTakesTheTextOfItsCategorysMessage) {
  m_messages->setBinChecksumMismatchMessage(
      new ContentMessage<IBinChecksumMismatchMessage>(L"bin"));
  m_messages->setSymChecksumMismatchMessage(
      new ContentMessage<ISymChecksumMismatchMessage>(L"sym"));
  m_messages->setSrcChecksumMismatchMessage(
      new ContentMessage<ISrcChecksumMismatchMessage>(L"src"));
  EXPECT_THAT(mismatch(scBinaryFiles), ElementsAre(L"code 0", L"text bin"));
  EXPECT_THAT(mismatch(scSymbolFiles), ElementsAre(L"code 0", L"text sym"));
  EXPECT_THAT(mismatch(scSourceFiles), ElementsAre(L"code 1", L"text src"));
}

TEST_F(ChecksumValidatorTest, OtherCategoriesAskNoMessage) {
  const auto bin = new ContentMessage<IBinChecksumMismatchMessage>(L"bin");
  const auto sym = new ContentMessage<ISymChecksumMismatchMessage>(L"sym");
  const auto src = new ContentMessage<ISrcChecksumMismatchMessage>(L"src");
  m_messages->setBinChecksumMismatchMessage(bin);
  m_messages->setSymChecksumMismatchMessage(sym);
  m_messages->setSrcChecksumMismatchMessage(src);
  EXPECT_THAT(mismatch(scAllFiles), ElementsAre(L"text %ChecksumMismatch"));
  EXPECT_THAT(bin->details(), IsEmpty());
  EXPECT_THAT(sym->details(), IsEmpty());
  EXPECT_THAT(src->details(), IsEmpty());
}

TEST_F(ChecksumValidatorTest, MessageIsAskedOnceWithAnEmptyDetail) {
  const auto message = new ContentMessage<ISymChecksumMismatchMessage>(L"sym");
  m_messages->setSymChecksumMismatchMessage(message);
  mismatch(scSymbolFiles);
  EXPECT_THAT(message->details(), ElementsAre(L""));
}

TEST_F(ChecksumValidatorTest, MessageThatWritesNoTextLeavesTheKey) {
  m_messages->setBinChecksumMismatchMessage(new ContentMessage<IBinChecksumMismatchMessage>());
  m_messages->setSrcChecksumMismatchMessage(new ContentMessage<ISrcChecksumMismatchMessage>(L""));
  EXPECT_THAT(mismatch(scBinaryFiles), ElementsAre(L"code 0", L"text %ChecksumMismatch"));
  EXPECT_THAT(mismatch(scSourceFiles), ElementsAre(L"code 1", L"text %ChecksumMismatch"));
}

TEST_F(ChecksumValidatorTest, TakesItsMessagesWhenItIsBuilt) {
  ChecksumValidator validator(scBinaryFiles, checksum(L"other"));
  m_messages->setBinChecksumMismatchMessage(
      new ContentMessage<IBinChecksumMismatchMessage>(L"late"));
  EXPECT_THAT(mismatch(validator), ElementsAre(L"code 0", L"text %ChecksumMismatch"));
}

/// Writes its own texts, without asking the message.
class OwnTexts final : public ChecksumValidator {
 public:
  using ChecksumValidator::ChecksumValidator;

 private:
  void fillErrorMessageForBinFile(IBinChecksumMismatchMessage&, IMsgContainer& container) override {
    container.setMessage(L"own bin");
  }
  void fillErrorMessageForSymFile(ISymChecksumMismatchMessage&, IMsgContainer& container) override {
    container.setMessage(L"own sym");
  }
  void fillErrorMessageForSrcFile(ISrcChecksumMismatchMessage&, IMsgContainer& container) override {
    container.setMessage(L"own src");
  }
};

TEST_F(ChecksumValidatorTest, SubclassWritesItsOwnTextsForRegisteredMessages) {
  m_messages->setBinChecksumMismatchMessage(
      new ContentMessage<IBinChecksumMismatchMessage>(L"bin"));
  m_messages->setSymChecksumMismatchMessage(
      new ContentMessage<ISymChecksumMismatchMessage>(L"sym"));
  m_messages->setSrcChecksumMismatchMessage(
      new ContentMessage<ISrcChecksumMismatchMessage>(L"src"));
  OwnTexts bin(scBinaryFiles, checksum(L"other"));
  OwnTexts sym(scSymbolFiles, checksum(L"other"));
  OwnTexts src(scSourceFiles, checksum(L"other"));
  EXPECT_THAT(mismatch(bin), ElementsAre(L"code 0", L"text own bin"));
  EXPECT_THAT(mismatch(sym), ElementsAre(L"code 0", L"text own sym"));
  EXPECT_THAT(mismatch(src), ElementsAre(L"code 1", L"text own src"));
}

TEST_F(ChecksumValidatorTest, SubclassIsNotAskedWithoutARegisteredMessage) {
  OwnTexts validator(scBinaryFiles, checksum(L"other"));
  EXPECT_THAT(mismatch(validator), ElementsAre(L"code 0", L"text %ChecksumMismatch"));
}

TEST_F(ChecksumValidatorTest, KeepsTheCalculatorAliveAndLetsItGo) {
  ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
  const std::uint32_t before = calculator->addRef();
  {
    ChecksumValidator validator(scBinaryFiles, nullptr);
    EXPECT_EQ(calculator->addRef(), before + 2);
    calculator->release();
  }
  EXPECT_EQ(calculator->release(), before - 1);
}

TEST(ChecksumValidatorMessages, OutliveTheManager) {
  TempTree tree;
  ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  messages->setBinChecksumMismatchMessage(new ContentMessage<IBinChecksumMismatchMessage>(L"bin"));
  ChecksumValidator validator(scBinaryFiles, checksum(L"other"));
  messages = nullptr;
  EXPECT_FALSE(IMessageMgr::create()->getBinChecksumMismatchMessage());
  ErrorInfoRecorder errorInfo;
  validator.validate(tree.addFile("a", "abc").c_str(), errorInfo);
  EXPECT_THAT(errorInfo.calls(), ElementsAre(L"code 0", L"text bin"));
}

}  // namespace
}  // namespace QV_2_9

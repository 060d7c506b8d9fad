#include "support/matchers.h"

#include <string>

#include <gmock/gmock.h>

#include "quiver/validation.h"

namespace quiver_test {
namespace {

using QV_2_9::ecUnusable;
using QV_2_9::IInvalidFile;
using QV_2_9::IValidFile;
using QV_2_9::ObjectPtr;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// Files that live on the stack of a test.
class ValidFile final : public IValidFile {
 public:
  std::int32_t getVersion() override { return 1; }
  std::uint32_t addRef() override { return 1; }
  std::uint32_t release() override { return 1; }
  const wchar_t* getPath() override { return L"/a.dll"; }
  std::int32_t getConfidenceLevel() override { return 2; }
  std::int32_t getStep() override { return 6; }
};

class InvalidFile final : public IInvalidFile {
 public:
  std::int32_t getVersion() override { return 1; }
  std::uint32_t addRef() override { return 1; }
  std::uint32_t release() override { return 1; }
  const wchar_t* getPath() override { return L"/b.dll"; }
  std::int32_t getErrorCode() override { return ecUnusable; }
  const wchar_t* getErrorMessage() override { return L"%CantOpenFile"; }
  std::int32_t getStep() override { return 3; }
  ObjectPtr<IValidFile> makeValid() override { return nullptr; }
};

template <class Matcher, class Value>
std::string explain(const Matcher& matcher, const Value& value) {
  testing::StringMatchResultListener listener;
  matcher.MatchAndExplain(value, &listener);
  return listener.str();
}

TEST(IsValidFile, ComparesEveryPart) {
  ValidFile object;
  const ObjectPtr<IValidFile> file(&object);
  EXPECT_THAT(file, IsValidFile(L"/a.dll", 2, 6));
  EXPECT_THAT(file, Not(IsValidFile(L"/A.dll", 2, 6)));
  EXPECT_THAT(file, Not(IsValidFile(L"/a.dll", 1, 6)));
  EXPECT_THAT(file, Not(IsValidFile(L"/a.dll", 2, 7)));
  EXPECT_THAT(ObjectPtr<IValidFile>(), Not(IsValidFile(L"/a.dll", 2, 6)));
}

TEST(IsValidFile, SaysWhatDiffers) {
  ValidFile object;
  const ObjectPtr<IValidFile> file(&object);
  EXPECT_THAT(explain(IsValidFile(L"/b.dll", 1, 6), file),
              AllOf(HasSubstr("its path is"),
                    HasSubstr("/a.dll"),
                    HasSubstr("its confidence level is 2"),
                    Not(HasSubstr("its step"))));
  EXPECT_EQ(explain(IsValidFile(L"/b.dll", 1, 6), ObjectPtr<IValidFile>()), "which is null");
}

TEST(IsInvalidFile, ComparesEveryPart) {
  InvalidFile object;
  const ObjectPtr<IInvalidFile> file(&object);
  EXPECT_THAT(file, IsInvalidFile(ecUnusable, L"%CantOpenFile"));
  EXPECT_THAT(file, Not(IsInvalidFile(QV_2_9::ecNotSet, L"%CantOpenFile")));
  EXPECT_THAT(file, Not(IsInvalidFile(ecUnusable, L"%FileIsDirectory")));
  EXPECT_THAT(ObjectPtr<IInvalidFile>(), Not(IsInvalidFile(ecUnusable, L"%CantOpenFile")));
}

TEST(IsInvalidFile, SaysWhatDiffers) {
  InvalidFile object;
  const ObjectPtr<IInvalidFile> file(&object);
  EXPECT_THAT(
      explain(IsInvalidFile(ecUnusable, L"%FileIsDirectory"), file),
      AllOf(HasSubstr("/b.dll"), HasSubstr("its message is"), Not(HasSubstr("its error code"))));
  EXPECT_EQ(explain(IsInvalidFile(ecUnusable, L""), ObjectPtr<IInvalidFile>()), "which is null");
}

}  // namespace
}  // namespace quiver_test

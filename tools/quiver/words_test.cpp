#include "words.h"

#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

TEST(Words, TranslateEveryCatalogueKey) {
  EXPECT_EQ(reasonWords(L"%FileDoesNotExist"), "does not exist");
  EXPECT_EQ(reasonWords(L"%FileIsDirectory"), "is a directory");
  EXPECT_EQ(reasonWords(L"%CantOpenFile"), "cannot be opened");
  EXPECT_EQ(reasonWords(L"%ChecksumMismatch"), "has another checksum");
  EXPECT_EQ(reasonWords(L"%ModificationTimeOrSizeMismatch"),
            "has another modification time or size");
  EXPECT_EQ(reasonWords(L"%SourceFileUpToDate"), "is newer than the reference file");
}

TEST(Words, QuoteWhatIsNoKey) {
  EXPECT_EQ(reasonWords(L"too old"), "was rejected with \"too old\"");
  EXPECT_EQ(reasonWords(L""), "was rejected without a reason");
}

TEST(Words, NameEveryStep) {
  EXPECT_STREQ(stepWords(1), "archive directories");
  EXPECT_STREQ(stepWords(2), "high-priority directories");
  EXPECT_STREQ(stepWords(3), "the recorded name itself");
  EXPECT_STREQ(stepWords(4), "system directories");
  EXPECT_STREQ(stepWords(5), "around the binary");
  EXPECT_STREQ(stepWords(6), "low-priority directories");
  EXPECT_STREQ(stepWords(7), "suggested path");
  EXPECT_STREQ(stepWords(0), "unknown step");
}

TEST(Words, SayWhatBecameOfAnArchivedFile) {
  EXPECT_STREQ(archiveWords(QV_2_9::arArchived), "archived");
  EXPECT_STREQ(archiveWords(QV_2_9::arAlreadyArchived), "already in the archive");
  EXPECT_STREQ(archiveWords(QV_2_9::arNoChecksumCalculator),
               "not archived, checksums cannot be computed");
  EXPECT_STREQ(archiveWords(QV_2_9::arNoChecksum), "not archived, the file cannot be read");
  EXPECT_STREQ(archiveWords(QV_2_9::arCannotCreateDirectory),
               "not archived, a folder of the archive cannot be made");
  EXPECT_STREQ(archiveWords(QV_2_9::arCopyFailed), "not archived, the copy cannot be written");
  EXPECT_STREQ(archiveWords(QV_2_9::arNoArchiveDir), "not archived, there is no archive");
}

TEST(Words, NameCodesAndConfidence) {
  EXPECT_STREQ(codeWords(0), "unusable");
  EXPECT_STREQ(codeWords(1), "the source differs");
  EXPECT_STREQ(codeWords(2), "no code");
  EXPECT_STREQ(codeWords(77), "code of the check");
  EXPECT_STREQ(confidenceWords(0), "confirmed");
  EXPECT_STREQ(confidenceWords(1), "not contradicted");
  EXPECT_STREQ(confidenceWords(2), "not contradicted");
}

}  // namespace
}  // namespace quiver_tool

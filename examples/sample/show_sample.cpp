// Looks every recorded file of the sample up and prints what became of it as a table.
//
//   show_sample DIRECTORY COPY
//
// DIRECTORY is the output of build_sample. The files are looked up there, and then in COPY, which
// is made anew: once to archive every answer, and once more with the originals moved away. Exit
// status: 0 when every file was found where it must be, 1 when one was not, 2 when there is nothing
// to look up.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "lookup.h"
#include "text_encoding.h"
#include "text_table.h"
#include "words.h"

namespace {

using namespace quiver_tool;
using Row = std::vector<std::string>;

constexpr const char* kFound = "found";
constexpr std::size_t kFields = 4;
constexpr const char* kMd5 = "<MD5>";

/// A line of recorded.tsv.
struct Recorded {
  QV_2_9::search_category_t category;
  std::wstring name;
  std::wstring md5;
  std::string expected;  ///< Below the sample's directory.
};

struct Sample {
  std::string directory;
  bool isArchiving = false;  ///< With a result directory that takes the answers into its archive.
  std::vector<Recorded> files;
};

struct Result {
  Row row;
  std::vector<std::string> remarks;
};

QV_2_9::search_category_t categoryOf(const std::string& kind) {
  if (kind == "bin")
    return QV_2_9::scBinaryFiles;
  return kind == "sym" ? QV_2_9::scSymbolFiles : QV_2_9::scSourceFiles;
}

Row split(const std::string& line) {
  Row fields(1);
  for (const char c : line) {
    if (c == '\t')
      fields.emplace_back();
    else
      fields.back() += c;
  }
  return fields;
}

Sample readSample(const std::filesystem::path& directory) {
  Sample sample;
  sample.directory = std::filesystem::canonical(directory).string();
  std::ifstream file(sample.directory + "/recorded.tsv");
  for (std::string line; std::getline(file, line);) {
    const Row fields = split(line);
    if (fields.size() != kFields)
      throw std::runtime_error("recorded.tsv: not " + std::to_string(kFields) + " fields: " + line);
    sample.files.push_back(
        {categoryOf(fields[0]), toWide(fields[1]), toWide(fields[2]), fields[3]});
  }
  if (sample.files.empty())
    throw std::runtime_error(sample.directory + "/recorded.tsv names no file");
  return sample;
}

// What a user of this machine would tell the viewer.
FindOptions questionAbout(const Recorded& file, const Sample& sample) {
  const std::wstring local = toWide(sample.directory) + L"/local/";
  FindOptions options;
  options.category = file.category;
  options.name = file.name;
  options.md5 = file.md5;
  options.directories = {
      {QV_2_9::scSourceFiles,
       local + L"release-1.0",
       /*isRecursive=*/false,
       /*isHighPriority=*/true},
      {QV_2_9::scSourceFiles, local + L"checkout", /*isRecursive=*/true, /*isHighPriority=*/false},
      {QV_2_9::scBinaryFiles, local + L"bin", /*isRecursive=*/false, /*isHighPriority=*/false},
  };
  if (sample.isArchiving)
    options.results = {toWide(sample.directory) + L"/result"};
  options.isArchivingFound = sample.isArchiving;
  return options;
}

std::string below(const std::string& directory, const std::wstring& path) {
  const std::string bytes = toBytes(path);
  return bytes.starts_with(directory + "/") ? bytes.substr(directory.size() + 1) : bytes;
}

std::string verdict(const Recorded& file, const Outcome& outcome, const Sample& sample) {
  if (!outcome.found)
    return "NOT FOUND";
  return below(sample.directory, outcome.found->path) == file.expected ? kFound : "WRONG FILE";
}

// Another compiler makes another program: the table shall be the same everywhere.
std::string withoutMd5(std::string path, const Recorded& file) {
  const std::string md5 = toBytes(file.md5);
  const std::size_t at = path.find(md5);
  return at == std::string::npos ? path : path.replace(at, md5.size(), kMd5);
}

std::string numbered(std::int32_t number, const char* words) {
  return std::to_string(number) + " " + words;
}

Result report(const Recorded& file, const Outcome& outcome, const Sample& sample) {
  Result result;
  result.row = {verdict(file, outcome, sample), toBytes(file.name), "-", "-", "-"};
  if (outcome.found) {
    result.row[2] = withoutMd5(below(sample.directory, outcome.found->path), file);
    result.row[3] = numbered(outcome.found->step, stepWords(outcome.found->step));
    result.row[4] = numbered(outcome.found->confidence, confidenceWords(outcome.found->confidence));
  }
  for (const RejectedFile& rejected : outcome.rejected)
    result.remarks.push_back(below(sample.directory, rejected.path) + " " +
                             reasonWords(rejected.message));
  return result;
}

std::vector<Result> lookUpAll(const Sample& sample) {
  std::vector<Result> results;
  std::wstring binary;
  for (const Recorded& file : sample.files) {
    FindOptions question = questionAbout(file, sample);
    if (!binary.empty())
      question.binary = binary;
    const Outcome outcome = lookUp(question);
    if (file.category == QV_2_9::scBinaryFiles && outcome.found)
      binary = outcome.found->path;
    results.push_back(report(file, outcome, sample));
  }
  return results;
}

bool print(const std::vector<Result>& results) {
  std::vector<Row> rows{{"result", "recorded path", "found path", "step", "confidence"}};
  for (const Result& result : results) rows.push_back(result.row);
  std::fputs(alignedTable(rows).c_str(), stdout);
  for (const Result& result : results) {
    for (const std::string& remark : result.remarks)
      std::printf("rejected on the way: %s\n", remark.c_str());
  }
  return std::all_of(
      results.begin(), results.end(), [](const Result& result) { return result.row[0] == kFound; });
}

Sample copySample(const Sample& sample, const std::filesystem::path& copy) {
  std::filesystem::remove_all(copy);
  std::filesystem::copy(sample.directory, copy, std::filesystem::copy_options::recursive);
  std::filesystem::create_directory(copy / "result");
  Sample copied = readSample(copy);
  copied.isArchiving = true;
  return copied;
}

// Where the copy of a file must be found.
std::string placeInArchive(const Recorded& file) {
  const char* folder = file.category == QV_2_9::scBinaryFiles   ? "binaries"
                       : file.category == QV_2_9::scSymbolFiles ? "symbols"
                                                                : "sources";
  const std::string name = std::filesystem::path(file.expected).filename().string();
  return std::string("result/archive/") + folder + "/" + name + "/" + toBytes(file.md5) + "/" +
         name;
}

/// Looks everything up twice in a copy, the second time with the originals moved away.
bool showArchive(const Sample& sample, const std::filesystem::path& copy) {
  Sample copied = copySample(sample, copy);
  lookUpAll(copied);
  std::filesystem::rename(copy / "local", copy / "moved");
  for (Recorded& file : copied.files) file.expected = placeInArchive(file);
  std::puts("\nonce more, from the archive, the originals moved away:");
  const bool isAllFound = print(lookUpAll(copied));
  std::filesystem::rename(copy / "moved", copy / "local");
  return isAllFound;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: show_sample DIRECTORY COPY\n", stderr);
    return 2;
  }
  try {
    const Sample sample = readSample(argv[1]);
    const bool isAllFound = print(lookUpAll(sample));
    const bool isAllArchived = showArchive(sample, argv[2]);
    return isAllFound && isAllArchived ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "show_sample: %s\n", error.what());
    return 2;
  }
}

// Looks every recorded file of the sample up and prints what became of it as a table.
//
//   show_sample DIRECTORY
//
// DIRECTORY is the output of build_sample. Exit status: 0 when every file was found where it must
// be, 1 when one was not, 2 when there is nothing to look up.

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
#include "words.h"

namespace {

using namespace quiver_tool;
using Row = std::vector<std::string>;

constexpr const char* kFound = "found";
constexpr std::size_t kFields = 4;

/// A line of recorded.tsv.
struct Recorded {
  QV_2_9::search_category_t category;
  std::wstring name;
  std::wstring md5;
  std::string expected;  ///< Below the sample's directory.
};

struct Sample {
  std::string directory;
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

Sample readSample(const char* directory) {
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

std::string numbered(std::int32_t number, const char* words) {
  return std::to_string(number) + " " + words;
}

Result report(const Recorded& file, const Outcome& outcome, const Sample& sample) {
  Result result;
  result.row = {verdict(file, outcome, sample), toBytes(file.name), "-", "-", "-"};
  if (outcome.found) {
    result.row[2] = below(sample.directory, outcome.found->path);
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

void printTable(const std::vector<Row>& rows) {
  std::vector<std::size_t> widths(rows.front().size());
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i)
      line += row[i] + std::string(widths[i] - row[i].size() + 2, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    std::puts(line.c_str());
  }
}

int show(const Sample& sample) {
  const std::vector<Result> results = lookUpAll(sample);
  std::vector<Row> rows{{"result", "recorded path", "found path", "step", "confidence"}};
  for (const Result& result : results) rows.push_back(result.row);
  printTable(rows);
  for (const Result& result : results) {
    for (const std::string& remark : result.remarks)
      std::printf("rejected on the way: %s\n", remark.c_str());
  }
  const bool isAllFound = std::all_of(
      results.begin(), results.end(), [](const Result& result) { return result.row[0] == kFound; });
  return isAllFound ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: show_sample DIRECTORY\n", stderr);
    return 2;
  }
  try {
    return show(readSample(argv[1]));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "show_sample: %s\n", error.what());
    return 2;
  }
}

#include "explain_advice.h"

#include <algorithm>

#include "explain_words.h"
#include "file_identity.h"
#include "search_scope.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

using Advice = std::vector<std::string>;

std::string aboutRejected(const FindOptions& options, const RejectedFile& file) {
  const std::string path = toBytes(file.path);
  if (file.message != L"%ChecksumMismatch")
    return "a file of this name " + std::string(reasonWords(file.message)) + ": " + path;
  return "a file of this name with another checksum lies at " + path +
         (options.category == QV_2_9::scSourceFiles ? ": the binary was built from other sources"
                                                    : ": it comes from another build");
}

template <class Use>
void forEachPlace(const Story& story, StoryPlace::Kind kind, const Use& use) {
  for (const StoryStep& step : story.steps())
    for (const StoryPlace& place : step.places)
      if (place.kind == kind)
        use(place);
}

std::string identityOfBinary(const FindOptions& options) {
  if (!options.binary)
    return "the binary is not known; --binary names it, and servers are asked by what it says";
  const IdentifiedFile binary = identify(binaryName(*options.binary));
  if (!binary.identity)
    return "the binary " + toBytes(*options.binary) + " cannot tell its identity: " + binary.reason;
  const std::string identity = identityText(*binary.identity);
  if (identity == kNoIdentity)
    return "the binary " + toBytes(*options.binary) + " shows no identity";
  std::string text = "the binary's identity is " + identity;
  if (binary.identity->storeKey)
    text += " (in stores: " + *binary.identity->storeKey + ")";
  return text;
}

void addServers(const FindOptions& options,
                const Story& story,
                bool areServersOff,
                Advice& advice) {
  bool isAnyNamed = false;
  forEachPlace(story, StoryPlace::Kind::kServer, [&](const StoryPlace& place) {
    isAnyNamed = true;
    const StoryServer& server = place.server;
    const std::string name = server.element.empty() ? "a symbol server" : toBytes(server.element);
    std::string text = name + " " + serverWords(server.outcome);
    if (!server.detail.empty())
      text += ": " + toBytes(server.detail);
    advice.push_back(text);
  });
  std::string text;
  if (areServersOff)
    text = "symbol servers are turned off (--no-servers); ";
  else if (!isAnyNamed)
    text = "no symbol server is configured; ";
  advice.push_back(text + identityOfBinary(options));
}

void addDirectories(const FindOptions& options,
                    const Outcome& outcome,
                    const Story& story,
                    Advice& advice) {
  for (const std::wstring& path : outcome.unusable.missing)
    advice.push_back("directory " + toBytes(path) + " does not exist");
  for (const SearchDirectory& dir : options.directories) {
    if (!serves(dir, options.category))
      advice.push_back("directory " + toBytes(dir.path) + " serves " + categoryTitle(dir.category) +
                       " only");
  }
  forEachPlace(story, StoryPlace::Kind::kDirectory, [&](const StoryPlace& place) {
    if (place.directory.state == QV_2_9::jdUnreadable)
      advice.push_back("directory " + toBytes(place.directory.path) + " cannot be read");
  });
}

}  // namespace

Advice adviceFor(const FindOptions& options,
                 const Outcome& outcome,
                 const Story& story,
                 bool areServersOff) {
  Advice advice;
  if (outcome.found)
    return advice;
  for (const RejectedFile& file : outcome.rejected) advice.push_back(aboutRejected(options, file));
  if (outcome.isSuggestionMissing)
    advice.push_back("the suggested " + toBytes(*options.suggestion) + " does not exist");
  addDirectories(options, outcome, story, advice);
  if (options.directories.empty())
    advice.emplace_back("no directory was given to search in; --dir names one");
  else if (outcome.rejected.empty())
    advice.push_back("no file called " + toBytes(story.nameInDirectories()) +
                     " lies in the places above; more places can be given with --dir");
  if (options.category == QV_2_9::scSymbolFiles)
    addServers(options, story, areServersOff, advice);
  std::vector<std::string> once;
  for (std::string& text : advice)
    if (std::ranges::find(once, text) == once.end())
      once.push_back(std::move(text));
  return once;
}

}  // namespace quiver_tool

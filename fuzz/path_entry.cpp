// Promises about paths: parts make up the whole, and the canonical form has no other.

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "paku/canonical_path.h"
#include "paku/filename.h"
#include "paku/path_syntax.h"
#include "paku/search_name.h"

#include "fuzz_entries.h"
#include "fuzz_input.h"

namespace quiver_fuzz {
namespace {

namespace paths = PAKU_3_1::internal;
using PAKU_3_1::Filename;
using PAKU_3_1::PathStyle;

void checkSyntax(std::wstring_view text, PathStyle style, bool isDirectory) {
  require(paths::rootLength(text, style) <= text.size());
  const std::size_t start = paths::fileNameStart(text, style, isDirectory);
  require(start <= text.size());
  const std::wstring_view name = text.substr(start);
  require(std::ranges::none_of(name, [&](wchar_t c) { return paths::isSeparator(c, style); }));
  require(name != L"." && name != L"..");
  const std::wstring directory = paths::directoryText(text, style, isDirectory);
  require(directory.starts_with(text.substr(0, start)));
  require(directory.empty() || paths::isSeparator(directory.back(), style));
  require(paths::extensionStart(name) <= name.size());
  for (const std::wstring& component : paths::componentsBelowRoot(text, style)) {
    require(!component.empty());
    require(
        std::ranges::none_of(component, [&](wchar_t c) { return paths::isSeparator(c, style); }));
  }
}

void checkCanonical(std::wstring_view text, PathStyle style) {
  const std::wstring canonical = paths::canonicalPath(text, style);
  require(canonical.empty() == text.empty());
  require(paths::canonicalPath(canonical, style) == canonical);
  require(paths::isAbsolutePath(canonical, style) == paths::isAbsolutePath(text, style));
  const std::vector<std::wstring> components = paths::componentsBelowRoot(canonical, style);
  bool isBehindName = false;
  for (std::size_t i = 0; i < components.size(); ++i) {
    require(components[i] != L"." || i == 0);
    require(components[i] != L".." || (!isBehindName && !paths::isAbsolutePath(text, style)));
    isBehindName = isBehindName || components[i] != L"..";
  }
}

/// Links that lead to each other for ever, and upwards.
void checkLinks(std::wstring_view text, PathStyle style) {
  const auto readLink = [](const std::wstring& path) -> std::optional<std::wstring> {
    switch (path.empty() ? 0 : path.back()) {
      case L'l':
        return L"l/../l";
      case L'm':
        return L"/m/../..";
      case L'n':
        return L"";
      default:
        return std::nullopt;
    }
  };
  require(text.empty() || !paths::canonicalPath(text, style, readLink).empty());
}

void checkTails(std::wstring_view text, PathStyle systemStyle) {
  const paths::SearchName sought(text, systemStyle);
  for (const paths::Tail& tail : sought.tails()) {
    require(!tail.empty());
    for (const std::wstring& component : tail) {
      require(!component.empty() && component != L"." && component != L"..");
      require(std::ranges::none_of(component,
                                   [&](wchar_t c) { return paths::isSeparator(c, systemStyle); }));
    }
  }
}

void checkFilename(const std::wstring& text, bool isDirectory) {
  const Filename name(text, 0, isDirectory);
  const std::wstring whole = name.baseWithExtension().text();
  require(name.text().text() == text);
  require(name.baseWithoutExtension().text() + name.extension().text() == whole);
  require(!isDirectory || whole.empty());
  const Filename canonical = name.canonical();
  require(canonical.canonical().text().text() == canonical.text().text());
  Filename renamed = name;
  renamed.setBaseWithExtension(L"new.txt");
  const PathStyle style = paths::defaultPathStyle(text);
  // Two separators alone are no share, but with a name behind them they are one.
  const bool hasSameRoot =
      paths::rootLength(renamed.text().text(), style) == paths::rootLength(text, style);
  require(!hasSameRoot || renamed.baseWithExtension().text() == L"new.txt");
  const Filename absolute = name.toAbsoluteFilename(Filename(L"/base", 0, true));
  require(text.empty() || absolute.isAbsolute());
}

}  // namespace

void fuzzPath(std::string_view bytes) {
  FuzzInput input(bytes);
  const bool isDirectory = input.flag();
  const std::wstring text = input.line();
  for (const PathStyle style : {PathStyle::kPosix, PathStyle::kWindows}) {
    checkSyntax(text, style, isDirectory);
    checkCanonical(text, style);
    checkLinks(text, style);
    checkTails(text, style);
    const std::wstring below = input.line();
    static_cast<void>(paths::pathUnder(text, style, below));
  }
  checkFilename(text, isDirectory);
}

}  // namespace quiver_fuzz

// The report of `quiver resolve`: one page that holds its data and loads nothing.

#pragma once

#include <string>
#include <string_view>

#include "resolution.h"

namespace quiver_tool {

/// The page without data, put together from resolve_report.html, .css and .js at build time.
extern const char* const kReportPage;

/// Returns a JSON text that means the same and can stand within a script element: no character of
/// it ends the element or begins a comment.
std::string jsonForMarkup(std::string_view json);

std::string reportPage(const Resolution& resolution);

}  // namespace quiver_tool

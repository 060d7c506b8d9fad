// File names: the grammar of paths applied to one text.

#include "paku/filename.h"

#include <string>
#include <string_view>

#include "paku/environment.h"
#include "paku/path_syntax.h"
#include "paku/system_path.h"

namespace PAKU_3_1 {

using internal::appendDirectory;
using internal::canonicalSystemPath;
using internal::defaultPathStyle;
using internal::directoryComponents;
using internal::directoryText;
using internal::extensionStart;
using internal::fileNameStart;
using internal::isAbsolutePath;
using internal::pathUnder;
using internal::withoutDriveDirectory;

namespace {

/// `base` made absolute with the current directory, as text.
std::wstring absoluteDirectory(const Filename& base) {
  const std::wstring& text = base.text().text();
  if (base.isAbsolute())
    return text;
  const std::wstring current = currentDirectory();
  return current.empty() ? text : pathUnder(current, defaultPathStyle(current), text);
}

}  // namespace

Filename::Filename(const String& path, int /*format*/, bool isDirectory)
    : m_text(withoutDriveDirectory(path.text())),
      m_style(defaultPathStyle(m_text.text())),
      m_isDirectory(isDirectory) {}

String Filename::path() const {
  return directoryText(m_text.text(), m_style, m_isDirectory);
}

String Filename::baseWithExtension() const {
  return m_text.text().substr(fileNameStart(m_text.text(), m_style, m_isDirectory));
}

String Filename::baseWithoutExtension() const {
  const String name = baseWithExtension();
  return name.text().substr(0, extensionStart(name.text()));
}

String Filename::extension() const {
  const String name = baseWithExtension();
  return name.text().substr(extensionStart(name.text()));
}

StringList Filename::directories() const {
  StringList list(m_style);
  for (std::wstring& directory : directoryComponents(m_text.text(), m_style, m_isDirectory))
    list.append(std::move(directory));
  return list;
}

void Filename::setDirectories(const StringList& directories) {
  const String name = baseWithExtension();
  std::wstring text;
  for (const String& directory : directories)
    appendDirectory(text, directory.text(), directories.style());
  m_text = text + name.text();
  m_style = directories.style();
  m_isDirectory = name.isEmpty();
}

void Filename::setBaseWithExtension(const String& name) {
  m_text = path().text() + name.text();
  m_isDirectory = name.isEmpty();
}

void Filename::setExtension(const String& extension) {
  std::wstring name = baseWithoutExtension().text();
  const std::wstring& text = extension.text();
  if (!text.empty() && text.front() != L'.')
    name += L'.';
  setBaseWithExtension(name + text);
}

bool Filename::isAbsolute() const {
  return isAbsolutePath(m_text.text(), m_style);
}

Filename Filename::toAbsoluteFilename(const Filename& base) const {
  if (isAbsolute() || (isEmpty() && base.isEmpty()))
    return *this;
  const std::wstring directory = absoluteDirectory(base);
  const std::wstring absolute =
      directory.empty() ? m_text.text()
                        : pathUnder(directory, defaultPathStyle(directory), m_text.text());
  return Filename(absolute, 0, m_isDirectory || isEmpty());
}

Filename Filename::canonical() const {
  return Filename(canonicalSystemPath(m_text.text(), m_style), 0, m_isDirectory);
}

}  // namespace PAKU_3_1

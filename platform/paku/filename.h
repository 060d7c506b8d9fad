// A file name and its parts: directories, base name, extension.
//
// A Filename is a text and the style it is read in (see path_syntax.h for the grammar). Splitting
// never changes the text: what is opened is what was given. Setters edit the text in place and
// leave the rest as it was written.

#pragma once

#include "paku/path_style.h"
#include "paku/string.h"
#include "paku/string_list.h"

namespace PAKU_3_1 {

class Filename final {
 public:
  Filename() : Filename(String()) {}

  /// `format` is ignored: the style follows from the text. `isDirectory`: the whole text is a
  /// directory, also without a separator at its end.
  Filename(const String& path, int format = 0, bool isDirectory = false);  // NOLINT: as callers do

  const String& text() const { return m_text; }
  bool isEmpty() const { return m_text.isEmpty(); }

  /// Returns the directory part with the separator at its end. Empty for a bare name.
  String path() const;

  /// Returns the file name. Empty for a directory.
  String baseWithExtension() const;

  /// Returns the file name before its extension; the two together are the file name.
  String baseWithoutExtension() const;

  /// Returns the extension with its dot. Empty when there is none, as in ".profile".
  String extension() const;

  /// Returns the directories, the root (drive, share, "/") being the first.
  StringList directories() const;

  /// Replaces the directory part; the separators are those of the list's style.
  void setDirectories(const StringList& directories);

  /// Replaces the file name.
  void setBaseWithExtension(const String& name);

  /// Replaces the extension, given with or without its dot; an empty one removes it.
  void setExtension(const String& extension);

  /// Returns true for a name with a drive, a share or the POSIX root.
  bool isAbsolute() const;

  /// Returns this name below the directory `base`, of which the whole text counts; a relative base
  /// is below the current directory, and an empty one is the current directory. An absolute name
  /// comes back as it is, an empty name without a base stays empty.
  Filename toAbsoluteFilename(const Filename& base) const;

  /// Returns the spelling for comparisons, see canonical_path.h.
  Filename canonical() const;

 private:
  String m_text;
  PathStyle m_style;
  bool m_isDirectory;
};

}  // namespace PAKU_3_1

// Makes, removes and renames files and directories in one area of the moving tree.

#pragma once

#include <filesystem>
#include <random>
#include <string>

#include "load/looker.h"

namespace quiver_load {

/// Works below two directories of its own and never through a link: links have names of their own,
/// which are no part of any way that it takes.
class FileChanger final {
 public:
  FileChanger(const Load& load, int area, unsigned seed);

  /// Changes until the load is over.
  void run();

 private:
  using Path = std::filesystem::path;

  void changeOnce();
  void makeFile();
  void makeFileInPieces();
  void removeFile();
  void renameFile();
  void makeDirectory();
  void makeLink();
  void removeDirectory();
  void renameDirectory();

  Path directory(const std::string& kind);
  Path file(const std::string& kind);
  std::string anyKind();
  std::string anyName();
  bool isTurn(unsigned every) { return m_random() % every == 0; }
  void count(Work work, const std::error_code& error);

  const Load& m_load;
  Path m_area;
  Path m_staging;
  std::minstd_rand m_random;
};

}  // namespace quiver_load

// Quiver finds the files that an analysis result names: binaries, their symbol files, their
// sources.
//
//   using namespace QV_2_9;
//   ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
//   dirs->addSearchDir(scAllFiles, L"/home/me/builds", true, true);
//   ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
//   env->setSearchDirs(dirs);
//   ObjectPtr<IFileSearch> search = IFileSearch::create(env);
//   ObjectPtr<IValidFile> file =
//       search->findSymFile(L"C:\\ci\\app.pdb", L"C:\\ci\\app.exe", nullptr, nullptr, nullptr,
//       nullptr);
//   if (file)
//     open(file->getPath());  // toNativePath of file_system_path.h makes a path of it
//
// Start with file_search.h (the questions), search_dirs.h and search_env.h (where to look), and
// search_results.h (the answers). Then resolution_context.h and search_manipulator.h, which
// remember what was found, and path_mapping.h, which learns where a whole tree lies.

#pragma once

#include "quiver/checksum.h"
#include "quiver/environment_info.h"
#include "quiver/event_generator.h"
#include "quiver/export.h"
#include "quiver/file_search.h"
#include "quiver/locks.h"
#include "quiver/messages.h"
#include "quiver/object.h"
#include "quiver/path_mapping.h"
#include "quiver/ref_count.h"
#include "quiver/resolution_context.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_dirs.h"
#include "quiver/search_env.h"
#include "quiver/search_history.h"
#include "quiver/search_journal.h"
#include "quiver/search_manipulator.h"
#include "quiver/search_results.h"
#include "quiver/source_file_validators.h"
#include "quiver/status.h"
#include "quiver/string_container.h"
#include "quiver/symbol_download.h"
#include "quiver/validation.h"

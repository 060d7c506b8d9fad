#include "lookup_callbacks.h"

namespace quiver_tool {

FoundFile toFoundFile(IValidFile& file) {
  return {file.getPath(), file.getStep(), file.getConfidenceLevel()};
}

ObjectPtr<IValidFile> ChoosingCallback::choose(IValidFileIterator& files) {
  m_choice = files.next();
  while (m_isAll && files.next()) {
  }
  return nullptr;
}

ObjectPtr<IValidFile> ShowingCallback::show(IInvalidFileIterator& invalidFiles,
                                            IValidFileIterator& validFiles) {
  while (const ObjectPtr<QV_2_9::IInvalidFile> file = invalidFiles.next()) {
    m_outcome.rejected.push_back(
        {file->getPath(), file->getStep(), file->getErrorCode(), file->getErrorMessage()});
  }
  while (const ObjectPtr<IValidFile> file = validFiles.next())
    m_outcome.candidates.push_back(toFoundFile(*file));
  return m_choosing.choice();
}

}  // namespace quiver_tool

#include "result_scope.h"

#include <algorithm>
#include <string_view>

#include "quiver/ref_count.h"

namespace quiver_tool {
namespace {

using QV_2_9::IEditableSearchEnv;
using QV_2_9::IEnvironmentInfo;
using QV_2_9::IResolutionContext;
using QV_2_9::ISearchDirChain;
using QV_2_9::ISearchDirContainer;
using QV_2_9::ISearchDirIterator;
using QV_2_9::ISearchEnv;
using QV_2_9::ObjectPtr;
using QV_2_9::search_category_t;

constexpr const wchar_t* kKey = L"quiver";

using DirsOfEnv = ObjectPtr<ISearchDirIterator> (ISearchEnv::*)(search_category_t);

/// One of the two lists of an environment as a container, for another environment.
class DirsOf final : public QV_2_9::RefCountImpl<ISearchDirContainer> {
 public:
  DirsOf(const ObjectPtr<ISearchEnv>& env, DirsOfEnv dirs) : m_env(env), m_dirs(dirs) {}

  ObjectPtr<ISearchDirIterator> createIterator(search_category_t category) override {
    return (m_env.get()->*m_dirs)(category);
  }

 private:
  ObjectPtr<ISearchEnv> m_env;
  DirsOfEnv m_dirs;
};

ObjectPtr<ISearchDirContainer> chained(const ObjectPtr<ISearchDirContainer>& first,
                                       const ObjectPtr<ISearchDirContainer>& second) {
  const ObjectPtr<ISearchDirChain> chain = ISearchDirChain::create();
  chain->addContainer(first);
  chain->addContainer(second);
  return chain;
}

}  // namespace

ResultScope::ResultScope(const std::vector<std::wstring>& directories) {
  for (const std::wstring& directory : directories)
    append(m_manager->getResultDirContext(directory.c_str()));
  append(m_manager->createUserContext());
}

void ResultScope::setSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs) {
  m_manager->setSearchDirs(nearest(), dirs, kKey);
}

void ResultScope::setCallbacks(QV_2_9::IFilesFoundCallback& filesFound,
                               QV_2_9::INoFilesFoundCallback& noFilesFound) {
  m_manager->setFilesFoundCallback(nearest(), kKey, &filesFound);
  m_manager->setNoFilesFoundCallback(nearest(), kKey, &noFilesFound);
}

void ResultScope::setCallback(QV_2_9::ISearchStartedCallback& searchStarted) {
  m_manager->setSearchStartedCallback(nearest(), kKey, &searchStarted);
}

ObjectPtr<ISearchEnv> ResultScope::createSearchEnv(const ObjectPtr<ISearchDirContainer>& archives,
                                                   const ObjectPtr<IEnvironmentInfo>& info) {
  const ObjectPtr<ISearchEnv> env = m_manager->createSearchEnv(nearest(), kKey, info);
  const ObjectPtr<IEditableSearchEnv> extended = IEditableSearchEnv::create();
  extended->setSearchDirs(new DirsOf(env, &ISearchEnv::getSearchDirs));
  extended->setArchiveSearchDirs(
      chained(new DirsOf(env, &ISearchEnv::getArchiveSearchDirs), archives));
  extended->setSearchStartedCallback(env->getSearchStartedCallback());
  extended->setFilesFoundCallback(env->getFilesFoundCallback());
  extended->setNoFilesFoundCallback(env->getNoFilesFoundCallback());
  extended->setEnvironmentInfo(info);
  return extended;
}

QV_2_9::archive_result_t ResultScope::archive(const std::wstring& file,
                                              search_category_t category) {
  return m_manager->archiveFile(nearest(), file.c_str(), category);
}

void ResultScope::append(const ObjectPtr<IResolutionContext>& context) {
  const std::wstring_view name = context->getName();
  const bool isKnown = std::any_of(m_chain.begin(), m_chain.end(), [name](const auto& other) {
    return name == other->getName();
  });
  if (isKnown)
    return;
  if (!m_chain.empty())
    m_manager->setParentContext(m_chain.back().get(), context.get());
  m_chain.push_back(context);
}

}  // namespace quiver_tool

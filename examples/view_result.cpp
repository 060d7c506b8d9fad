// A result viewer as far as lookups go: where it looks, what it accepts, what it tells its user,
// and what it remembers and keeps.

#include <cstdio>
#include <fstream>
#include <string>

#include "quiver/file_system_path.h"
#include "quiver/quiver.h"

using namespace QV_2_9;

namespace {

constexpr const wchar_t* kKey = L"viewer";
constexpr int32_t kRecordedOnLinux = 2;

class OtherVersion final : public RefCountImpl<ISrcChecksumMismatchMessage> {
 public:
  void formatMessage(IMsgContainer& container, const wchar_t*) override {
    container.setMessage(L"is another version of the file");
  }
};

class ShowReasons final : public INoFilesFoundCallback {
 public:
  ~ShowReasons() override { disconnectHandlers(); }

  ObjectPtr<IValidFile> onBinNoFilesFound(const wchar_t* binFile,
                                          IValidator&,
                                          IInvalidFileIterator& rejected,
                                          IValidFileIterator&) override {
    return show(binFile, rejected);
  }
  ObjectPtr<IValidFile> onSymNoFilesFound(const wchar_t* symFile,
                                          const wchar_t*,
                                          const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator& rejected,
                                          IValidFileIterator&) override {
    return show(symFile, rejected);
  }
  ObjectPtr<IValidFile> onSrcNoFilesFound(const wchar_t* srcFile,
                                          const wchar_t*,
                                          const wchar_t*,
                                          IValidator&,
                                          IInvalidFileIterator& rejected,
                                          IValidFileIterator&) override {
    return show(srcFile, rejected);
  }

 private:
  // A viewer would ask its user here, have the path judged by the validator and return the file.
  static ObjectPtr<IValidFile> show(const wchar_t* name, IInvalidFileIterator& rejected) {
    std::printf("%s: not found\n", toNameBytes(name).c_str());
    while (const ObjectPtr<IInvalidFile> file = rejected.next())
      std::printf("  %s %ls\n", toNameBytes(file->getPath()).c_str(), file->getErrorMessage());
    return nullptr;
  }
};

class ShowProgress final : public ISymbolDownloadProgress {
 public:
  void start(int32_t value) override { std::printf("0 of %d KiB\n", value); }
  void progress(int32_t value) override { std::printf("%d KiB\n", value); }
  void finish() override { std::printf("done\n"); }
  bool isCanceled() override { return false; }
};

class Viewer final {
 public:
  explicit Viewer(const wchar_t* resultDir)
      : m_result(m_manager->getResultDirContext(resultDir)),
        m_memory(createSearchManipulatorByContext(m_result, nullptr, nullptr)) {
    m_messages->setSrcChecksumMismatchMessage(new OtherVersion);

    ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
    dirs->addSearchDir(scSourceFiles, L"checkout", /*recursive=*/true, /*highPriority=*/false);
    ObjectPtr<IResolutionContext> user = m_manager->createUserContext();
    m_manager->setSearchDirs(user.get(), dirs, kKey);
    m_manager->setParentContext(m_result.get(), user.get());

    m_memory->setSearchStartedMode(kKey, hmAdvisory);
    m_memory->setFilesFoundMode(kKey, hmAdvisory);
    m_memory->setNoFilesFoundMode(kKey, hmAdvisory);
    m_memory->setNoFilesFoundUserCallback(kKey, &m_reasons);

    ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
    info->setOSType(kRecordedOnLinux);
    m_search = m_manager->createFileSearch(m_result.get(), kKey, info);
  }

  // Searches end first, then what they call.
  ~Viewer() {
    m_search = nullptr;
    m_memory->setNoFilesFoundUserCallback(kKey, nullptr);
  }

  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  void showSource(const wchar_t* recordedName, const wchar_t* recordedMd5) {
    ChecksumValidator check(scSourceFiles, m_calculator->createChecksum(ctMD5, recordedMd5));
    ObjectPtr<IValidFile> file =
        m_search->findSrcFile(recordedName, L"/ci/out/app", nullptr, &check, nullptr);
    if (!file)
      return;
    show(recordedName, *file);
    std::ifstream source(toNativePath(file->getPath()));
    std::string line;
    std::getline(source, line);
    std::printf("  begins: %s\n", line.c_str());
    archive_result_t kept = m_manager->archiveFile(m_result.get(), file->getPath(), scSourceFiles);
    std::printf("  archive: %d\n", kept);
  }

  void showSymbols(const wchar_t* recordedName, const wchar_t* binary) {
    ShowProgress progress;
    ObjectPtr<IValidFile> file =
        m_search->findSymFile(recordedName, binary, nullptr, nullptr, nullptr, &progress);
    if (file)
      show(recordedName, *file);
  }

 private:
  static void show(const wchar_t* recordedName, IValidFile& file) {
    std::printf("%s: step %d, %s\n",
                toNameBytes(recordedName).c_str(),
                file.getStep(),
                toNameBytes(file.getPath()).c_str());
  }

  ObjectPtr<IMessageMgr> m_messages = IMessageMgr::create();
  ObjectPtr<IChecksumCalculator> m_calculator = IChecksumCalculator::create();
  ObjectPtr<IResolutionContextMgr> m_manager = IResolutionContextMgr::create();
  ShowReasons m_reasons;
  ObjectPtr<IResolutionContext> m_result;
  ObjectPtr<ISearchManipulator> m_memory;
  ObjectPtr<IFileSearch> m_search;
};

}  // namespace

int main() {
  Viewer viewer(L"result");
  viewer.showSource(L"/ci/src/lib/parse.c", L"c09c28e02a6327a42e5f673620fd78e0");
  viewer.showSource(L"/ci/src/lib/parse.c", L"c09c28e02a6327a42e5f673620fd78e0");
  viewer.showSource(L"/ci/src/lib/lexer.c", L"c09c28e02a6327a42e5f673620fd78e0");
  viewer.showSource(L"/ci/src/lib/gr\u00F6\u00DFe.c", L"1b78876ccfed3b4f81058dc87a3eee35");
  viewer.showSymbols(L"/ci/out/app.debug", L"/ci/out/app");
}

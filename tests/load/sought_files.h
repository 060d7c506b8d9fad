// What one thread looks for, and what may be answered.

#pragma once

#include <deque>
#include <random>
#include <string>
#include <vector>

#include "load/load_callbacks.h"
#include "load/places.h"
#include "quiver/quiver.h"

namespace quiver_load {

enum class Fate {
  kStill,   ///< It is there: to be found.
  kMoving,  ///< It comes and goes.
  kSymbol,  ///< It is fetched; from a cache it may go meanwhile.
  kMissing  ///< It never was.
};

struct SoughtFile {
  Fate fate;
  QV_2_9::search_category_t category;
  std::wstring recorded;
  std::wstring binary;
  const StillFile* still = nullptr;             ///< Of kStill.
  const RealBinary* symbols = nullptr;          ///< Of kSymbol.
  QV_2_9::IValidatorCallback* check = nullptr;  ///< By MD5; for some files.
};

/// The library's check, in a class that containers may destroy.
class Md5Check final : public QV_2_9::IValidatorCallback {
 public:
  Md5Check(std::int32_t category, const QV_2_9::ObjectPtr<QV_2_9::IChecksum>& expected)
      : m_check(category, expected) {}

  QV_2_9::validation_result_t validate(Text path, QV_2_9::IErrorInfoContainer& error) override {
    return m_check.validate(path, error);
  }

 private:
  QV_2_9::ChecksumValidator m_check;
};

/// Belongs to one thread. It is made and destroyed while no other thread uses the library, as
/// checks by MD5 must be.
class SoughtFiles final {
 public:
  explicit SoughtFiles(const Places& places);
  SoughtFiles(const SoughtFiles&) = delete;
  SoughtFiles& operator=(const SoughtFiles&) = delete;

  const SoughtFile& any(std::minstd_rand& random) const;

 private:
  void add(SoughtFile file, const std::wstring& original);

  QV_2_9::ObjectPtr<QV_2_9::IChecksumCalculator> m_calculator =
      QV_2_9::IChecksumCalculator::create();
  std::deque<Md5Check> m_checks;
  std::vector<SoughtFile> m_files;
};

/// Returns what is wrong with an answer. Empty when nothing is.
std::string wrongIn(const QV_2_9::ObjectPtr<QV_2_9::IValidFile>& answer,
                    const SoughtFile& sought,
                    const CallbackAnswers& callbacks,
                    const Places& places);

}  // namespace quiver_load

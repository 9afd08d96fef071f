#include "spx/analyses/analysis.h"

#include <utility>

#include "spx/core/animal_data.h"
#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/support/console.h"
#include "spx/support/file_name.h"
#include "spx/views/data_filter.h"

namespace spx {

Analysis::Analysis() {
  timer_.restart();
}

Analysis::~Analysis() = default;

void Analysis::chooseRecords(std::vector<bool> chosen) {
  chosen_ = std::move(chosen);
  has_choice_ = true;
}

bool Analysis::initialize() {
  if (Animals.records.empty()) {
    spxError(error_text::NO_ANIMALS);
    return false;
  }
  return true;
}

void Analysis::defaultView() {}

void Analysis::defaultSet() {}

void Analysis::writeInfo() {}

void Analysis::writeResults() {}

void Analysis::writeTrends() {}

void Analysis::report() {
  report_file_ = report_directory_ + "/" + file_stem_;
  if (append_sex_) {
    report_file_ += "-" + getEnumName(View.sex);
  }
  qs_lib::checkHomePath(report_file_);
  if (qs_lib::isVerbose()) {
    reportConsole();
  }
  reportXml();
}

void Analysis::reportXml() {}

void Analysis::reportConsole() {}

}  // namespace spx

#include "spx/support/csv_report.h"

#include "spx/support/csv_text.h"
#include "spx/support/number_text.h"
#include "spx/support/tokenizer.h"

namespace qs_lib {
namespace {
constexpr char HEADER_SEPARATOR[] = "|";
}  // namespace

CsvReport::CsvReport() = default;

CsvReport::~CsvReport() {
  closeAtEnd();
}

void CsvReport::writeHeader(const std::string& header) {
  table_.setColumns(Tokenizer(header, HEADER_SEPARATOR).tokens());
  const std::vector<std::string>& names = table_.columns();
  for (std::size_t i = 0; i < names.size(); ++i) {
    cell(names[i], i + 1 < names.size());
  }
  write("\n");
}

void CsvReport::cell(std::string_view value, bool more) {
  cell_.clear();
  appendCsvText(cell_, value, separator);
  endCell(more);
}

void CsvReport::cell(int value, bool more) {
  cell_.clear();
  appendWhole(cell_, value);
  endCell(more);
}

void CsvReport::cell(double value, int digits, bool more) {
  cell_.clear();
  appendReal(cell_, value, digits);
  endCell(more);
}

void CsvReport::endCell(bool more) {
  if (more && table_.isDeclared()) {
    cell_ += separator;
  }
  write(cell_);
}
}  // namespace qs_lib

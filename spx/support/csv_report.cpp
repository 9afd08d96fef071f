#include "spx/support/csv_report.h"

#include "spx/support/number_text.h"
#include "spx/support/tokenizer.h"

namespace qs_lib {
namespace {
constexpr char HEADER_SEPARATOR[] = "|";

void appendQuoted(std::string& out, const std::string& text) {
  out += '"';
  for (const char character : text) {
    if (character == '"') {
      out += '"';
    }
    out += character;
  }
  out += '"';
}
}  // namespace

CsvReport::CsvReport() = default;

CsvReport::~CsvReport() {
  fileClose();
}

void CsvReport::writeHeader(const std::string& header) {
  table_.setColumns(Tokenizer(header, HEADER_SEPARATOR).tokens());
  const std::vector<std::string>& names = table_.columns();
  for (std::size_t i = 0; i < names.size(); ++i) {
    cell(names[i], i + 1 < names.size());
  }
  write("\n");
}

void CsvReport::cell(const std::string& value, bool more) {
  if (needsQuotes(value)) {
    appendQuoted(cell_, value);
  } else {
    cell_ = value;
  }
  endCell(more);
}

void CsvReport::cell(int value, bool more) {
  cell_ = std::to_string(value);
  endCell(more);
}

void CsvReport::cell(double value, int digits, bool more) {
  appendReal(cell_, value, digits);
  endCell(more);
}

void CsvReport::endCell(bool more) {
  if (more && table_.isDeclared()) {
    cell_ += separator;
  }
  write(cell_);
  cell_.clear();
}

bool CsvReport::needsQuotes(const std::string& text) const {
  if (text.empty()) {
    return false;
  }
  if (text.front() == ' ' || text.back() == ' ') {
    return true;
  }
  for (const char character : text) {
    if (character == separator || character == '"' || character == '\'' || character == '#' ||
        character == '\n' || character == '\r') {
      return true;
    }
  }
  return false;
}
}  // namespace qs_lib

#include "spx/support/csv_report.h"

#include "spx/support/number_text.h"
#include "spx/support/tokenizer.h"

namespace qs_lib {
namespace {
constexpr char HEADER_SEPARATOR[] = "|";

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char character : text) {
    if (character == '"') {
      out += '"';
    }
    out += character;
  }
  return out + "\"";
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
    write(quoted(value));
  } else {
    write(value);
  }
  endCell(more);
}

void CsvReport::cell(int value, bool more) {
  write(std::to_string(value));
  endCell(more);
}

void CsvReport::cell(double value, int digits, bool more) {
  number_.clear();
  appendReal(number_, value, digits);
  write(number_);
  endCell(more);
}

void CsvReport::endCell(bool more) {
  if (more && table_.isDeclared()) {
    write({&separator, 1});
  }
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

#include "console/studbook/column_mapping.h"

#include <algorithm>
#include <cstring>

#include "spx/support/configuration.h"
#include "spx/support/file_name.h"

#include "console/base/failure.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

constexpr char SECTION[] = "COLUMNS";
constexpr std::string_view FIELD = "column.";
constexpr char DATES[] = "reading.dates";
constexpr char FOOTERS[] = "reading.footer";
constexpr char SHEET[] = "reading.sheet";
constexpr char ENCODING[] = "reading.encoding";

qs_lib::Configuration mappingFile(const std::string& path) {
  qs_lib::Configuration file;
  const auto parts = qs_lib::splitFileName(path);
  file.setDirectory(parts.directory);
  file.setName(parts.name);
  file.setExtension(parts.extension);
  file.setSection(SECTION);
  return file;
}

const char* orderText(DATE_ORDER order) {
  return order == DATE_ORDER::DAY_FIRST ? "day-first" : order == DATE_ORDER::MONTH_FIRST ? "month-first" : "";
}

const char* footerText(FOOTER footer) {
  return footer == FOOTER::SKIP ? "skip" : footer == FOOTER::KEEP ? "keep" : "";
}

void readOptions(const qs_lib::Configuration& file, reading_options& reading) {
  const auto value = [&](const char* key) { return file.get(key).value; };
  if (reading.dates == DATE_ORDER::UNKNOWN && !value(DATES).empty()) {
    reading.dates = value(DATES) == "day-first" ? DATE_ORDER::DAY_FIRST : DATE_ORDER::MONTH_FIRST;
  }
  if (reading.footer == FOOTER::ASK && !value(FOOTERS).empty()) {
    reading.footer = value(FOOTERS) == "skip" ? FOOTER::SKIP : FOOTER::KEEP;
  }
  reading.sheet = reading.sheet.empty() ? value(SHEET) : reading.sheet;
  reading.encoding = reading.encoding.empty() ? value(ENCODING) : reading.encoding;
}

}  // namespace

void readMapping(const std::string& path, studbook_files& files) {
  qs_lib::Configuration file = mappingFile(path);
  if (!file.load()) {
    throw Failure(path + ": not a file that --mapping wrote, or it cannot be read");
  }
  for (const auto& [key, entry] : file.entries()) {
    if (!key.starts_with(FIELD)) {
      continue;
    }
    const std::string field = key.substr(FIELD.size());
    const bool is_chosen = std::any_of(files.titles.begin(), files.titles.end(),
                                       [&](const title_choice& choice) { return choice.field == field; });
    if (!is_chosen) {
      files.titles.push_back({field, entry.value});
    }
  }
  readOptions(file, files.reading);
}

void writeMapping(const std::string& path, const studbook_tables& tables, const reading_options& reading) {
  qs_lib::Configuration file = mappingFile(path);
  for (const stored_table& table : storedTableList()) {
    const table_source& source = tables.*table.source;
    for (const column_note& column : source.open ? tables.notes->of(source.name).columns : std::vector<column_note>()) {
      const std::string field = source.titles.prefix + column.field;
      if (!column.field.empty()) {
        file.set(std::string(FIELD) + field, "text", column.title, "title of the column that holds " + field);
      }
    }
  }
  const auto set = [&](const char* key, const std::string& value, const char* description) {
    if (!value.empty()) {
      file.set(key, "text", value, description);
    }
  };
  set(DATES, orderText(reading.dates), "order of day and month in dates: day-first or month-first");
  set(FOOTERS, footerText(reading.footer), "lines such as Total: skip or keep");
  set(SHEET, reading.sheet, "sheet of the animals in a workbook");
  set(ENCODING, reading.encoding, "encoding of CSV tables");
  if (!file.save()) {
    throw Failure(path + ": cannot be written");
  }
}

}  // namespace spx::console

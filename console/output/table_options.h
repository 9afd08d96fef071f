#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "console/output/output_format.h"
#include "console/output/result_output.h"
#include "console/output/table.h"

namespace CLI {
class App;
}

namespace spx::console {

/// The options of the command line for showing a table.
struct table_options {
  OUTPUT_FORMAT format = OUTPUT_FORMAT::TEXT;
  result_options output = {};
  std::vector<std::string> columns = {};  ///< as typed: names, separated by commas
  std::vector<std::string> sort = {};     ///< likewise; "-" before a name sorts in descending order
  std::vector<std::string> where = {};    ///< FIELD=VALUE; also with !=, <, <=, >, >=
  std::optional<std::size_t> limit = {};
};

/// Adds `--format`, `-o`, `--overwrite`, `--no-pager`, `--columns`, `--sort`, `--where` and `--limit`. The options
/// must live until the command line is parsed.
void addTableOptions(CLI::App& app, table_options& options);

/// The same without the options that choose rows and columns, for tables with a few fixed rows.
void addFormatOptions(CLI::App& app, table_options& options);

/// The columns and rows that the options choose, sorted. Texts are compared without regard to case, and sorted as
/// people do (2 before 10); a date matches the year or month that is asked for; missing values come last. Throws
/// UsageError for a column that the table does not have, with those that it has.
table_part chosenPart(const Table& table, const table_options& options);

/// Shows the table in the form and at the destination that the options name. Throws UsageError, and Failure when
/// it cannot be written.
void showTable(const Table& table, const table_options& options);

}  // namespace spx::console

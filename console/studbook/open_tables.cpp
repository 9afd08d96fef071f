#include "console/studbook/open_tables.h"

#include "console/base/failure.h"
#include "console/studbook/file_rows.h"
#include "console/studbook/id_prefix.h"
#include "console/studbook/schema.h"
#include "console/studbook/studbook_file.h"
#include "console/tables/csv_table.h"

namespace spx::console {
namespace {

void refuseOtherFiles(const studbook_files& files) {
  if (files.events.empty() && files.locations.empty() && files.programs.empty() && files.titles.empty()) {
    return;
  }
  throw UsageError(files.animals +
                   " is a studbook file with all its tables: --events, --locations, --programs "
                   "and --map go with tables");
}

studbook_tables openAsTheyAre(const studbook_files& files) {
  if (isStudbookFile(files.animals)) {
    refuseOtherFiles(files);
    return storedTables(std::make_shared<StudbookFile>(files.animals, FILE_ACCESS::READ));
  }
  const studbook_files tables = resolveFiles(files);
  studbook_tables sources;
  sources.file = tables.animals;
  sources.format = "CSV";
  sources.titles = tables.titles;
  for (const stored_table& table : storedTableList()) {
    sources.*table.source = csvSource(tables.*table.file);
  }
  return sources;
}

}  // namespace

studbook_tables openTables(const studbook_files& files) {
  const studbook_tables tables = openAsTheyAre(files);
  return files.id_prefix.empty() ? tables : withIdPrefix(tables, files.id_prefix);
}

}  // namespace spx::console

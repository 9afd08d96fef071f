#include "console/studbook/open_tables.h"

#include "console/base/failure.h"
#include "console/studbook/file_rows.h"
#include "console/studbook/id_prefix.h"
#include "console/studbook/keeper_tables.h"
#include "console/studbook/studbook_file.h"

namespace spx::console {
namespace {

void refuseOtherFiles(const studbook_files& files) {
  if (files.events.empty() && files.locations.empty() && files.programs.empty() && files.titles.empty()) {
    return;
  }
  throw UsageError(files.animals +
                   " is a studbook file with all its tables: --events, --locations, --programs "
                   "and --map can only be used with tables");
}

studbook_tables openAsTheyAre(const studbook_files& files) {
  if (isStudbookFile(files.animals)) {
    refuseOtherFiles(files);
    return storedTables(std::make_shared<StudbookFile>(files.animals, FILE_ACCESS::READ));
  }
  return keeperTables(resolveFiles(files));
}

}  // namespace

studbook_tables openTables(const studbook_files& files) {
  const studbook_tables tables = openAsTheyAre(files);
  return files.id_prefix.empty() ? tables : withIdPrefix(tables, files.id_prefix);
}

}  // namespace spx::console

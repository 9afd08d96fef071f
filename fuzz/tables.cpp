// The tables of a studbook. An input holds the animals, events, locations and programmes, separated
// by lines "%%"; its lines are also used as the cells of a table that is written and read back.
#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"

#include "console/base/failure.h"
#include "console/studbook/load_studbook.h"
#include "console/tables/csv_table.h"
#include "console/tables/loading_notes.h"
#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

using console::CsvTable;
using console::studbook_files;

constexpr std::string_view PART_END = "\n%%\n";

/// Cuts the next part off; the last one ends with the text.
std::string_view takePart(std::string_view& text) {
  const std::size_t end = text.find(PART_END);
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + PART_END.size());
  return part;
}

studbook_files writeTables(std::string_view text) {
  studbook_files files;
  files.animals = ramDirectory() + "/animals.csv";
  writeContent(files.animals, takePart(text));
  for (auto [file, name] : {std::pair(&files.events, "/events.csv"), std::pair(&files.locations, "/locations.csv"),
                            std::pair(&files.programs, "/programs.csv")}) {
    if (!text.empty()) {
      *file = ramDirectory() + name;
      writeContent(*file, takePart(text));
    }
  }
  return files;
}

std::size_t countRows(const std::string& file) {
  CsvTable table(file);
  std::size_t rows = 0;
  while (table.next()) {
    ++rows;
  }
  return rows;
}

/// Checks that every row has become an animal, with an ID of its own or a duplicate one, in a known deme.
void checkStudbook(const studbook_files& files) {
  std::size_t animals = 0;
  for (const master_data& animal : Animals.records) {
    if (!console::hasRow(animal)) {
      continue;
    }
    ++animals;
    require(!animal.stud_id.empty(), "an animal without an ID");
    require(MetaPop.memberExists(animal.birth.location), "a birth at no deme");
    require(animal.death.date == 0 || MetaPop.memberExists(animal.death.location), "an end nowhere");
    for (const move_data& move : animal.moves) {
      require(MetaPop.memberExists(move.location) && move.date != 0, "an event at no deme or day");
    }
  }
  require(animals == countRows(files.animals), "rows are lost");
  require(Animals.pedigree.size() == Animals.index.size(), "the pedigree misses animals");
}

void tryStudbook(std::string_view text) {
  const studbook_files files = writeTables(text);
  try {
    console::loadStudbook(files);
  } catch (const console::Failure&) {
    require(Animals.records.empty(), "faulty tables leave animals");
    return;
  } catch (const console::UsageError&) {
    require(Animals.records.empty(), "titles in doubt leave animals");
    return;
  }
  checkStudbook(files);
  console::dropStudbook();
}

std::string quotedCell(const std::string& text) {
  std::string cell = "\"";
  for (const char character : text) {
    cell += character == '"' ? "\"\"" : std::string(1, character);
  }
  return cell + '"';
}

/// Two cells a row, all of them in quotes; a table with a NUL is not a text table and is left out.
void tryCells(const std::vector<std::string>& lines) {
  std::string content = "\"first title\",\"second; title\"\r\n";
  for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
    content += quotedCell(lines[i]) + "," + quotedCell(lines[i + 1]) + "\r\n";
  }
  if (content.find('\0') != std::string::npos) {
    return;
  }
  writeContent(ramDirectory() + "/cells.csv", content);
  CsvTable table(ramDirectory() + "/cells.csv");
  for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
    if (lines[i].empty() && lines[i + 1].empty()) {
      continue;  // an empty row
    }
    require(table.next() && table.cells() == 2, "a row is lost");
    require(table[0] == lines[i] && table[1] == lines[i + 1], "cells come back changed");
  }
  require(!table.next(), "a row too many");
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  const std::string_view text = asText(data, size);
  ramDirectory();
  tryStudbook(text);
  tryCells(linesOf(text));
  return 0;
}

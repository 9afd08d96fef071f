// A studbook of arbitrary records: what is derived from it, the analyses and the exports.
#include <algorithm>
#include <limits>
#include <map>
#include <set>

#include "spx/spx.h"

#include "fuzz/csv_reader.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/random_studbook.h"
#include "fuzz/xml_reader.h"

namespace spx::fuzz {
namespace {

constexpr std::uint32_t PAST_LAST_FIELD = 10;

bool isPermutation(std::vector<position> positions) {
  std::sort(positions.begin(), positions.end());
  for (position i = 0; i < positions.size(); ++i) {
    if (positions[i] != i) {
      return false;
    }
  }
  return true;
}

/// Requires that the index holds each of the first `size` records once; records that building the
/// pedigree adds are not in it.
void requireWholeIndex(std::size_t size) {
  require(Animals.index.size() == size && isPermutation(Animals.index), "no permutation");
}

/// Requires that every animal of the index has exactly one entry, and that parents are records.
void requireWholePedigree() {
  std::vector<position> animals;
  for (const pedigree_record& entry : Animals.pedigree) {
    require(std::max(entry.sire, entry.dam) < Animals.records.size(), "a parent beyond the records");
    animals.push_back(entry.animal);
  }
  require(animals.size() == Animals.index.size() && isPermutation(animals), "a broken pedigree");
}

void checkLookup() {
  std::map<std::string, position> first;
  std::map<std::string, position> last;
  for (const auto& [id, record] : Animals.lookup) {
    last[id] = record;
  }
  for (position record = 0; record < Animals.index.size(); ++record) {
    const std::string& id = Animals.records[record].stud_id;
    first.emplace(id, record);
    require(last.at(id) >= record, "the lookup keeps an earlier record");
    require(Animals.findMaster(id) == first.at(id), "the search finds a later record");
  }
  require(Animals.lookup.size() == first.size(), "IDs without a record");
}

void checkFindings() {
  std::map<std::string, int> bearers;
  for (position record = 0; record < Animals.index.size(); ++record) {
    ++bearers[Animals.records[record].stud_id];
  }
  std::ptrdiff_t duplicates = 0;
  for (const auto& [id, count] : bearers) {
    duplicates += count > 1 && !isPseudoIndividual(id) ? count : 0;
  }
  const auto found =
      std::count_if(Animals.inconsistencies.begin(), Animals.inconsistencies.end(),
                    [](const inconsistency& finding) { return finding.code == INCONSISTENCY::DUPLICATE_ID; });
  require(found == duplicates, "duplicate IDs are miscounted");
}

void checkSorting() {
  const std::size_t size = Animals.index.size();
  for (std::uint32_t field = 0; field <= PAST_LAST_FIELD; ++field) {
    Animals.sortList(static_cast<SORT_FIELD>(field));
    requireWholeIndex(size);
    Animals.sortPedigree(static_cast<SORT_FIELD>(field));
    requireWholePedigree();
  }
  Animals.sortList(SORT_FIELD::BIRTH);
  const auto by_birth = [](position a, position b) {
    return Animals.records[a].birth.date < Animals.records[b].birth.date;
  };
  require(std::is_sorted(Animals.index.begin(), Animals.index.end(), by_birth), "no birth order");
}

/// Whether every parent comes before its offspring in birth order, so that one walk finds all
/// ancestors.
bool isOrdered(const std::vector<pedigree_record>& pedigree) {
  std::vector<std::size_t> place(Animals.records.size(), 0);
  for (std::size_t i = 0; i < pedigree.size(); ++i) {
    place[pedigree[i].animal] = i + 1;
  }
  return std::all_of(pedigree.begin(), pedigree.end(), [&place](const pedigree_record& entry) {
    return std::max(place[entry.sire], place[entry.dam]) < place[entry.animal];
  });
}

std::set<position> ancestorsOf(const std::string& id) {
  std::map<position, const pedigree_record*> entries;
  std::vector<position> waiting;
  for (const pedigree_record& entry : Animals.pedigree) {
    entries[entry.animal] = &entry;
    if (Animals.records[entry.animal].stud_id == id) {
      waiting.push_back(entry.animal);
    }
  }
  std::set<position> family;
  while (!waiting.empty()) {
    const position animal = waiting.back();
    waiting.pop_back();
    if (family.insert(animal).second && entries.count(animal) != 0) {
      waiting.push_back(entries[animal]->sire);
      waiting.push_back(entries[animal]->dam);
    }
  }
  return family;
}

void checkAncestors(const std::string& id) {
  require(Animals.individualPedigree(id), "a known animal is unknown");
  const std::set<position> family = ancestorsOf(id);
  std::size_t selected = 0;
  for (position record = 0; record < Animals.records.size(); ++record) {
    const bool is_selected = Animals.records[record].selected;
    selected += is_selected;
    require(!is_selected || family.count(record) != 0, "a stranger in a pedigree");
  }
  require(!isOrdered(Animals.pedigree) || selected == family.size(), "an ancestor is missed");
}

void checkSummary() {
  DataSummary summary;
  require(summary.initialize() && summary.analyse(), "no summary");
  summary.reportConsole();
  require(summary.living + summary.died + summary.disappeared == summary.records,
          "animals neither alive nor dead nor lost");
  std::int64_t sexes = 0;
  for (const auto& [sex, count] : summary.sexes) {
    sexes += count;
  }
  require(sexes == summary.records, "animals without a sex");
}

void listAll(const std::string& id) {
  listStudbookData(true);
  listStudbookData(false);
  listLiving();
  listPedigree(id);
  listOffspring(id);
  listAnimal(id);
  Animals.info();
  for (const master_data& animal : Animals.records) {
    masterDebug(animal, "");
    masterToMap(animal);
    movedToDemeView(animal, {0, View.end_date});
    arrivalDemeView(animal);
    removalDemeView(animal);
  }
  require(TestFilters(), "no table of the predicates");
}

std::size_t realAnimals() {
  return static_cast<std::size_t>(
      std::count_if(Animals.pedigree.begin(), Animals.pedigree.end(),
                    [](const auto& entry) { return !isPseudoIndividual(Animals.records[entry.animal].stud_id); }));
}

void checkExports() {
  ExportDattrf dattrf;
  ExportField fields;
  ExportPedigree pedigree;
  dattrf.setReportDirectory(ramDirectory());
  fields.setReportDirectory(ramDirectory());
  pedigree.setReportDirectory(ramDirectory());
  require(dattrf.exportData() && fields.exportToR() && pedigree.exportToR(), "no export");
  const std::vector<csv_row> rows = readCsv(contentOf(ramDirectory() + "/pedigree.csv"), '|');
  require(rows.size() == realAnimals() + 1, "pedigree rows are lost");
  for (const csv_row& row : rows) {
    require(row.size() == rows[0].size(), "a pedigree row of another length");
  }
  readCsv(contentOf(ramDirectory() + "/animal_data.csv"), '\t');
}

void checkParentTracing() {
  TraceParents analysis;
  analysis.setReportDirectory(ramDirectory());
  require(analysis.initialize() && analysis.trace(), "no parents are traced");
  require(analysis.isReportWritten(), "the report of parents is not whole");
  const std::string name = ramDirectory() + "/parents-" + getEnumName(View.sex) + ".xml";
  readXml(contentOf(name));
  requireWholePedigree();
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  ramDirectory();
  makeStudbook(asText(data, size));
  deriveStudbook();
  requireWholePedigree();
  checkLookup();
  checkFindings();
  checkSorting();
  const std::string first_id = spx::Animals.records[5 % spx::Animals.records.size()].stud_id;
  checkAncestors(spx::Animals.records.back().stud_id);
  checkAncestors(first_id);
  checkSummary();
  listAll(first_id);
  checkExports();
  checkParentTracing();
  return 0;
}

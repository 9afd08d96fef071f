#include "console/results/kinship_table.h"

#include <limits>
#include <memory>
#include <unistd.h>

#include "spx/genetics/founders.h"
#include "spx/genetics/kinship.h"
#include "spx/support/number_text.h"

#include "console/base/failure.h"

namespace spx::console {
namespace {

/// The kinships of a set of animals, with unknown parents treated as the option says.
class Kinships {
 public:
  Kinships(const GeneticBasis& basis, const std::vector<animal_number>& animals, UNKNOWN_PARENTS unknown) {
    needMemory(animals.size());
    const GeneticPedigree& pedigree = basis.pedigree();
    const unsigned threads = GeneticBasis::threads();
    bool computed = false;
    if (unknown == UNKNOWN_PARENTS::EXCLUDE) {
      const std::vector<double> known = knownShares(pedigree);
      computed = matrix_.compute(pedigree, inbreedingBySources(pedigree, known, threads), animals, threads);
      for (const animal_number animal : animals) known_.push_back(known[animal]);
    } else {
      computed = matrix_.compute(pedigree, basis.terms(), animals, threads);
    }
    if (!computed) refuse(animals.size());
  }

  double at(std::size_t a, std::size_t b) const {
    if (known_.empty()) return matrix_.at(a, b);
    const double both = known_[a] * known_[b];
    return both > 0 ? matrix_.at(a, b) / both : std::numeric_limits<double>::quiet_NaN();
  }

 private:
  [[noreturn]] static void refuse(std::size_t animals) {
    throw Failure("the kinships of " + std::to_string(animals) + " animals need " +
                  qs_lib::realToString(KinshipMatrix::bytesFor(animals) / (1U << 30U), 1) +
                  " GiB of memory, more than is available; choose fewer animals with a view (--location, --sex, "
                  "--taxon), or see spx mean-kinship");
  }

  static void needMemory(std::size_t animals) {
    const double memory = static_cast<double>(::sysconf(_SC_PHYS_PAGES)) * static_cast<double>(::sysconf(_SC_PAGESIZE));
    if (KinshipMatrix::bytesFor(animals) > memory / 2) refuse(animals);
  }

  KinshipMatrix matrix_;
  std::vector<double> known_;  ///< by place in the set; empty where unknown parents are founders
};

table_column kinshipColumn() {
  return {.name = "kinship",
          .title = "Kinship",
          .kind = COLUMN_KIND::REAL,
          .decimals = 4,
          .help =
              "the chance that a gene of one and a gene of the other come from the same gene of an ancestor; F of "
              "their offspring. Parent and offspring, or full sibs: 0.25; half sibs 0.125; cousins 0.0625"};
}

struct pair_of_places {
  std::uint32_t first;
  std::uint32_t second;
};

}  // namespace

Table kinshipTable(const GeneticBasis& basis, const std::vector<animal_number>& animals, UNKNOWN_PARENTS unknown,
                   bool with_self) {
  Table table({{.name = "id1", .title = "Animal"}, {.name = "id2", .title = "With"}, kinshipColumn()});
  const auto kinships = std::make_shared<Kinships>(basis, animals, unknown);
  const auto pairs = std::make_shared<std::vector<pair_of_places>>();
  for (std::uint32_t first = 0; first < animals.size(); ++first) {
    for (std::uint32_t second = with_self ? first : first + 1; second < animals.size(); ++second) {
      pairs->push_back({first, second});
    }
  }
  const auto ids = std::make_shared<std::vector<std::string>>();
  for (const animal_number animal : animals) ids->push_back(basis.id(animal));
  table.setRows(pairs->size(), [kinships, pairs, ids](std::size_t row, std::size_t column) -> Cell {
    const auto [first, second] = (*pairs)[row];
    if (column == 2) return kinships->at(first, second);
    return (*ids)[column == 0 ? first : second];
  });
  table.if_empty = "There is only one animal, and kinship needs two; --self shows its kinship with itself.";
  addNotes(table, basis.notes(unknown));
  return table;
}

Table kinshipMatrixTable(const GeneticBasis& basis, const std::vector<animal_number>& animals,
                         UNKNOWN_PARENTS unknown) {
  std::vector<table_column> columns{{.name = "id", .title = "ID"}};
  for (const animal_number animal : animals) {
    table_column column = kinshipColumn();
    column.name = column.title = basis.id(animal);
    column.help.clear();
    columns.push_back(std::move(column));
  }
  Table table(std::move(columns));
  const Kinships kinships(basis, animals, unknown);
  for (std::size_t row = 0; row < animals.size(); ++row) {
    std::vector<Cell> cells{basis.id(animals[row])};
    for (std::size_t column = 0; column < animals.size(); ++column) cells.emplace_back(kinships.at(row, column));
    table.addRow(std::move(cells));
  }
  table.notes.push_back("The diagonal shows the kinship of an animal with itself, (1 + F) / 2.");
  addNotes(table, basis.notes(unknown));
  return table;
}

}  // namespace spx::console

#include "fuzz/random_studbook.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "spx/spx.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

constexpr std::size_t MOST_ANIMALS = 150;  // adding a pseudo founder scans the store

/// The numbers of a part, one after the other; 0 when there are no more.
class Numbers {
 public:
  explicit Numbers(std::string_view text) : parts_(splitAt(text, ' ')) {}

  std::uint64_t whole() { return wholeNumber(next()); }
  std::uint32_t word() { return static_cast<std::uint32_t>(whole()); }
  double real() { return realNumber(next()); }
  template <class Enumeration>
  Enumeration choice() {
    return static_cast<Enumeration>(word());
  }

 private:
  std::string_view next() { return at_ < parts_.size() ? parts_[at_++] : std::string_view(); }

  std::vector<std::string_view> parts_;
  std::size_t at_ = 0;
};

/// The parts of a line; those that are missing are empty.
class Parts {
 public:
  explicit Parts(std::string_view line) : parts_(splitAt(line, '\t')) {}

  std::string_view raw(std::size_t part) const { return part < parts_.size() ? parts_[part] : std::string_view(); }
  std::string text(std::size_t part) const { return unescaped(raw(part)); }

 private:
  std::vector<std::string_view> parts_;
};

void clearState() {
  View = DataFilter();  // first, since the view holds taxa
  Animals.clearStudbook();
  Animals.records.shrink_to_fit();
  MetaPop = MetaPopulation();
  Subspecies = SubTaxa();
  LifeHistory.initialize();
  user_field_list.clear();
}

void makeDefaults() {
  MetaPop.addLevel("Region");
  MetaPop.addLevel("Institution");
  MetaPop.addMember("1", "Everywhere");
  View.path = ramDirectory();
  View.origin = BIRTH_TYPE::ALL;
  user_field_list.push_back({"note", qs_lib::FIELD_TYPE::TEXT});
  LifeHistory.setReproductiveAge(SEX::MALE, {365, 9000});
  LifeHistory.setReproductiveAge(SEX::FEMALE, {365, 9000});
}

void setView(const Parts& parts) {
  Numbers numbers(parts.raw(1));
  View.end_date = numbers.word();
  View.monitor_date = View.end_date;
  View.origin = numbers.choice<BIRTH_TYPE>();
  View.birth_accuracy = numbers.choice<DATE_ACCURACY>();
  View.sex = numbers.choice<SEX>();
  LifeHistory.setGestation(numbers.real());
  const double lowest = numbers.real();
  LifeHistory.setReproductiveAge(SEX::FEMALE, {lowest, numbers.real()});
}

void addDeme(const Parts& parts) {
  try {
    MetaPop.addMember(parts.text(1), parts.text(2));
  } catch (const std::invalid_argument&) {
    // The text is not a number.
  } catch (const std::out_of_range&) {
    // A number is out of range.
  }
}

void addMove(const Parts& parts) {
  if (Animals.records.empty()) {
    return;
  }
  Numbers numbers(parts.raw(1));
  move_data move;
  move.date = numbers.word();
  move.location = static_cast<packed_deme>(numbers.whole());
  move.event = numbers.choice<MOVE_TYPE>();
  Animals.records.back().moves.push_back(move);
}

void readNumbers(master_data& animal, Numbers numbers) {
  animal.sex = numbers.choice<SEX>();
  animal.birth.date = numbers.word();
  animal.death.date = numbers.word();
  animal.birth.accuracy = numbers.choice<DATE_ACCURACY>();
  animal.death.event = numbers.choice<MOVE_TYPE>();
  animal.death.accuracy = numbers.choice<DATE_ACCURACY>();
  animal.birth.range = numbers.whole();
  animal.birth_type = numbers.choice<BIRTH_TYPE>();
  animal.fcoef = numbers.real();
  // A float cannot hold every double.
  const double generation = numbers.real();
  const bool fits = std::abs(generation) <= std::numeric_limits<float>::max();
  setAnimalGeneration(animal, fits ? generation : std::numeric_limits<double>::quiet_NaN());
}

void addAnimal(const Parts& parts) {
  master_data animal;
  animal.rearing = REARING::UNKNOWN;
  initializeMaster(animal);
  animal.stud_id = parts.text(0);
  animal.sire_id = parts.text(1);
  animal.dam_id = parts.text(2);
  readNumbers(animal, Numbers(parts.raw(3)));
  const taxon_handle taxon = Subspecies.find(parts.text(4));
  animal.taxon = taxon == Subspecies.end() ? Subspecies.getGeneric() : taxon;
  animal.birth.location = packed_deme{1} << 56;
  animal.user_data.push_back(parts.text(5));
  Animals.checkPseudoFounder(animal);
  Animals.addMaster(std::move(animal));
}

void takeLine(const Parts& parts) {
  const std::string_view word = parts.raw(0);
  if (word == "view") {
    setView(parts);
  } else if (word == "deme") {
    addDeme(parts);
  } else if (word == "taxon") {
    View.addTaxon(*Subspecies.add(parts.text(1)));
  } else if (word == "move") {
    addMove(parts);
  } else {
    addAnimal(parts);
  }
}

}  // namespace

void makeStudbook(std::string_view text) {
  clearState();
  makeDefaults();
  require(Animals.initialize(text.size() % 16), "no room for sixteen animals");
  for (const std::string_view line : splitAt(text, '\n')) {
    if (Animals.records.size() < MOST_ANIMALS) {
      takeLine(Parts(line));
    }
  }
}

void deriveStudbook() {
  require(Animals.validate(), "validation fails");
  Animals.resetOrder();
  require(Animals.createIndex(SORT_FIELD::STUDBOOK_ID), "no index");
  require(Animals.createLookup(), "no lookup");
  require(Animals.assignIdKeys(), "no keys");
  require(Animals.populationPedigree(), "no pedigree");
  require(Animals.flagBreeders(), "no breeders");
}

}  // namespace spx::fuzz

// Parents without a record, and which ID was meant.
#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "spx/core/identifiers.h"

#include "console/check/rules.h"

namespace spx::console {
namespace {

constexpr const char* ROLE_NAMES[] = {"sire", "dam"};

/// The intended ID is guessed for at most this many missing parents: each guess looks up some hundred IDs.
constexpr std::size_t MOST_SOUGHT = 1000;

bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

/// Leaves out the zeros in front of numbers.
std::string withoutZeros(const std::string& text) {
  std::string shorter;
  for (const char letter : text) {
    if (letter != '0' || (!shorter.empty() && isDigit(shorter.back()))) {
      shorter += letter;
    }
  }
  return shorter;
}

/// The ID without what is easily mistyped: case, blanks, punctuation, leading zeros.
std::string plainForm(std::string_view id) {
  std::string plain;
  for (const char letter : id) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte >= 0x80 || std::isalnum(byte) != 0) {
      plain += byte < 0x80 ? static_cast<char>(std::tolower(byte)) : letter;
    }
  }
  return withoutZeros(plain);
}

/// The plain form with letters that look like digits replaced by those digits.
std::string lookOf(std::string plain) {
  for (char& letter : plain) {
    letter = letter == 'o' ? '0' : letter == 'l' || letter == 'i' ? '1' : letter == 's' ? '5' : letter;
  }
  return withoutZeros(plain);
}

struct missing_parent {
  std::string id;
  std::vector<position> offspring[2];  ///< as their sire, as their dam
};

/// Finds the ID that was meant. A guess must have the right sex, must not be younger than the offspring, and
/// must be the only one.
class Guesses {
 public:
  Guesses(const CheckedRecords& records, const std::vector<missing_parent>& missing) : records_(records) {
    const std::size_t sought = std::min(missing.size(), MOST_SOUGHT);
    for (std::size_t i = 0; i < sought; ++i) {
      const std::string plain = plainForm(missing[i].id);
      if (!plain.empty()) {
        by_plain_[plain];
        by_look_[lookOf(plain)];
      }
    }
    if (!by_plain_.empty()) {
      enterRecords();
    }
  }

  struct guess {
    std::uint32_t record = CheckedRecords::NONE;
    bool is_sure = false;  ///< the IDs differ only in case, blanks, punctuation and leading zeros
  };

  guess find(const missing_parent& missing) const {
    const std::string plain = plainForm(missing.id);
    const auto same = by_plain_.find(plain);
    if (same == by_plain_.end()) {
      return {};
    }
    if (const std::uint32_t record = only(same->second, missing); record != CheckedRecords::NONE) {
      return {record, true};
    }
    for (const std::vector<position>& candidates :
         {by_look_.at(lookOf(plain)), withoutOddLetter(missing.id), withOneSlip(missing.id)}) {
      if (const std::uint32_t record = only(candidates, missing); record != CheckedRecords::NONE) {
        return {record, false};
      }
    }
    return {};
  }

 private:
  using positions = std::unordered_map<std::string, std::vector<position>>;

  void enterRecords() {
    for (position record = 0; record < records_.size(); ++record) {
      const std::string& id = records_[record].stud_id;
      if (!records_.isChecked(record) || records_.find(id) != record) {
        continue;
      }
      const std::string plain = plainForm(id);
      enter(by_plain_, plain, record);
      enter(by_look_, lookOf(plain), record);
      for (const char letter : id) {
        letters_[static_cast<unsigned char>(letter)] = true;
      }
    }
  }

  static void enter(positions& entries, const std::string& form, position record) {
    const auto entry = entries.find(form);
    if (entry != entries.end()) {
      entry->second.push_back(record);
    }
  }

  std::uint32_t only(const std::vector<position>& candidates, const missing_parent& missing) const {
    std::uint32_t found = CheckedRecords::NONE;
    for (const position candidate : candidates) {
      if (candidate == found || !fits(candidate, missing)) {
        continue;
      }
      if (found != CheckedRecords::NONE) {
        return CheckedRecords::NONE;
      }
      found = static_cast<std::uint32_t>(candidate);
    }
    return found;
  }

  bool fits(position candidate, const missing_parent& missing) const {
    const SEX sex = records_[candidate].sex;
    const auto born = knownDays(records_[candidate].birth);
    for (const std::size_t role : {0U, 1U}) {
      const std::vector<position>& offspring = missing.offspring[role];
      if (!offspring.empty() && sex == (role == 0 ? SEX::FEMALE : SEX::MALE)) {
        return false;
      }
      for (const position animal : offspring) {
        const auto animal_born = knownDays(records_[animal].birth);
        if (animal == candidate || (born && animal_born && animal_born->last <= born->first)) {
          return false;
        }
      }
    }
    return true;
  }

  void addIfKnown(const std::string& id, std::vector<position>& candidates) const {
    const std::uint32_t record = records_.find(id);
    if (record != CheckedRecords::NONE) {
      candidates.push_back(record);
    }
  }

  /// IDs that equal this one without a letter that stands among digits.
  std::vector<position> withoutOddLetter(const std::string& id) const {
    std::vector<position> candidates;
    const auto odd = std::find_if_not(id.begin(), id.end(), isDigit);
    if (odd != id.end() && std::all_of(odd + 1, id.end(), isDigit)) {
      std::string shorter = id;
      shorter.erase(static_cast<std::size_t>(odd - id.begin()), 1);
      addIfKnown(shorter, candidates);
    }
    return candidates;
  }

  /// IDs with one letter deleted, inserted or replaced, or two exchanged. Not for numbers, which are too
  /// similar to each other.
  std::vector<position> withOneSlip(const std::string& id) const {
    constexpr std::size_t SHORTEST = 4;
    constexpr std::size_t LONGEST = 24;
    std::vector<position> candidates;
    const bool is_number = id.find_first_not_of("0123456789") == std::string::npos;
    if (is_number || id.size() < SHORTEST || id.size() > LONGEST) {
      return candidates;
    }
    for (std::size_t at = 0; at <= id.size(); ++at) {
      if (at < id.size()) {
        addIfKnown(id.substr(0, at) + id.substr(at + 1), candidates);
      }
      if (at + 1 < id.size()) {
        std::string exchanged = id;
        std::swap(exchanged[at], exchanged[at + 1]);
        addIfKnown(exchanged, candidates);
      }
      for (std::size_t letter = 0; letter < letters_.size(); ++letter) {
        if (!letters_[letter]) {
          continue;
        }
        addIfKnown(id.substr(0, at) + static_cast<char>(letter) + id.substr(at), candidates);
        if (at < id.size()) {
          std::string replaced = id;
          replaced[at] = static_cast<char>(letter);
          addIfKnown(replaced, candidates);
        }
      }
    }
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return candidates;
  }

  const CheckedRecords& records_;
  positions by_plain_;
  positions by_look_;
  std::array<bool, 256> letters_{};  ///< which bytes occur in IDs
};

std::vector<missing_parent> missingParents(const CheckedRecords& records) {
  std::vector<missing_parent> missing;
  std::unordered_map<std::string_view, std::size_t> known;
  for (position record = 0; record < records.size(); ++record) {
    if (!records.isChecked(record)) {
      continue;
    }
    for (const std::size_t role : {0U, 1U}) {
      const std::string& id = role == 0 ? records[record].sire_id : records[record].dam_id;
      const std::uint32_t parent = role == 0 ? records.sire(record) : records.dam(record);
      if (parent != CheckedRecords::NONE || id.empty() || isPseudoIndividual(id)) {
        continue;
      }
      const auto [entry, is_new] = known.try_emplace(id, missing.size());
      if (is_new) {
        missing.push_back({id, {}});
      }
      missing[entry->second].offspring[role].push_back(record);
    }
  }
  return missing;
}

finding findingOf(const CheckedRecords& records, const missing_parent& missing, const Guesses& guesses) {
  const bool is_sire = !missing.offspring[0].empty();
  finding found = records.about(CHECK::MISSING_PARENT, missing.offspring[is_sire ? 0 : 1].front());
  found.animals = {missing.id};
  found.message = CheckedRecords::nameText(missing.id) + " has no record, but is ";
  const Guesses::guess meant = guesses.find(missing);
  for (const std::size_t role : {0U, 1U}) {
    std::vector<std::string> names;
    for (const position animal : missing.offspring[role]) {
      found.animals.push_back(records[animal].stud_id);
      names.push_back(records.name(animal));
      if (meant.is_sure) {
        found.cure.push_back({records[animal].stud_id, ROLE_NAMES[role], records[meant.record].stud_id});
      }
    }
    if (!names.empty()) {
      found.message +=
          (role == 1 && is_sire ? " and " : "") + ("the " + std::string(ROLE_NAMES[role])) + " of " + listText(names);
    }
  }
  if (meant.record != CheckedRecords::NONE) {
    found.suggestion = "Did you mean " + records.name(meant.record) + "?";
    found.values = {{"nearest", records[meant.record].stud_id}};
  }
  return found;
}

}  // namespace

void checkMissingParents(const CheckedRecords& records, std::vector<finding>& findings) {
  const std::vector<missing_parent> missing = missingParents(records);
  const Guesses guesses(records, missing);
  for (const missing_parent& parent : missing) {
    findings.push_back(findingOf(records, parent, guesses));
  }
}

}  // namespace spx::console

// Locations whose names are nearly the same.
#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "console/check/rules.h"

namespace spx::console {
namespace {

using words = std::vector<std::string>;

/// The words of a name in lower case, sorted.
words wordsOf(const std::string& name) {
  words found;
  std::string word;
  for (const char letter : name + " ") {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte >= 0x80 || std::isalnum(byte) != 0) {
      word += byte < 0x80 ? static_cast<char>(std::tolower(byte)) : letter;
    } else if (!word.empty()) {
      found.push_back(std::move(word));
      word.clear();
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

std::string joined(const words& parts) {
  std::string text;
  for (const std::string& part : parts) {
    text += part + " ";
  }
  return text;
}

/// Whether a word is long enough that a difference of one letter is probably a slip, and has no digits.
bool isSlipWord(const std::string& word) {
  constexpr std::size_t SHORTEST = 6;
  return word.size() >= SHORTEST &&
         std::none_of(word.begin(), word.end(), [](char letter) { return letter >= '0' && letter <= '9'; });
}

/// The forms under which a name is entered in the index, and the forms with which earlier names are looked up.
struct name_forms {
  std::vector<std::string> entered;
  std::vector<std::string> sought;

  void add(const std::string& form) {
    entered.push_back(form);
    sought.push_back(form);
  }
};

/// Names share a form when they have the same words, or when a long word in one name differs from that in the
/// other by one added or replaced letter.
name_forms formsOf(const words& name) {
  name_forms forms;
  forms.add(joined(name));
  for (const std::string& word : name) {
    if (!isSlipWord(word)) {
      continue;
    }
    words others = name;
    others.erase(std::find(others.begin(), others.end(), word));
    const std::string rest = joined(others);
    forms.entered.push_back(rest + "=" + word);
    forms.sought.push_back(rest + "+" + word);
    for (std::size_t at = 0; at < word.size(); ++at) {
      const std::string shorter = word.substr(0, at) + word.substr(at + 1);
      forms.add(rest + std::to_string(at) + "/" + shorter);
      forms.entered.push_back(rest + "+" + shorter);
      forms.sought.push_back(rest + "=" + shorter);
    }
  }
  return forms;
}

packed_deme parentOf(packed_deme place) {
  DemeID deme;
  deme.set(place);
  if (deme.getLevel() >= 0) {
    deme.blocks[static_cast<std::size_t>(deme.getLevel())] = 0;
  }
  return deme.binary();
}

}  // namespace

// Only locations within the same location are compared: every zoo may have its "Aviary 1".
void checkLocations(const CheckedRecords& records, std::vector<finding>& findings) {
  for (const deme_level& level : records.book().locations.levels()) {
    std::map<packed_deme, std::unordered_map<std::string, const deme_member*>> known;
    for (const deme_member& member : level.members) {
      auto& forms = known[parentOf(member.id)];
      std::set<const deme_member*> alike;
      const name_forms own = formsOf(wordsOf(member.name));
      for (const std::string& form : own.sought) {
        if (const auto other = forms.find(form); other != forms.end()) {
          alike.insert(other->second);
        }
      }
      for (const std::string& form : own.entered) {
        forms.try_emplace(form, &member);
      }
      for (const deme_member* other : alike) {
        finding found;
        found.check = CHECK::SIMILAR_LOCATIONS;
        found.values = {{"first", other->name}, {"second", member.name}};
        found.message = "The locations " + CheckedRecords::nameText(other->name) + " and " +
                        CheckedRecords::nameText(member.name) + " may be the same";
        found.suggestion = "Use one name for one place";
        findings.push_back(found);
      }
    }
  }
}

}  // namespace spx::console

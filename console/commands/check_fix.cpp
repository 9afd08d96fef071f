#include "console/commands/check_fix.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "console/edits/animal_choice.h"

namespace spx::console {
namespace {

/// What a cure would set, as a keeper would type it.
std::string cureText(const finding& each) {
  std::string text;
  for (const field_change& change : each.cure) {
    text += (text.empty() ? "" : ", ") + change.animal + " " + change.field + "=" + change.value;
  }
  return text;
}

/// Asks whether to apply a cure and stores the answer in `is_taken`. @return whether to go on asking
bool ask(const finding& each, bool& is_taken) {
  std::cerr << severityName(each.severity()) << " " << codeOf(each.check).code << ": " << each.message << "\n  "
            << cureText(each) << "? [y]es, [n]o, [q]uit: " << std::flush;
  std::string answer;
  if (!std::getline(std::cin, answer)) {
    std::cerr << "\n";
    return false;
  }
  is_taken = !answer.empty() && (answer.front() == 'y' || answer.front() == 'Y');
  return answer.empty() || (answer.front() != 'q' && answer.front() != 'Q');
}

/// The findings whose cures are wanted.
std::vector<finding> chosenCures(const std::vector<finding>& findings, const std::vector<CHECK>& sure) {
  std::vector<finding> chosen;
  bool goes_on = true;
  for (const finding& each : findings) {
    bool is_taken = std::find(sure.begin(), sure.end(), each.check) != sure.end();
    if (each.cure.empty()) {
      continue;
    }
    // With rules named on the command line there are no questions about other rules.
    if (!is_taken && goes_on && sure.empty()) {
      goes_on = ask(each, is_taken);
    }
    if (is_taken) {
      chosen.push_back(each);
    }
  }
  return chosen;
}

void cure(StudbookEdit& edit, const std::vector<finding>& findings) {
  for (const finding& each : findings) {
    for (const field_change& change : each.cure) {
      const std::vector<row_number> animals = edit.find("animals", "id", change.animal);
      if (animals.size() != 1) {
        edit.note("not fixed, because several animals have the ID: " + each.message);
        continue;
      }
      edit.needField("animals", change.field);
      edit.set("animals", animals.front(), change.field, change.value);
    }
  }
}

}  // namespace

ExitCode fixFindings(Session& session, const edit_options& options, const std::vector<finding>& findings,
                     const std::vector<CHECK>& sure) {
  const std::vector<finding> chosen = chosenCures(findings, sure);
  if (chosen.empty()) {
    const bool has_cures =
        std::any_of(findings.begin(), findings.end(), [](const finding& each) { return !each.cure.empty(); });
    std::cerr << (has_cures ? "spx: nothing was changed\n" : "spx: no finding has only one sensible fix\n");
    return ExitCode::DONE;
  }
  std::string codes;
  for (const finding& each : chosen) {
    const std::string code = codeOf(each.check).code;
    if (codes.find(code) == std::string::npos) {
      codes += " " + code;
    }
  }
  return runEdit(session, options, {EDIT_CHANGE, "check --fix:" + codes, "", ""},
                 [&](StudbookEdit& edit) { cure(edit, chosen); });
}

}  // namespace spx::console

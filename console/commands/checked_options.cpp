#include "console/commands/checked_options.h"

#include <algorithm>

#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"

namespace spx::console {

void addChoice(CLI::App& app, const char* name, std::string& value, const std::vector<std::string>& words,
               const std::string& help) {
  std::string names;
  std::string list;
  for (const std::string& word : words) {
    names += (names.empty() ? "" : "|") + word;
    list += (list.empty() ? "" : ", ") + word;
  }
  const auto check = [words, list](const std::string& text) {
    const bool is_known = std::find(words.begin(), words.end(), text) != words.end();
    return is_known ? "" : quotedText(text) + " must be one of: " + list + suggestion(text, words);
  };
  app.add_option(name, value, help + " (default: " + value + ")")->check(check)->type_name(names);
}

}  // namespace spx::console

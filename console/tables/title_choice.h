#pragma once

#include <string>
#include <vector>

namespace spx::console {

/// The user's word that a field stands under a certain title.
struct title_choice {
  std::string field;
  std::string title;
};

/// The user's words on the titles of one table.
struct title_choices {
  std::string prefix = {};  ///< what `--map` has before the fields of that table, such as "events."
  std::vector<title_choice> list = {};
};

}  // namespace spx::console

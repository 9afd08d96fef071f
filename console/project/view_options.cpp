#include "console/project/view_options.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <iterator>

#include <CLI/CLI.hpp>

#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/project/view_animals.h"
#include "console/project/view_settings.h"
#include "console/project/view_store.h"
#include "console/studbook/record_genetics.h"

namespace spx::console {
namespace {

void loadNamedView(const Session& session, const std::string& name) {
  if (!session.hasProject()) {
    throw UsageError("--view " + name + " needs --project NAME");
  }
  if (!viewExists(session.viewDirectory(), name)) {
    throw Failure("there is no view \"" + name + "\" in " + session.viewDirectory());
  }
  loadView(session.viewDirectory(), name);
}

/// The names of the option. An alias that the command uses for something else, such as `--to DIR`, is left out.
std::string optionNames(const CLI::App& app, const view_setting& setting) {
  const std::string name = std::string("--") + setting.name;
  if (setting.alias == nullptr) {
    return name;
  }
  const std::string alias = std::string("--") + setting.alias;
  return app.get_option_no_throw(alias) == nullptr ? name + "," + alias : name;
}

}  // namespace

void addViewOptions(CLI::App& app, view_choice& choice, unsigned parts) {
  constexpr char GROUP[] = "View";
  app.add_option("--view", choice.name, "A saved view of the project")
      ->type_name("NAME")
      ->check([](const std::string& name) { return name.empty() ? "the name of the view is empty" : ""; })
      ->group(GROUP);
  for (const view_setting& setting : viewSettings()) {
    if ((setting.parts & parts) == 0) {
      continue;
    }
    app.add_option_function<std::vector<std::string>>(
           optionNames(app, setting),
           [&choice, name = std::string(setting.name)](const std::vector<std::string>& values) {
             for (const std::string& value : values) {
               choice.settings.emplace_back(name, value);
             }
           },
           setting.help)
        ->type_name(setting.values)
        ->expected(1)
        ->allow_extra_args(false)  // otherwise the option would swallow a following "--"
        ->multi_option_policy(setting.is_list ? CLI::MultiOptionPolicy::TakeAll : CLI::MultiOptionPolicy::TakeLast)
        ->group(GROUP);
  }
}

void useView(const Session& session, const view_choice& choice) {
  setStartView();
  if (!choice.name.empty()) {
    loadNamedView(session, choice.name);
  } else if (session.hasProject() && viewExists(session.projectDirectory(), CURRENT_VIEW)) {
    loadView(session.projectDirectory(), CURRENT_VIEW);
    if (const std::string text = viewText(); !text.empty()) {
      std::cerr << "spx: the view of the project applies: " << text << " (spx view clear resets it)\n";
    }
  }
  for (const auto& [name, value] : choice.settings) {
    setViewSetting(name, value);
  }
  checkViewBounds();
  const double bounds[] = {View.low_inbreeding, View.high_inbreeding, View.low_generation, View.high_generation};
  if (std::any_of(std::begin(bounds), std::end(bounds), [](double bound) { return !std::isnan(bound); })) {
    computeRecordGenetics();
  }
}

}  // namespace spx::console

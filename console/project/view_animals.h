#pragma once

#include <string>
#include <vector>

#include "spx/core/master_data.h"

/// Which animals a view includes. Requires: the studbook is loaded, and useView() has set the view.
namespace spx::console {

/// The records of the animals that match the view, in their order: by what their records say (isInViewRecord), and,
/// where the view has locations or a period of its own, only those that were alive and present there at that time.
/// Linear.
std::vector<position> animalsOfView();

/// The records of the animals that match the view and were alive and present in its locations on its day
/// (View.monitor_date, `--on`), in their order. Linear. Animals without any date are never present.
std::vector<position> livingOfView();

/// Whether the view sets a period: a first day, or a last day other than today.
bool hasPeriod();

/// The conditions of the view, as they would be typed: `--sex male --location "Zoo X"`. Empty when it includes
/// every animal.
/// @param with_day  whether to add the day of the view
std::string viewText(bool with_day = true);

/// "no animals match --sex male", or "the studbook has no animals" for a view that includes every animal.
std::string noAnimalsText(bool with_day = true);

/// The same animals as one flag per record of the store, for Analysis::chooseRecords().
std::vector<bool> chosenRecords(const std::vector<position>& animals);

/// Whether the ID is one of the placeholders that every studbook has: WILD, UNK, UNKM, UNKF or MULT. They
/// do not stand for an individual.
bool isFixedPlaceholder(const std::string& id);

}  // namespace spx::console

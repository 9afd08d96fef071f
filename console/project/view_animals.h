#pragma once

#include <string>
#include <vector>

#include "spx/core/master_data.h"

/// Which animals a view takes. The studbook has to be loaded and the view in use (useView).
namespace spx::console {

/// The records of the animals that match the view, in their order: by what their records say (isInViewRecord), and,
/// where the view has locations or a period of its own, only those that were alive and present there at that time.
/// Linear.
std::vector<position> animalsOfView();

/// The records of the animals that match the view and were alive and present in its locations on its day
/// (View.monitor_date, `--on`), in their order. Linear. Animals without any date are never present.
std::vector<position> livingOfView();

/// Whether the view has a period of its own: a first day, or a last day other than today.
bool hasPeriod();

/// What the view asks for, as it would be typed: `--sex male --location "Zoo X"`. Empty when it takes every animal.
/// @param with_day  the day of the view, too
std::string viewText(bool with_day = true);

/// "no animals match --sex male", or "the studbook has no animals" for a view that takes every animal.
std::string noAnimalsText(bool with_day = true);

/// The same animals as a mark for each record of the store, as Analysis::chooseRecords() takes it.
std::vector<bool> chosenRecords(const std::vector<position>& animals);

/// One of the placeholders that every studbook has: WILD, UNK, UNKM, UNKF and MULT. They stand for nobody.
bool isFixedPlaceholder(const std::string& id);

}  // namespace spx::console

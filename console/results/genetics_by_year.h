#pragma once

#include "console/output/table.h"

/// How the genetics of a population have changed, made from Animals and View.
namespace spx::console {

/// A row for each year in which animals of the view were born: how many, and their mean inbreeding. Animals without a
/// birth date are left out, and a note counts them.
Table inbreedingByYear();

/// A row for each year of the view's period: the animals that were alive and there on its last day, their mean kinship
/// and their gene diversity. Throws Failure for a cycle. A pass over the studbook for each year.
Table diversityByYear();

}  // namespace spx::console

#pragma once

#include "console/output/table.h"

/// What a studbook has besides animals, as tables.
namespace spx::console {

Table locationTable();   ///< with the number of animals that live there on the view's day
Table taxonTable();      ///< with the number of animals
Table programTable();    ///< breeding programmes
Table userFieldTable();  ///< user-defined fields with the type of their values

}  // namespace spx::console

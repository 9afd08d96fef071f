#pragma once

#include <cstddef>

#include <nlohmann/json.hpp>

#include "console/output/table.h"

namespace spx::console {

/// An object that keeps its entries in the order in which they were set.
using fact_object = nlohmann::ordered_json;

/// A row as the object that JSON shows, for results that hold several tables.
fact_object rowObject(const Table& table, const table_part& part, std::size_t row);

}  // namespace spx::console

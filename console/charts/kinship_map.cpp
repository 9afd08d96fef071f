#include "console/charts/kinship_map.h"

#include <algorithm>
#include <numeric>

#include "spx/core/meta_population.h"
#include "spx/genetics/kinship.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/natural_order.h"
#include "console/output/animal_table.h"

namespace spx::console {
namespace {

constexpr std::size_t MOST_ANIMALS = 150;

using square = std::vector<std::vector<double>>;

std::string placeOf(const GeneticBasis& basis, animal_number animal) {
  return placeText(currentDeme(basis.record(animal), View.monitor_date));
}

square kinships(const GeneticBasis& basis, const std::vector<animal_number>& animals) {
  const std::vector<double> values = kinshipBlock(basis.pedigree(), basis.terms(), animals, animals);
  square rows;
  for (std::size_t row = 0; row < animals.size(); ++row) {
    const auto begin = values.begin() + static_cast<std::ptrdiff_t>(row * animals.size());
    rows.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(animals.size()));
  }
  return rows;
}

std::vector<std::size_t> orderedByLocation(const GeneticBasis& basis, const std::vector<animal_number>& animals) {
  std::vector<std::size_t> order(animals.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const int by_place = compareNaturally(placeOf(basis, animals[a]), placeOf(basis, animals[b]));
    return by_place != 0 ? by_place < 0 : compareNaturally(basis.id(animals[a]), basis.id(animals[b])) < 0;
  });
  return order;
}

}  // namespace

std::vector<std::size_t> orderedByLikeness(const square& likeness) {
  std::vector<std::vector<std::size_t>> clusters;
  for (std::size_t place = 0; place < likeness.size(); ++place) {
    clusters.push_back({place});
  }
  square between = likeness;
  while (clusters.size() > 1) {
    std::size_t first = 0;
    std::size_t second = 1;
    for (std::size_t a = 0; a < clusters.size(); ++a) {
      for (std::size_t b = a + 1; b < clusters.size(); ++b) {
        if (between[a][b] > between[first][second]) {
          first = a;
          second = b;
        }
      }
    }
    const auto size = [&clusters](std::size_t at) { return static_cast<double>(clusters[at].size()); };
    for (std::size_t other = 0; other < clusters.size(); ++other) {
      const double joined =
          (between[first][other] * size(first) + between[second][other] * size(second)) / (size(first) + size(second));
      between[first][other] = joined;
      between[other][first] = joined;
    }
    clusters[first].insert(clusters[first].end(), clusters[second].begin(), clusters[second].end());
    clusters.erase(clusters.begin() + static_cast<std::ptrdiff_t>(second));
    between.erase(between.begin() + static_cast<std::ptrdiff_t>(second));
    for (std::vector<double>& row : between) {
      row.erase(row.begin() + static_cast<std::ptrdiff_t>(second));
    }
  }
  return clusters.empty() ? std::vector<std::size_t>() : clusters.front();
}

heat_map kinshipMap(const GeneticBasis& basis, KINSHIP_ORDER order) {
  const std::vector<animal_number>& animals = basis.needLiving();
  if (animals.size() > MOST_ANIMALS) {
    throw Failure(std::to_string(animals.size()) + " living animals are too many for one picture (" +
                  std::to_string(MOST_ANIMALS) +
                  " at most); choose some with --location or --taxon, or use spx kinship --all");
  }
  const square values = kinships(basis, animals);
  const std::vector<std::size_t> places =
      order == KINSHIP_ORDER::LOCATION ? orderedByLocation(basis, animals) : orderedByLikeness(values);
  heat_map map{.title = "Kinship of the living animals",
               .subtitle = "",
               .description =
                   "A square for each pair of animals, darker for a higher kinship; on the diagonal an animal "
                   "with itself.",
               .scale_label = "kinship",
               .names = {},
               .values = {}};
  for (const std::size_t row : places) {
    map.names.push_back(basis.id(animals[row]));
    if (order == KINSHIP_ORDER::LOCATION) {
      const std::string place = placeOf(basis, animals[row]);
      map.groups.push_back(place.empty() ? "not known" : place);
    }
    std::vector<double>& cells = map.values.emplace_back();
    for (const std::size_t column : places) {
      cells.push_back(values[row][column]);
    }
  }
  return map;
}

}  // namespace spx::console

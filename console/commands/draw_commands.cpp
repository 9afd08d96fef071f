#include <filesystem>
#include <memory>
#include <utility>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"

#include "console/base/failure.h"
#include "console/charts/animal_pedigree.h"
#include "console/charts/drawing_tool.h"
#include "console/charts/kinship_map.h"
#include "console/charts/result_charts.h"
#include "console/commands/checked_options.h"
#include "console/commands/command.h"
#include "console/commands/undated_option.h"
#include "console/output/result_output.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/results/census_results.h"
#include "console/results/demography_notes.h"
#include "console/results/founder_tables.h"
#include "console/results/genetic_basis.h"
#include "console/results/genetics_by_year.h"
#include "console/results/growth_results.h"
#include "console/results/reproduction_results.h"
#include "console/results/survival_results.h"
#include "console/studbook/record_genetics.h"

namespace spx::console {
namespace {

/// The options that all pictures have in common.
struct draw_options {
  result_options output;
  std::string format;  ///< empty: by the extension of the file, else SVG
};

void addDrawOptions(CLI::App& app, draw_options& options, bool has_dot) {
  app.add_option(
         "--format", options.format,
         has_dot ? "svg, png, pdf, or dot, the text that Graphviz reads; by default taken from the file name, else svg"
                 : "svg, png or pdf; by default taken from the file name, else svg")
      ->type_name("FORMAT");
  addResultOptions(app, options.output);
}

/// The requested format, by its name or by the extension of the file. Throws UsageError for an unknown one.
IMAGE_FORMAT formatOf(const draw_options& options, bool has_dot) {
  if (!options.format.empty()) {
    return imageFormat(options.format, has_dot);
  }
  const std::string extension = std::filesystem::path(options.output.file).extension().string();
  return extension.size() < 2 ? IMAGE_FORMAT::SVG : imageFormat(extension.substr(1), has_dot);
}

ExitCode writePicture(const draw_options& options, const std::string& picture) {
  ResultOutput output(options.output, false);
  output.stream() << picture;
  output.finish();
  return ExitCode::DONE;
}

struct pedigree_options {
  draw_options draw;
  std::string id;
  pedigree_extent extent;
  std::string fill = "inbreeding";
};

ExitCode drawAnimal(Session& session, pedigree_options& options) {
  const IMAGE_FORMAT format = formatOf(options.draw, true);
  options.extent.fill = options.fill == "nothing" ? PEDIGREE_FILL::NOTHING : PEDIGREE_FILL::INBREEDING;
  session.loadStudbook();
  computeRecordGenetics();
  const pedigree_drawing drawing = animalPedigree(options.id, options.extent);
  return writePicture(
      options.draw, format == IMAGE_FORMAT::DOT ? pedigreeDot(drawing) : convertedImage(drawPedigree(drawing), format));
}

command pedigreeCommand() {
  const auto options = std::make_shared<pedigree_options>();
  return {"pedigree", "Draw the ancestors of an animal, and its descendants if asked",
          [options](Session& session) { return drawAnimal(session, *options); },
          [options](CLI::App& app) {
            app.add_option("ID", options->id, "Studbook ID, as in the table")->required();
            constexpr double MOST = 1000;
            addNumber(app, "--depth", options->extent.ancestors, "COUNT", 0, MOST,
                      "Generations of ancestors (default: 5)");
            addNumber(app, "--descendants", options->extent.descendants, "COUNT", 0, MOST,
                      "Generations of descendants (default: 0)");
            addChoice(app, "--fill", options->fill, {"inbreeding", "nothing"}, "What the symbols are filled by");
            addDrawOptions(app, options->draw, true);
          }};
}

// Charts: each draws the table of its command.

/// The settings of a view that all chart commands use.
constexpr unsigned WHO = VIEW_RECORDS | VIEW_PLACES | VIEW_LIVES;
constexpr unsigned WHO_AND_WHEN = WHO | VIEW_PERIOD;
constexpr unsigned RATES_OF_BOTH_SEXES =
    (WHO_AND_WHEN | VIEW_SURVIVAL | VIEW_CLASSES | VIEW_PRORATING | VIEW_UNKNOWN_SEX | VIEW_OFFSPRING) & ~VIEW_SEX;

struct chart_options {
  draw_options draw;
  view_choice view;
  survival_choice survival;
  projection_choice projection;
  gene_drop_options drop;
  basis_options basis;
};

/// "Alderhay Zoo: all animals, until 2024-12-31", or "on 2024-12-31" for pictures of one day.
std::string whose(Session& session, unsigned view_parts) {
  const bool has_period = (view_parts & VIEW_PERIOD) != 0;
  const bool has_day = (view_parts & VIEW_DAY) != 0;
  return session.studbookName() + ": " +
         (has_period ? viewText() : whoText() + (has_day ? ", on " + dayText(View.monitor_date) : ""));
}

using chart_maker = chart (*)(const chart_options&, const std::string& subtitle);
using options_of = void (*)(CLI::App&, chart_options&);

void addChart(
    CommandGroup& group, const char* name, const char* help, unsigned view_parts, chart_maker make,
    options_of add_options = [](CLI::App&, chart_options&) {}) {
  const auto options = std::make_shared<chart_options>();
  group.add({name, help,
             [options, make, view_parts](Session& session) {
               const IMAGE_FORMAT format = formatOf(options->draw, false);
               session.loadStudbook();
               useView(session, options->view);
               endWithStudbook();
               return writePicture(options->draw,
                                   convertedImage(drawChart(make(*options, whose(session, view_parts))), format));
             },
             [options, view_parts, add_options](CLI::App& app) {
               add_options(app, *options);
               addDrawOptions(app, options->draw, false);
               addViewOptions(app, options->view, view_parts);
             }});
}

/// The table; throws Failure with its text for an empty table when it has no rows.
const Table& needRows(const Table& table) {
  if (table.rows() == 0) {
    throw Failure(table.if_empty.empty() ? "there is nothing to draw" : table.if_empty);
  }
  return table;
}

void addNumbers(CommandGroup& group) {
  addChart(
      group, "census", "Animals by sex at each census", WHO_AND_WHEN | VIEW_CENSUS,
      [](const chart_options&, const std::string& subtitle) { return censusChart(needRows(censusTable()), subtitle); });
  addChart(group, "pyramid", "Ages by sex on a day", WHO | VIEW_DAY | VIEW_CLASSES | VIEW_UNKNOWN_SEX,
           [](const chart_options&, const std::string& subtitle) {
             return pyramidChart(needRows(pyramidTable(timeUnit("years"), false)), subtitle, "years");
           });
  addChart(group, "births", "Births by month", WHO_AND_WHEN, [](const chart_options&, const std::string& subtitle) {
    return birthsChart(needRows(reproductionTable({}, timeUnit("years"), false)), subtitle);
  });
  addChart(
      group, "projection", "The expected numbers, with chance", RATES_OF_BOTH_SEXES,
      [](const chart_options& options, const std::string& subtitle) {
        return projectionChart(needRows(projectionTable(options.projection)), subtitle);
      },
      [](CLI::App& app, chart_options& options) {
        addNumber(app, "--years", options.projection.years, "YEARS", 1, 1000, "Years to look ahead (default: 20)");
        addNumber(app, "--runs", options.projection.runs, "COUNT", 1, 1000000, "Runs with chance (default: 1000)");
        app.add_option("--seed", options.projection.seed, "Seed of the random numbers")->capture_default_str();
      });
  addChart(
      group, "survival", "The share of the animals that reaches each age",
      WHO_AND_WHEN | VIEW_SURVIVAL | VIEW_CLASS_WIDTH,
      [](const chart_options& options, const std::string& subtitle) {
        return survivalChart(needRows(survivalTable(options.survival, timeUnit("years"), false)), subtitle, "years");
      },
      [](CLI::App& app, chart_options& options) {
        addChoice(app, "--by", options.survival.by, {"none", "sex", "origin", "rearing", "location", "taxon", "period"},
                  "Compare groups of animals");
      });
}

void addGenes(CommandGroup& group) {
  addChart(
      group, "founders", "Contribution and retention of each founder", WHO | VIEW_DAY,
      [](const chart_options& options, const std::string& subtitle) {
        gene_drop_options drop = options.drop;
        drop.threads = GeneticBasis::threads();
        return foundersChart(needRows(foundersTable(GeneticBasis(options.basis), UNKNOWN_PARENTS::FOUNDER, drop)),
                             subtitle);
      },
      [](CLI::App& app, chart_options& options) {
        addNumber(app, "--runs", options.drop.runs, "COUNT", 1, 10000000, "Gene drops (default: 10000)");
        app.add_option("--seed", options.drop.seed, "Seed of the random numbers")->capture_default_str();
        addUndatedOption(app, options.basis.undated);
      });
  addChart(group, "inbreeding", "Mean inbreeding by year of birth", VIEW_RECORDS,
           [](const chart_options&, const std::string& subtitle) {
             computeRecordGenetics();
             return inbreedingChart(needRows(inbreedingByYear()), subtitle);
           });
  addChart(group, "diversity", "Gene diversity of the living animals over the years", WHO_AND_WHEN,
           [](const chart_options&, const std::string& subtitle) {
             return diversityChart(needRows(diversityByYear()), subtitle);
           });
}

struct kinship_options {
  draw_options draw;
  view_choice view;
  std::string order = "likeness";
  basis_options basis;
};

command kinshipCommand() {
  const auto options = std::make_shared<kinship_options>();
  return {"kinship", "Kinship of each pair of living animals, as a heat map",
          [options](Session& session) {
            const IMAGE_FORMAT format = formatOf(options->draw, false);
            session.loadStudbook();
            useView(session, options->view);
            endWithStudbook();
            heat_map map = kinshipMap(GeneticBasis(options->basis),
                                      options->order == "location" ? KINSHIP_ORDER::LOCATION : KINSHIP_ORDER::LIKENESS);
            map.subtitle = whose(session, VIEW_DAY);
            return writePicture(options->draw, convertedImage(drawHeatMap(map), format));
          },
          [options](CLI::App& app) {
            addChoice(app, "--order", options->order, {"likeness", "location"}, "How the animals stand");
            addUndatedOption(app, options->basis.undated);
            addDrawOptions(app, options->draw, false);
            addViewOptions(app, options->view, WHO | VIEW_DAY);
          }};
}

}  // namespace

void addDrawCommands(std::vector<command>& commands) {
  CommandGroup draw("draw", "Draw pedigrees and charts as SVG, PNG or PDF");
  draw.add(pedigreeCommand());
  draw.add(kinshipCommand());
  addGenes(draw);
  addNumbers(draw);
  commands.push_back(draw.asCommand());
}

}  // namespace spx::console

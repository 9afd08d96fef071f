#include <memory>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/commands/undated_option.h"
#include "console/output/table_options.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/results/animal_genetics.h"
#include "console/results/effective_size_table.h"
#include "console/results/founder_tables.h"
#include "console/results/genetic_summary.h"
#include "console/results/kinship_table.h"
#include "console/results/pair_tables.h"

namespace spx::console {
namespace {

constexpr unsigned VIEW_OF_GENETICS = VIEW_RECORDS | VIEW_PLACES | VIEW_DAY;

struct genetic_options {
  view_choice view;
  table_options table;
  UNKNOWN_PARENTS unknown = UNKNOWN_PARENTS::FOUNDER;
  listed_animals who;
  pair_choice pairs;
  gene_drop_options drop;
  std::size_t generations = 5;
  bool partial = false;
  bool ancestors = false;
  bool all = false;
  bool matrix = false;
  bool with_self = false;
  bool intervals = false;
  basis_options basis;
};

using OptionsPointer = std::shared_ptr<genetic_options>;
using TableMaker = Table (*)(const GeneticBasis&, const genetic_options&);
using OptionAdder = void (*)(CLI::App&, genetic_options&);

CLI::Option* addUnknown(CLI::App& app, genetic_options& options) {
  const auto choose = [&options](const std::string& text) {
    const bool is_founder = text == getText(UNKNOWN_PARENTS::FOUNDER);
    if (!is_founder && text != getText(UNKNOWN_PARENTS::EXCLUDE)) {
      throw UsageError("--unknown must be one of: founder, exclude");
    }
    options.unknown = is_founder ? UNKNOWN_PARENTS::FOUNDER : UNKNOWN_PARENTS::EXCLUDE;
  };
  return app
      .add_option_function<std::string>(
          "--unknown", choose,
          "How unknown parents are treated: founder, each is a separate, unrelated founder; "
          "exclude, results are over the genes of known founders only (default: founder)")
      ->type_name("founder|exclude");
}

void offerUnknown(CLI::App& app, genetic_options& options) {
  addUnknown(app, options);
}

void addIds(CLI::App& app, genetic_options& options) {
  app.add_option("ID", options.who.ids, "Animals, whatever the view (default: those of the view)");
  app.add_flag("--living", options.who.living, "Only animals of the view that are alive and present on its day");
}

void addRuns(CLI::App& app, genetic_options& options) {
  app.add_option("--runs", options.drop.runs, "Number of gene drops")
      ->check(CLI::Range(1, 10'000'000))
      ->capture_default_str();
  app.add_option("--seed", options.drop.seed, "Seed of the random numbers: the same seed gives the same result")
      ->capture_default_str();
}

void addInbreedingOptions(CLI::App& app, genetic_options& options) {
  addIds(app, options);
  CLI::Option* unknown = addUnknown(app, options);
  CLI::Option* partial =
      app.add_flag("--partial", options.partial, "Split F by the founders whose genes cause it")->excludes(unknown);
  app.add_flag("--ancestors", options.ancestors, "The common ancestors of the parents, with their parts of F")
      ->excludes(partial)
      ->excludes(unknown);
}

void addKinshipOptions(CLI::App& app, genetic_options& options) {
  app.add_option("ID", options.who.ids, "Animals, whatever the view");
  app.add_flag("--all", options.all, "All living animals of the view");
  app.add_flag("--matrix", options.matrix, "A row and a column for every animal, instead of a row for every pair");
  app.add_flag("--self", options.with_self, "Also every animal with itself");
  addUnknown(app, options);
}

void addPairOptions(CLI::App& app, genetic_options& options) {
  pair_choice& pairs = options.pairs;
  app.add_option("--males", pairs.males, "Only these males: IDs, separated by commas")
      ->delimiter(',')
      ->type_name("ID,...");
  app.add_option("--females", pairs.females, "Only these females")->delimiter(',')->type_name("ID,...");
  app.add_option("--unable", pairs.unable,
                 "Animals with this value of a user field cannot breed, such as neutered=yes; may be repeated")
      ->type_name("FIELD=VALUE")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--max-kinship", pairs.most_kinship, "Leave out pairs with a higher kinship")->type_name("NUMBER");
  app.add_flag("--same-location", pairs.same_location, "Only pairs that live at the same location");
  CLI::Option* pick = app.add_option("--pick", pairs.picks,
                                     "Pick this many pairs, one after the other, to keep gene diversity highest");
  app.add_option("--most-per-male", pairs.most_per_male, "Picks per male")->capture_default_str()->needs(pick);
  app.add_option("--most-per-female", pairs.most_per_female, "Picks per female")->capture_default_str()->needs(pick);
  app.add_flag("--static", pairs.is_static, "Pick by today's ranking, without counting the offspring of earlier picks")
      ->needs(pick);
  addUnknown(app, options);
}

void addCompletenessOptions(CLI::App& app, genetic_options& options) {
  addIds(app, options);
  app.add_option("--generations", options.generations, "How many generations back")
      ->check(CLI::Range(1, 30))
      ->capture_default_str();
}

Table inbreeding(const GeneticBasis& basis, const genetic_options& options) {
  if (options.partial) return partialInbreedingTable(basis, options.who);
  if (options.ancestors) return commonAncestorTable(basis, options.who);
  return inbreedingTable(basis, options.who, options.unknown);
}

Table kinships(const GeneticBasis& basis, const genetic_options& options) {
  if (options.all != options.who.ids.empty()) {
    throw UsageError("kinship needs two IDs or more, or --all for the living animals of the view");
  }
  if (!options.all && options.who.ids.size() < 2 && !options.with_self && !options.matrix) {
    throw UsageError("kinship needs a second ID; --self shows the kinship of an animal with itself");
  }
  const std::vector<animal_number> animals =
      options.all ? basis.sortedById(basis.needLiving()) : basis.numbers(options.who.ids);
  return options.matrix ? kinshipMatrixTable(basis, animals, options.unknown)
                        : kinshipTable(basis, animals, options.unknown, options.with_self);
}

Table founders(const GeneticBasis& basis, const genetic_options& options) {
  return foundersTable(basis, options.unknown, options.drop);
}

Table effectiveSizes(const GeneticBasis& basis, const genetic_options& options) {
  return options.intervals ? generationIntervalTable(basis) : effectiveSizeTable(basis);
}

Table genetics(const GeneticBasis& basis, const genetic_options& options) {
  return options.table.format == OUTPUT_FORMAT::TEXT ? geneticPage(basis, options.unknown)
                                                     : geneticRecord(basis, options.unknown);
}

void addCommand(std::vector<command>& commands, const char* name, const char* help, TableMaker make, OptionAdder add,
                bool has_rows = true) {
  const auto options = std::make_shared<genetic_options>();
  options->drop.threads = GeneticBasis::threads();
  commands.push_back({name, help,
                      [options, make](Session& session) {
                        session.loadStudbook();
                        useView(session, options->view);
                        options->basis.asks_living = options->who.ids.empty();
                        if (!options->basis.asks_living && options->basis.undated == UNDATED::EXCLUDE) {
                          throw UsageError("--undated exclude is about the animals of the view; IDs are named instead");
                        }
                        showTable(make(GeneticBasis(options->basis), *options), options->table);
                        return ExitCode::DONE;
                      },
                      [options, add, has_rows](CLI::App& app) {
                        add(app, *options);
                        app.add_flag("--trace-parents", options->basis.trace_parents,
                                     "Treat each unknown or group parent as the average of its possible animals; "
                                     "needs the reproductive ages of the life history");
                        addUndatedOption(app, options->basis.undated);
                        has_rows ? addTableOptions(app, options->table) : addFormatOptions(app, options->table);
                        addViewOptions(app, options->view, VIEW_OF_GENETICS);
                      }});
}

}  // namespace

void addGeneticsCommands(std::vector<command>& commands) {
  addCommand(commands, "genetics", "Show the genetic state of the living population", genetics, offerUnknown, false);
  addCommand(commands, "inbreeding", "Show inbreeding coefficients and where they come from", inbreeding,
             addInbreedingOptions);
  addCommand(commands, "kinship", "Show how animals are related", kinships, addKinshipOptions);
  addCommand(
      commands, "mean-kinship", "Rank the living animals by mean kinship",
      [](const GeneticBasis& basis, const genetic_options& options) {
        return meanKinshipTable(basis, options.unknown);
      },
      offerUnknown);
  addCommand(commands, "founders", "Show the founders, their contributions and what is left of their genes", founders,
             [](CLI::App& app, genetic_options& options) {
               addRuns(app, options);
               addUnknown(app, options);
             });
  addCommand(
      commands, "gene-drop", "Show how much of the founders' genes survives by chance",
      [](const GeneticBasis& basis, const genetic_options& options) { return geneDropTable(basis, options.drop); },
      addRuns, false);
  addCommand(
      commands, "generations", "Show generation numbers",
      [](const GeneticBasis& basis, const genetic_options& options) { return generationsTable(basis, options.who); },
      addIds);
  addCommand(
      commands, "completeness", "Show how much of the pedigree is known",
      [](const GeneticBasis& basis, const genetic_options& options) {
        return completenessTable(basis, options.who, options.generations);
      },
      addCompletenessOptions);
  addCommand(
      commands, "pairs", "Rank pairs of living animals, or pick some",
      [](const GeneticBasis& basis, const genetic_options& options) {
        return pairsTable(basis, options.pairs, options.unknown);
      },
      addPairOptions);
  addCommand(
      commands, "effective-size", "Show the effective population size by several methods", effectiveSizes,
      [](CLI::App& app, genetic_options& options) {
        app.add_flag("--intervals", options.intervals, "Show the generation intervals on the four paths instead");
      },
      false);
}

}  // namespace spx::console

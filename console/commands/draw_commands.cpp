#include <memory>
#include <utility>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"

#include "console/charts/animal_pedigree.h"
#include "console/charts/drawing_tool.h"
#include "console/commands/command.h"
#include "console/output/result_output.h"

namespace spx::console {
namespace {

/// What all pictures have in common.
struct draw_options {
  result_options output;
  std::string format = "svg";
};

void addDrawOptions(CLI::App& app, draw_options& options, bool has_dot) {
  app.add_option(
         "--format", options.format,
         has_dot ? "svg (default), png, pdf, or dot, the text that Graphviz reads" : "svg (default), png or pdf")
      ->type_name("FORMAT");
  addResultOptions(app, options.output);
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
  const IMAGE_FORMAT format = imageFormat(options.draw.format);
  options.extent.fill = options.fill == "nothing" ? PEDIGREE_FILL::NOTHING : PEDIGREE_FILL::INBREEDING;
  session.loadStudbook();
  const pedigree_drawing drawing = animalPedigree(options.id, options.extent);
  return writePicture(
      options.draw, format == IMAGE_FORMAT::DOT ? pedigreeDot(drawing) : convertedImage(drawPedigree(drawing), format));
}

command pedigreeCommand() {
  const auto options = std::make_shared<pedigree_options>();
  return {
      "pedigree", "Draw the ancestors of an animal, and its descendants if asked",
      [options](Session& session) { return drawAnimal(session, *options); },
      [options](CLI::App& app) {
        app.add_option("ID", options->id, "Studbook ID, as the table has it")->required();
        app.add_option("--depth", options->extent.ancestors, "Generations of ancestors (default 5)")->type_name("N");
        app.add_option("--descendants", options->extent.descendants, "Generations of descendants (default 0)")
            ->type_name("N");
        app.add_option("--fill", options->fill, "What the symbols are filled by: inbreeding (default) or nothing")
            ->type_name("WHAT")
            ->check(CLI::IsMember({"inbreeding", "nothing"}));
        addDrawOptions(app, options->draw, true);
      }};
}

}  // namespace

void addDrawCommands(std::vector<command>& commands) {
  CommandGroup draw("draw", "Draw pedigrees and charts as SVG, PNG or PDF");
  draw.add(pedigreeCommand());
  commands.push_back(draw.asCommand());
}

}  // namespace spx::console

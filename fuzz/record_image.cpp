// The image of a studbook. An input is the bytes of one, registries first; what can be read of it
// is written and read again.
#include "console/studbook/record_image.h"

#include <utility>

#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"

#include "console/studbook/load_studbook.h"
#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

using console::ByteReader;
using console::ByteWriter;

/// Fills the studbook in use as far as the bytes go.
void readImage(std::string_view bytes) {
  console::dropStudbook();
  try {
    ByteReader in(bytes);
    const console::RecordReader reader(in);
    while (!in.atEnd()) {
      master_data animal;
      reader.read(in, animal);
      Animals.addMaster(std::move(animal));
    }
  } catch (const console::BadBytes&) {
  }
}

std::string imageOf() {
  console::RecordWriter writer;
  ByteWriter records;
  for (const master_data& animal : Animals.records) {
    writer.write(animal, records);
  }
  ByteWriter registries;
  writer.writeRegistries(registries);
  return registries.bytes() + records.bytes();
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  readImage(asText(data, size));
  const std::size_t animals = spx::Animals.records.size();
  const std::string image = imageOf();
  readImage(image);
  require(spx::Animals.records.size() == animals, "records are lost");
  require(imageOf() == image, "records come back changed");
  return 0;
}

#include "console/studbook/record_image.h"

#include <bit>
#include <cstddef>
#include <limits>
#include <tuple>

#include "spx/core/breeding_program.h"
#include "spx/core/deme_id.h"
#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"

namespace spx::console {
namespace {

/// What a record has beyond the usual.
enum record_fact : std::uint8_t {
  HAS_MOVES = 1,
  HAS_GENERATIONS = 2,
  HAS_FCOEF = 4,
  HAS_USER_DATA = 8,
  IS_SELECTED = 16,
  IS_PRINTED = 32
};

/// Whether a number is what a fresh record holds, to the bit.
template <typename Bits, typename Number>
bool isUnset(Number number) {
  return std::bit_cast<Bits>(number) == std::bit_cast<Bits>(std::numeric_limits<Number>::quiet_NaN());
}

bool hasGenerations(const master_data& animal) {
  for (const float generation : animal.generation) {
    if (!isUnset<std::uint32_t>(generation)) {
      return true;
    }
  }
  return false;
}

std::uint8_t factsOf(const master_data& animal) {
  return static_cast<std::uint8_t>(
      (animal.moves.empty() ? 0 : HAS_MOVES) | (hasGenerations(animal) ? HAS_GENERATIONS : 0) |
      (isUnset<std::uint64_t>(animal.fcoef) ? 0 : HAS_FCOEF) | (animal.user_data.empty() ? 0 : HAS_USER_DATA) |
      (animal.selected ? IS_SELECTED : 0) | (animal.print ? IS_PRINTED : 0));
}

template <typename Enum>
void writeEnum(Enum value, ByteWriter& out) {
  out.fixed(static_cast<std::uint8_t>(value));
}

template <typename Enum>
Enum readEnum(ByteReader& in, Enum last) {
  const auto value = static_cast<Enum>(in.fixed<std::uint8_t>());
  if (value > last) {
    throw BadBytes();
  }
  return value;
}

void writeDemes(ByteWriter& out) {
  out.number(MetaPop.levels().size());
  for (const deme_level& level : MetaPop.levels()) {
    out.text(level.name);
    out.number(level.members.size());
    for (const deme_member& member : level.members) {
      out.fixed(member.id);
      out.text(member.name);
      out.fixed(member.point.latitude);
      out.fixed(member.point.longitude);
    }
  }
}

/// To the bit, which DemeID::set() is not for the deepest ones.
std::string identifierOf(packed_deme id) {
  DemeID deme;
  auto rest = static_cast<std::uint64_t>(id);
  for (auto block = deme.blocks.rbegin(); block != deme.blocks.rend(); ++block, rest >>= 8) {
    *block = static_cast<std::uint8_t>(rest);
  }
  return deme.text();
}

/// All levels come first: a deme is kept in the last level that there is.
void readDemes(ByteReader& in) {
  std::vector<deme_member> members;
  for (std::uint64_t levels = in.number(); levels > 0; --levels) {
    MetaPop.addLevel(std::string(in.text()));
    for (std::uint64_t count = in.number(); count > 0; --count) {
      deme_member& member = members.emplace_back();
      member.id = in.fixed<packed_deme>();
      member.name = in.text();
      member.point.latitude = in.fixed<double>();
      member.point.longitude = in.fixed<double>();
    }
  }
  for (const deme_member& member : members) {
    if (MetaPop.addMember(identifierOf(member.id), member.name, member.point) != member.id) {
      throw BadBytes();
    }
  }
}

template <typename Names>
void writeNames(const Names& names, ByteWriter& out) {
  out.number(names.size());
  for (const std::string& name : names) {
    out.text(name);
  }
}

void writeUserFields(ByteWriter& out) {
  out.number(user_field_list.size());
  for (const user_field& field : user_field_list) {
    out.text(field.name);
    writeEnum(field.type, out);
  }
}

void readUserFields(ByteReader& in) {
  for (std::uint64_t count = in.number(); count > 0; --count) {
    user_field& field = user_field_list.emplace_back();
    field.name = in.text();
    field.type = readEnum(in, qs_lib::FIELD_TYPE::DATE);
  }
}

}  // namespace

RecordWriter::RecordWriter() {
  for (const std::string& name : Subspecies.names()) {
    taxa_.emplace(&name, taxa_.size());
  }
}

void RecordWriter::write(const master_data& animal, ByteWriter& out) {
  // All members by name: a new one has to find its place here. What is not written is as in every
  // fresh record.
  [[maybe_unused]] const auto& [id_key, stud_id, sire_id, dam_id, taxon, sex, birth_type, rearing, birth, death, moves,
                                managed, birth_control, generation, fcoef, breeder, selected, print, user_data,
                                lineages, host_data] = animal;
  const std::uint8_t facts = factsOf(animal);
  out.fixed(facts);
  out.text(stud_id);
  out.text(sire_id);
  out.text(dam_id);
  out.number(taxa_.at(&*taxon));
  writeEnum(sex, out);
  writeEnum(birth_type, out);
  writeEnum(rearing, out);
  writeEvent(birth, out);
  writeEvent(death, out);
  if ((facts & HAS_MOVES) != 0) {
    out.number(moves.size());
    for (const move_data& move : moves) {
      writeEvent(move, out);
    }
  }
  if ((facts & HAS_GENERATIONS) != 0) {
    for (const float each : generation) {
      out.fixed(each);
    }
  }
  if ((facts & HAS_FCOEF) != 0) {
    out.fixed(fcoef);
  }
  if ((facts & HAS_USER_DATA) != 0) {
    for (const std::string& value : user_data) {
      out.text(value);
    }
  }
}

void RecordWriter::writeEvent(const move_data& event, ByteWriter& out) {
  [[maybe_unused]] const auto& [date, accuracy, range, location, kind, first_text, number, second_text] = event;
  out.fixed(date);
  writeEnum(accuracy, out);
  writeEnum(kind, out);
  out.number(range);
  const auto [known, is_new] = numbers_.try_emplace({location, number}, places_.size());
  if (is_new) {
    places_.push_back(known->first);
  }
  out.number(known->second);
}

void RecordWriter::writeRegistries(ByteWriter& out) const {
  writeDemes(out);
  writeNames(Management.programs(), out);
  writeNames(Subspecies.names(), out);
  writeUserFields(out);
  out.number(places_.size());
  for (const auto& [deme, number] : places_) {
    out.fixed(deme);
    out.fixed(number);
  }
}

RecordReader::RecordReader(ByteReader& registries) {
  readDemes(registries);
  for (std::uint64_t count = registries.number(); count > 0; --count) {
    Management.addProgram(std::string(registries.text()));
  }
  for (std::uint64_t count = registries.number(); count > 0; --count) {
    taxa_.push_back(Subspecies.add(std::string(registries.text())));
  }
  readUserFields(registries);
  for (std::uint64_t count = registries.number(); count > 0; --count) {
    const auto deme = registries.fixed<packed_deme>();
    places_.emplace_back(deme, registries.fixed<std::uint64_t>());
  }
}

void RecordReader::read(ByteReader& in, master_data& animal) const {
  initializeMaster(animal);
  const auto facts = in.fixed<std::uint8_t>();
  animal.stud_id = in.text();
  animal.sire_id = in.text();
  animal.dam_id = in.text();
  animal.taxon = taxa_[in.numberBelow(taxa_.size())];
  animal.sex = readEnum(in, SEX::UNKNOWN);
  animal.birth_type = readEnum(in, BIRTH_TYPE::UNKNOWN);
  animal.rearing = readEnum(in, REARING::UNKNOWN);
  readEvent(in, animal.birth);
  readEvent(in, animal.death);
  if ((facts & HAS_MOVES) != 0) {
    for (std::uint64_t count = in.number(); count > 0; --count) {
      readEvent(in, animal.moves.emplace_back());
    }
  }
  if ((facts & HAS_GENERATIONS) != 0) {
    for (float& generation : animal.generation) {
      generation = in.fixed<float>();
    }
  }
  if ((facts & HAS_FCOEF) != 0) {
    animal.fcoef = in.fixed<double>();
  }
  if ((facts & HAS_USER_DATA) != 0) {
    animal.user_data.reserve(user_field_list.size());
    for (std::size_t field = 0; field < user_field_list.size(); ++field) {
      animal.user_data.emplace_back(in.text());
    }
  }
  animal.selected = (facts & IS_SELECTED) != 0;
  animal.print = (facts & IS_PRINTED) != 0;
}

void RecordReader::readEvent(ByteReader& in, move_data& event) const {
  event.date = in.fixed<qs_lib::day_number>();
  event.accuracy = readEnum(in, DATE_ACCURACY::UNKNOWN);
  event.event = readEnum(in, MOVE_TYPE::ALL);
  event.range = in.number();
  std::tie(event.location, event.number) = places_[in.numberBelow(places_.size())];
}

}  // namespace spx::console

#include "spx/exports/export_dattrf.h"

#include "spx/core/animal_data.h"
#include "spx/support/write_file.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

constexpr char LAST_LINE[] = "@";

// Left-aligned in a minimum width.
void field(std::string& line, const std::string& value, std::size_t width) {
  line += value;
  if (value.size() < width) {
    line.append(width - value.size(), ' ');
  }
}

void dateField(std::string& line, const move_data& event) {
  field(line, qs_lib::julianToYYYYMMDD(qs_lib::dayToMs(event.date)), 8);
  line += ExportDattrf::convertAccuracy(event.accuracy);
}

std::string animalLine(const master_data& animal) {
  std::string line;
  field(line, animal.stud_id, 6);
  field(line, animal.dam_id, 6);
  field(line, animal.sire_id, 6);
  line += ExportDattrf::convertSex(animal.sex);
  line += ExportDattrf::convertOrigin(animal.birth_type);
  dateField(line, animal.birth);
  dateField(line, animal.death);
  return line + "T";
}

std::string eventLine(const master_data& animal, const move_data& event, char kind) {
  std::string line;
  field(line, animal.stud_id, 6);
  dateField(line, event);
  line += kind;
  field(line, std::to_string(static_cast<std::int64_t>(event.number)), 9);
  return line;
}

bool openFile(qs_lib::WriteFile& file, const Analysis& analysis, const std::string& extension) {
  file.setDirectory(analysis.reportDirectory());
  file.setName(analysis.fileStem());
  file.setExtension(extension);
  file.setAppend(false);
  file.setStaged(true);
  return file.fileOpen();
}

}  // namespace

ExportDattrf::ExportDattrf() {
  setFileStem("STUDBOOK");
}

ExportDattrf::~ExportDattrf() = default;

std::string ExportDattrf::convertSex(SEX sex) {
  switch (sex) {
    case SEX::MALE:
      return "M";
    case SEX::FEMALE:
      return "F";
    default:
      return "U";
  }
}

std::string ExportDattrf::convertOrigin(BIRTH_TYPE origin) {
  switch (origin) {
    case BIRTH_TYPE::CAPTIVE_BORN:
      return "C";
    case BIRTH_TYPE::WILD_BORN:
      return "W";
    default:
      return "U";
  }
}

std::string ExportDattrf::convertAccuracy(DATE_ACCURACY accuracy) {
  switch (accuracy) {
    case DATE_ACCURACY::ACCURATE:
      return "A";
    case DATE_ACCURACY::BY_DAY:
      return "D";
    case DATE_ACCURACY::BY_WEEK:
    case DATE_ACCURACY::BY_MONTH:
      return "M";
    case DATE_ACCURACY::BY_YEAR:
      return "Y";
    default:
      return "U";
  }
}

bool ExportDattrf::exportData() {
  failed_file_.clear();
  if (!initialize()) {
    return false;
  }
  timer_.restart();
  qs_lib::WriteFile dat;
  qs_lib::WriteFile trf;
  for (const auto& [file, extension] : {std::pair(&dat, "DAT"), std::pair(&trf, "TRF")}) {
    if (!openFile(*file, *this, extension)) {
      failed_file_ = file->getFileName();
      dat.fileDiscard();
      return false;
    }
  }
  for (position record = 0; record < Animals.records.size(); ++record) {
    const master_data& animal = Animals.records[record];
    if (isChosen(record) && isInTaxonView(animal)) {
      dat.writeLine(animalLine(animal));
      trf.writeLine(eventLine(animal, animal.birth, 'B'));
      trf.writeLine(eventLine(animal, animal.death, 'D'));
    }
  }
  dat.writeLine(LAST_LINE);
  trf.writeLine(LAST_LINE);
  const bool written = closeBoth(dat, trf);
  timer_.stop();
  return written;
}

// Both files or none, as far as possible: neither replaces an existing one before both are written.
bool ExportDattrf::closeBoth(qs_lib::WriteFile& dat, qs_lib::WriteFile& trf) {
  if (!dat.stream().flush() || !trf.stream().flush()) {
    failed_file_ = (dat.stream() ? trf : dat).getFileName();
  } else if (!dat.fileClose()) {
    failed_file_ = dat.getFileName();
  } else if (!trf.fileClose()) {
    failed_file_ = trf.getFileName();
  }
  dat.fileDiscard();
  trf.fileDiscard();
  return failed_file_.empty();
}

}  // namespace spx

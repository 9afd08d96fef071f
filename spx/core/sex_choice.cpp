#include "spx/core/sex_choice.h"

#include "spx/support/random.h"

namespace spx {

SEX oppositeSex(SEX sex) {
  switch (sex) {
    case SEX::FEMALE:
      return SEX::MALE;
    case SEX::MALE:
      return SEX::FEMALE;
    default:
      return SEX::ALL;
  }
}

SEX getEqualSex() {
  static SEX turn = SEX::FEMALE;
  turn = oppositeSex(turn);
  return turn;
}

SEX getRandomSex(double probability) {
  return probability > qs_lib::Random.uniform() ? SEX::MALE : SEX::FEMALE;
}

}  // namespace spx

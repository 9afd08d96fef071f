#include "spx/core/errors.h"

#include <limits>

#include "tests/support/temporary_home.h"

namespace spx {
namespace {

using Errors = TemporaryHome;

TEST_F(Errors, ShowCodesAfterANumberSignAndTextsUnchanged) {
  EXPECT_TRUE(spxError(0));
  EXPECT_TRUE(spxError(std::numeric_limits<std::int32_t>::min()));
  EXPECT_TRUE(spxError(""));
  EXPECT_TRUE(spxErrorFile("en"));
  EXPECT_TRUE(spxError("%s\n#7"));
  EXPECT_EQ(takeErrors(), "#0\n#-2147483648\n\n%s\n#7\n");
}

}  // namespace
}  // namespace spx

#include "spx/core/user_fields.h"

#include "tests/support/temporary_home.h"

namespace spx {
namespace {

using UserFields = TemporaryHome;

TEST_F(UserFields, AreListedInOneText) {
  EXPECT_FALSE(showUserFields());
  EXPECT_EQ(takeOutput() + takeErrors(), "No user fields defined\n");
  user_field_list = {{"colour"}, {"", qs_lib::FIELD_TYPE::DATE}, {"tag", qs_lib::FIELD_TYPE{9}}};
  std::vector<std::string> shown;
  qs_lib::setDisplayHandler([&shown](const std::string& text) { shown.push_back(text); });
  EXPECT_TRUE(showUserFields());
  EXPECT_EQ(shown, std::vector<std::string>({"User defined fields:\n\tcolour (text)\n\t (date)\n\ttag ()\n"}));
  EXPECT_EQ(userFieldName(0) + userFieldName(3), "colour");
}

}  // namespace
}  // namespace spx

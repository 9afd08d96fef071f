#include "spx/core/user_fields.h"

#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/support/console.h"

namespace spx {

std::string userFieldName(std::size_t field) {
  return field < user_field_list.size() ? user_field_list[field].name : std::string();
}

bool showUserFields() {
  if (user_field_list.empty()) {
    spxError(error_text::NO_USER_FIELDS);
    return false;
  }
  std::string text = "User defined fields:\n";
  for (const user_field& field : user_field_list) {
    text += "\t" + field.name + " (" + qs_lib::getFieldTypeName(field.type) + ")\n";
  }
  qs_lib::display(text);
  return true;
}

}  // namespace spx

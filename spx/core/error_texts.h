#pragma once

/// The texts that operations hand to spxError() when they cannot proceed. Hosts and tests compare
/// them, "Can not" and "Cannot" included.
namespace spx::error_text {

inline constexpr char NO_ANIMALS[] = "No animals in list";
inline constexpr char NO_INDEX[] = "No index created";
inline constexpr char NO_ROOM[] = "Cannot reserve room for animals";
inline constexpr char UNKNOWN_ANIMAL[] = "Animal does not exist";
inline constexpr char UNKNOWN_PARENT_OF_OFFSPRING[] = "Can not find animal";
inline constexpr char UNKNOWN_LEVEL[] = "Level does not exist";
inline constexpr char NO_TAXA[] = "No taxa have been defined";
inline constexpr char NO_USER_FIELDS[] = "No user fields defined";
inline constexpr char PROJECT_EXISTS[] = "Project already exists";
inline constexpr char ERROR_FILE_NOT_WRITTEN[] = "Cannot write studbook error file";
inline constexpr char VIEW_NOT_SAVED[] = "Could not save view settings";
inline constexpr char REPORT_NOT_CREATED[] = "Cannot create report file";
inline constexpr char REPORT_NOT_REOPENED[] = "Cannot re-open report file to write footer";

}  // namespace spx::error_text

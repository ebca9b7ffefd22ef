#include "commands/command_row.h"

#include "commands/command_table.h"

namespace orb {

parts_there parts_there::of(const project_state &project) {
  parts_there there;
  for (const project_part part : all_project_parts)
    if (project.has(part))
      there.add(part);
  return there;
}

bound_command command_row::bind() const {
  bound_command bound;
  bound.row_ = this;
  bound.values_ = make_parameters_();
  describe_(bound.list_, bound.values_.get());
  return bound;
}

void bound_command::set(const std::string &key, const std::string &value) {
  const parameter_row *row = list_.find(key);
  if (!row) {
    const std::string near = nearest_word(key, list_.keys());
    throw usage_error("unknown key " + key + (near.empty() ? "" : "; did you mean " + near + "?"));
  }
  if (const std::string wrong = row->take(value); !wrong.empty())
    throw usage_error(key + ": " + wrong);
}

static std::string text_of_missing_part(const std::string &id, project_part part) {
  std::string makers;
  for (const command_row &row : table_of_commands())
    for (const project_part made : row.makes)
      if (made == part)
        makers += (makers.empty() ? "" : ", ") + row.id;
  return id + " needs " + name_of_part(part) + ", and there is none; it is made or loaded by: " + makers;
}

void bound_command::check(const project_state &project, const parts_there &there) const {
  for (const project_part part : row_->needs)
    if (!there.has(part))
      throw usage_error(text_of_missing_part(row_->id, part));
  if (const std::string key = list_.missing(); !key.empty())
    throw usage_error(key + " is required");
  if (row_->check_)
    row_->check_(project, there, values_.get());
}

void bound_command::foresee(project_state &project, const parts_there &there) const {
  if (row_->foresee_)
    row_->foresee_(project, there, values_.get());
}

} // namespace orb

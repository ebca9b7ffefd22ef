// The form of a command without one of its own, made from its parameters.
#pragma once

#include <functional>

#include "ui/desktop/command_form.h"
#include "ui/desktop/parameter_fields.h"

namespace orb {

class parameter_dialog : public command_form {
  Q_OBJECT

public:
  // `fresh`: makes the command with the presets of its menu entry. `name`: of the window, the entry's control.
  parameter_dialog(desktop_session &session, std::function<bound_command()> fresh, const QString &name,
                   const QString &caption, QWidget *parent);

private:
  void start();

  std::function<bound_command()> fresh_;
  parameter_fields *fields_;
};

} // namespace orb

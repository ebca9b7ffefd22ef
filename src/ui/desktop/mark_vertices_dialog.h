// `form_mark_vertices` with its widgets: the net of a list of clones, drawn with further lists marked in it.
#pragma once

#include <QDialog>
#include <functional>

#include "drawing/mark_vertices.h"
#include "ui/desktop/desktop_session.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace orb {

class mark_vertices_dialog : public QDialog {
  Q_OBJECT

public:
  mark_vertices_dialog(desktop_session &session, QWidget *parent);
  // Asks for the clones of the drawing; false when cancelled.
  bool start();

private:
  bool work(const std::function<bool()> &does);
  void show_state();
  void kind_chosen(int kind);
  void load_next();
  void write();

  desktop_session &session_;
  form_mark_vertices form_;
  QComboBox *kind_, *value_;
  QLabel *list_name_, *n_vertices_, *vertices_;
  QLineEdit *cutoff_;
};

} // namespace orb

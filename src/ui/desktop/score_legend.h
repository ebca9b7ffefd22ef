// Which colour an edge has for which score.
#pragma once

#include <QWidget>

namespace orb {

class score_legend : public QWidget {
  Q_OBJECT

public:
  explicit score_legend(QWidget *parent);
  QSize sizeHint() const override { return {240, 34}; }
  QSize minimumSizeHint() const override { return {180, 34}; }

protected:
  void paintEvent(QPaintEvent *event) override;
};

} // namespace orb

// The clones that are selected, whichever window shows them: map, net and lists all show and change this one set.
#pragma once

#include <QObject>
#include <cstdint>
#include <vector>

namespace orb {

class selection_model : public QObject {
  Q_OBJECT

public:
  using QObject::QObject;

  // Clone numbers of the library, ascending, each once.
  const std::vector<std::int32_t> &clones() const { return clones_; }
  bool contains(std::int32_t clone) const;
  // Any order, repeats are dropped; a set that is the present one changes nothing. `by`: who asked, so that he can
  // leave his own change alone.
  void set(std::vector<std::int32_t> clones, const QObject *by);
  void clear(const QObject *by) { set({}, by); }

signals:
  void changed(const QObject *by);

private:
  std::vector<std::int32_t> clones_;
};

} // namespace orb

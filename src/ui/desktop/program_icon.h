// The program's picture: clones that overlap along an axis. Drawn, so that it is sharp at every size.
#pragma once

#include <QIcon>
#include <QImage>

namespace orb {

QImage program_picture(int side);
QIcon program_icon();

} // namespace orb

// usage: draw_icon SIDE FILE.png   the program's picture as a file, for the desktop's menus.
#include <cstdio>
#include <cstdlib>

#include "ui/desktop/program_icon.h"

int main(int count, char **values) {
  if (count != 3)
    return 2;
  if (orb::program_picture(std::atoi(values[1])).save(values[2], "PNG"))
    return 0;
  std::fprintf(stderr, "draw_icon: can't write %s\n", values[2]);
  return 1;
}

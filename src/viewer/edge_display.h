// Which edges of an open net are drawn and saved: a filter on the text of their captions.
#pragma once

#include <string>
#include <string_view>

#include "viewer/net_records.h"

namespace orb {

struct edge_display {
  bool all = true;                       // `mnuOptionsEdgesAll` is checked
  bool none = false;                     // `mnuOptionsEdgesNo`
  bool above = false, below = false;     // `mnuOptionsEdgesBigger`, `mnuOptionsEdgesSmaller`
  std::string caption_of_bigger = ">=0"; // the bound stands behind the first two characters
  std::string caption_of_smaller = "<=100000";

  // A caption that is no number always passes; so a bound holds at the precision of the caption.
  bool isNeedToDrewEdgeWithCaption(std::string_view caption) const;
  bool shows(const edge_elng &edge) const { return isNeedToDrewEdgeWithCaption(edge.caption); }
};

} // namespace orb

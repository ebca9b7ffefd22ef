// Message boxes, questions, input boxes and file dialogs, as the frame asks for them.
#pragma once

#include <QString>
#include <string>

#include "frame/front_end.h"

namespace orb {

// A box over the window in front; waits for its button. `is_trouble`: with a warning's picture.
void show_message_box(const std::string &text, const std::string &title, bool is_trouble);
answer ask_in_a_box(const question &asked);
// Empty: cancelled.
std::string ask_for_a_text(const input_box &asked);
std::string ask_for_a_file(const file_dialog &asked);

// "Txt files |*.txt|All files|*.*" as Qt writes it.
QString qt_filter(const std::string &filter);

} // namespace orb

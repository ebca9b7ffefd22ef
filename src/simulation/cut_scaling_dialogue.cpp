// class_Simul_CutEnzyme: the dialogue in which a user sets how bands are scaled.
#include "frame/numbers.h"
#include "simulation/class_Simul_CutEnzyme.h"

namespace orb {

namespace {

constexpr const char *title = "Band rescaling:";
constexpr double longest_band = 1e6; // base pairs: the tables have a row for each

// An entry left as it was shown keeps the value, which may have more decimals than were shown. False: no number above
// 0; `name` stands in the message.
bool ask_value(process_frame &frame, const std::string &prompt, const std::string &shown, const std::string &name,
               double &value) {
  const std::string text = frame.input({prompt, title, shown});
  if (text == shown)
    return true;
  double entered = 0;
  if (!number_parse(text, entered) || entered <= 0 || entered > 1e9) {
    frame.alarm("NB! Error in the input. " + name + "=" + text + " (was not chanched!).");
    return false;
  }
  value = entered;
  return true;
}

} // namespace

// The windows of the colours: accepted as they are, given one by one, or the end of the program.
void class_Simul_CutEnzyme::ask_order_of_enzymes() {
  question order;
  order.text = "List of Enzymes and scaling shift:\r     HaeIII (no color): term(1) = 0 - no need\r"
               "     EcoRI (Green):     term(2) = " +
               std::to_string(shift_) + "\r     BamHI (Blue):      term(3) = 0\r     XbaI (Yellow):     term(4) = " +
               std::to_string(2 * shift_) + "\r     XhoI (Red):        term(5) = " + std::to_string(3 * shift_) +
               "\rIf list of enzymes is different then program should be stopped.\rList and ordering is ok?";
  order.title = title;
  order.by_default = answer::yes;
  if (frame_.yes(order))
    return;
  question change;
  change.text = "Chanche ordering?";
  change.title = title;
  if (!frame_.yes(change)) { // an orderly exit
    frame_.log_line("List of enzymes is different: the program was stopped");
    throw program_end("the list of enzymes is different", exit_status::run_failed);
  }
  for (std::size_t e = 2; e < enzyme_list_.size(); ++e) {
    enzyme_rec &enzyme = enzyme_list_[e];
    const std::string entered =
        frame_.input({"Enzime " + enzyme.name + " (" + enzyme.color + "), term =", title, std::to_string(enzyme.term)});
    whole_number_parse(entered, enzyme.term);
  }
}

void class_Simul_CutEnzyme::update_parameters_of_scalaling(bool &ok) {
  ok = false;
  double tolerance = 2 * max_error_in_band_size_scoring_, shift = 15000;
  if (!ask_value(frame_, "tolerance, bp (e.g., 0.4 for 50-500 bp, 0.5 for 50-1200 bp)", number_text(tolerance, 1),
                 "tolerance", tolerance))
    return;
  max_error_in_band_size_scoring_ = tolerance / 2;
  if (!ask_value(frame_, "shift in size of scaled bands, usually 15000 or 10000", "15000",
                 "shift_in_size_of_scaled_bands", shift))
    return;
  shift_of_scaled_bands_set(static_cast<std::int32_t>(shift));
  ask_order_of_enzymes();
  double length = max_band_length_;
  if (!ask_value(frame_, "scale, e.g., 30 for 50-500 bp, 10 for 50-1200 bp", number_text(scale_, 1), "scale", scale_) ||
      !ask_value(frame_, "min_band_length, e.g., 50 for 50-500 bp", number_text(min_band_length_, 1), "min_band_length",
                 min_band_length_) ||
      !ask_value(frame_, "max_band_length, e.g., 500 for 50-500 bp, 1200 for 50-1200 bp",
                 number_text(max_band_length_, 1), "max_band_length", length))
    return;
  if (length > longest_band) {
    frame_.alarm("NB! Error in the input. max_band_length=" + number_text_shortest(length) + " (was not chanched!).");
    return;
  }
  if (length != max_band_length_)
    max_band_length_set(length);
  ok = true;
}

} // namespace orb

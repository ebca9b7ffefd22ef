#include <gtest/gtest.h>

#include "frame/files.h"
#include "frame/process_frame.h"
#include "support/scripted_frame.h"

namespace orb {
namespace {

using texts = std::vector<std::string>;

// A frame whose front end records everything, with the clock standing still.
struct recorded_frame : pinned_clock, scripted_frame {
  recorded_frame() : pinned_clock(1700000000), scripted_frame(true) {} // 2023-11-14 22:13:20
};

TEST(process_frame, a_whole_process_shows_its_texts_and_logs_them) {
  recorded_frame shown;
  shown.frame.process_done(); // none was ever started
  shown.frame.process_start("Load DB");
  EXPECT_TRUE(shown.frame.process_is_running());
  shown.frame.step_text_set("s");
  shown.frame.all_panels_reset();
  EXPECT_FALSE(shown.frame.process_is_running());
  EXPECT_EQ(shown.record.panels, (texts{"1: Process", "1: Load DB", "2: s", "1: Load DB done", "2: Step",
                                        "3: Local process", "4: Control", "5: Search for clones"}));
  shown.frame.log_line("same second");
  EXPECT_EQ(shown.record.log, (texts{"Load DB", "Load DB done", "same second"}));
  EXPECT_EQ(file_bytes(shown.folder / "ORB.log"), "2023-11-14,22:13:20\tLoad DB\r\n"
                                                  "2023-11-14,22:13:20\tLoad DB done\r\n"
                                                  "2023-11-14,22:13:20\tsame second\r\n");
}

TEST(process_frame, colours_of_the_process_panel) {
  std::vector<int> colours;
  front_end shown = null_front_end();
  shown.panel_set = [&](panel which, const std::string &, panel_colour colour) {
    if (which == panel::process)
      colours.push_back(static_cast<int>(colour));
  };
  process_frame frame(shown);
  frame.process_start("x");
  frame.process_done();
  frame.process_aborted();
  EXPECT_EQ(colours, (std::vector<int>{255, 65280, 65535}));
}

TEST(process_frame, endings_with_words_clear_the_stop_flag) {
  recorded_frame shown;
  shown.frame.process_start("P");
  shown.frame.stop_requested_set(true);
  EXPECT_TRUE(shown.frame.process_is_running());
  shown.frame.process_stopped_manually();
  EXPECT_FALSE(shown.frame.stop_requested_get());
  EXPECT_FALSE(shown.frame.process_is_running());
  EXPECT_TRUE(shown.frame.was_stopped());
  shown.frame.process_canceled();
  shown.frame.process_aborted();
  EXPECT_EQ(shown.record.log, (texts{"P", "P has stopped manually.", "P has canceled.", "P has aborted."}));
}

TEST(process_frame, stop_button_asks_then_yields) {
  recorded_frame shown;
  shown.frame.process_start("P");
  shown.frame.stop_process_pressed(); // no by default
  EXPECT_FALSE(shown.frame.stop_requested_get());
  shown.book.add({"Are you shure", "yes", false});
  shown.frame.stop_process_pressed();
  EXPECT_TRUE(shown.frame.stop_requested_get());
  EXPECT_EQ(shown.record.questions.back(), "Are you shure you want to stop process\r\nP");
}

TEST(process_frame, quitting_is_refused_while_a_process_runs) {
  recorded_frame shown;
  shown.frame.process_start("P");
  EXPECT_FALSE(shown.frame.quit_requested());
  EXPECT_EQ(shown.record.messages, texts{"No quit when process run. \r\nPress Stop Process before."});
  shown.frame.process_done();
  shown.book.add({"Are you sure", "no", false});
  EXPECT_FALSE(shown.frame.quit_requested());
  EXPECT_TRUE(shown.frame.quit_requested());
  EXPECT_EQ(shown.record.questions.back(), "Are you sure you want to quit ?");
}

TEST(process_frame, long_time_question_goes_on_unless_no) {
  recorded_frame shown;
  EXPECT_TRUE(shown.frame.long_time_question());
  EXPECT_EQ(shown.record.questions.back(), "This process is long.\r\nIt can take some hours.\r\nContinue?");
  shown.book.add({"This process", "no", false});
  EXPECT_FALSE(shown.frame.long_time_question());
}

TEST(process_frame, save_dialog_asks_before_it_overwrites) {
  recorded_frame shown;
  const std::string there = shown.write("a.txt", "x").string(), absent = (shown.folder / "b").string();
  const auto dialog = [&] { return shown.frame.save_file_dialog_checked("Save", "a.txt", ""); };
  EXPECT_EQ(dialog(), "");
  shown.book.add({"Save", there, true});
  EXPECT_EQ(dialog(), ""); // cancel is the default
  EXPECT_EQ(shown.record.questions.back(), "File " + there + " already exists! Overwrite?");
  shown.book.add({"File", "yes", false});
  EXPECT_EQ(dialog(), there);
  recorded_frame again;
  again.book.add({"Save", there, false});
  again.book.add({"Save", absent, false});
  again.book.add({"File", "no", false});
  EXPECT_EQ(again.frame.save_file_dialog_checked("Save", "", ""), absent); // the dialog came again
  EXPECT_EQ(again.record.questions.size(), 3u);
}

TEST(process_frame, open_dialog_takes_its_filter_once_and_fails_as_cancelled) {
  std::vector<std::string> filters;
  front_end shown = null_front_end();
  shown.choose_file = [&](const file_dialog &asked) {
    filters.push_back(asked.filter);
    if (filters.size() == 4)
      throw std::runtime_error("dialog");
    return std::string("x");
  };
  process_frame frame(shown);
  frame.open_file_dialog_typed("t", "txt");
  frame.open_file_dialog_typed("t", "sizes");
  EXPECT_EQ(frame.open_file_dialog("t"), "x");
  EXPECT_EQ(frame.open_file_dialog("t"), "");
  EXPECT_EQ(filters, (texts{"Txt files |*.txt|All files|*.*", "Sizes files |*.sizes|All files|*.*", "", ""}));
}

TEST(process_frame, answers_fit_the_buttons_and_mark_failures) {
  recorded_frame shown;
  shown.book.add({"q", "cancel", true});
  question asked;
  asked.text = "q";
  EXPECT_EQ(shown.frame.ask(asked), answer::no);
  asked.choice = answer_choice::ok_cancel;
  EXPECT_EQ(shown.frame.ask(asked), answer::cancel);
  EXPECT_FALSE(shown.frame.data_failed());
  asked.marks_failure = true;
  shown.frame.ask(asked);
  EXPECT_TRUE(shown.frame.data_failed());
}

TEST(process_frame, program_end_shows_logs_and_throws) {
  recorded_frame shown;
  try {
    shown.frame.program_end_now("Error!: f=0", exit_status::run_failed);
  } catch (const program_end &end) {
    EXPECT_EQ(end.status(), exit_status::run_failed);
    EXPECT_EQ(shown.record.messages, texts{"Error!: f=0"});
    EXPECT_EQ(shown.record.log, texts{"Error!: f=0"});
    return;
  }
  FAIL();
}

TEST(process_frame, a_log_that_cannot_be_written_is_an_error) {
  recorded_frame shown;
  shown.frame.log_folder_set(shown.folder / "absent");
  EXPECT_THROW(shown.frame.log_line("x"), file_error);
  process_frame without_folder;
  EXPECT_NO_THROW(without_folder.log_line("x"));
}

TEST(process_frame, names_of_reports_may_begin_with_a_backslash) {
  EXPECT_EQ(process_frame::path_in_folder("/w", "\\a.txt"), "/w/a.txt");
  EXPECT_EQ(process_frame::path_in_folder("/w", "a.txt"), "/w/a.txt");
  EXPECT_EQ(process_frame::path_in_folder("/w", "\\clusters\\a.txt"), "/w/clusters/a.txt");
}

TEST(answers, once_always_and_bad_lines) {
  answer_book book;
  std::string problem, reply;
  EXPECT_FALSE(answer_book::parse("Load\tyes\r\nno tab here\n\n*Load\tno\nInput\t7 8", book, problem));
  EXPECT_EQ(problem, "line 2 has no tab: no tab here");
  for (const char *expected : {"yes", "no", "no"}) {
    ASSERT_TRUE(book.take("Load the net?", reply));
    EXPECT_EQ(reply, expected);
  }
  EXPECT_FALSE(book.take("Inp", reply)); // shorter than the prepared start
  EXPECT_TRUE(book.take("Input caption", reply));
  EXPECT_EQ(reply, "7 8");
  answer given = answer::yes;
  EXPECT_TRUE(answer_from_text(" Cancel", given));
  EXPECT_EQ(given, answer::cancel);
  EXPECT_FALSE(answer_from_text("perhaps", given));
}

TEST(clock, pinned_forms_and_day_numbers) {
  ::setenv("SOURCE_DATE_EPOCH", "951782399", 1); // 2000-02-28 23:59:59
  const program_clock clock;
  ::unsetenv("SOURCE_DATE_EPOCH");
  EXPECT_EQ(clock.date_and_time_string(), "2000-02-28_23-59-59");
  EXPECT_EQ(clock.iso_date(), "2000-02-28T23:59:59");
  EXPECT_EQ(static_cast<int>(clock.day_number()), 36584);
  const std::tm back = calendar_of_day_number(clock.day_number());
  EXPECT_EQ(back.tm_year, 100);
  EXPECT_EQ(back.tm_mon, 1);
  EXPECT_EQ(back.tm_mday, 28);
  EXPECT_EQ(back.tm_sec, 59);
  EXPECT_EQ(calendar_of_day_number(1e300).tm_year, 70); // a damaged value
}

} // namespace
} // namespace orb

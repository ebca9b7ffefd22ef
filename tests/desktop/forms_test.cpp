// The forms: what they show, what they refuse, and which line of a script each of them is.
#include <QCheckBox>
#include <QLabel>
#include <QLayout>
#include <QPlainTextEdit>

#include "commands/metric_parameters.h"
#include "desktop_fixture.h"
#include "frame/numbers.h"

using orb::qt_text;

namespace {

class forms : public orb_test::desktop_test {
protected:
  QString last_line() const { return session.lines().isEmpty() ? QString() : session.lines().back(); }
  static QString text(QWidget *form, const QString &control) { return form->findChild<QLineEdit *>(control)->text(); }
  static QString wrong(QWidget *form) {
    const auto *label = form->findChild<QLabel *>("wrong");
    return label->isVisible() ? label->text() : QString();
  }
  void load_all() {
    ASSERT_TRUE(run("library.load", {{"file", example()}}));
    ASSERT_TRUE(run("net.create"));
  }
  // A list of the clones first to last of the library.
  QString list_of(const char *name, orb::clone_number first, orb::clone_number last) {
    std::string text;
    for (orb::clone_number clone = first; clone <= last; ++clone)
      text += session.project().database().name_of_clone_get(clone) + "\n";
    orb::write_bytes(in_folder(name), text);
    return qt_text(in_folder(name));
  }
  // Whoever reads the screen aloud, or has no mouse: fields have names, and the tab key goes down and to the right.
  static void expect_reachable(QWidget *form) {
    const auto is_stop = [form](const QWidget *field) {
      return field->isVisible() && field->isEnabled() && form->isAncestorOf(field) &&
             (field->focusPolicy() & Qt::TabFocus) && field->focusProxy() == nullptr;
    };
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    form->layout()->activate(); // a slow machine may not have come to it
    QPoint last(-1, -1);
    for (QWidget *field = form->nextInFocusChain(); field != form; field = field->nextInFocusChain()) {
      if (!is_stop(field))
        continue;
      const auto *button = qobject_cast<QAbstractButton *>(field);
      EXPECT_FALSE((button ? button->text() + field->accessibleName() : field->accessibleName()).isEmpty())
          << form->objectName().toStdString() << ": " << field->objectName().toStdString() << " "
          << field->metaObject()->className();
      const QPoint at = field->mapTo(form, QPoint(0, field->height() / 2));
      EXPECT_TRUE(at.y() >= last.y() - 4 || at.x() > last.x())
          << form->objectName().toStdString() << ": up to " << field->objectName().toStdString();
      last = at;
    }
  }
};

} // namespace

TEST_F(forms, parameters) {
  QWidget *form = choose("mnu_View_GenParam", "form_param");
  EXPECT_EQ(form->windowTitle(), "Parameters");
  EXPECT_EQ(text(form, "t_tolerance"), "12");
  EXPECT_EQ(text(form, "t_tolerance_index"), "1");
  EXPECT_EQ(text(form, "t_image_length"), "60000");
  EXPECT_EQ(text(form, "t_n_bands_FPC"), "2250");
  EXPECT_EQ(text(form, "t_max_n_clones"), "80000");
  fill(form, "t_image_length", "40000");
  press(form, "cmd_recalc_n_bands");
  EXPECT_EQ(last_line(), "parameters.set gel-length=40000");
  EXPECT_EQ(form->findChild<QLabel *>("l_n_bands")->text(),
            QString::number(session.project().database().total_number_of_different_bands_get()));
  EXPECT_TRUE(form->isVisible());
  fill(form, "t_image_length", "1");
  press(form, "cmd_recalc_n_bands");
  EXPECT_EQ(text(form, "t_image_length"), "40000") << "a length below 2 gives way to the library's";
  fill(form, "t_tolerance", "much");
  press(form, "c_ok");
  EXPECT_TRUE(wrong(form).startsWith("tolerance: \"much\" isn't a whole number")) << wrong(form).toStdString();
  fill(form, "t_tolerance", "7");
  press(form, "c_ok");
  EXPECT_EQ(last_line(), "parameters.set tolerance=7");
  EXPECT_FALSE(shown("form_param"));
  auto *tolerance = window.findChild<QWidget *>("FrameTolerance")->findChildren<QLabel *>().front();
  EXPECT_EQ(tolerance->text(), "Tolerance, t = 7");
}

TEST_F(forms, metric_with_its_warning) {
  load_all();
  QWidget *form = choose("mnu_View_metrics", "form_metric");
  EXPECT_EQ(form->windowTitle(), "Clone overlaps");
  auto *metric = form->findChild<QComboBox *>("combo_cutoff");
  EXPECT_EQ(metric->currentText(), "Sulston_1988");
  EXPECT_EQ(text(form, "t_cutoff"), "15.00");
  EXPECT_EQ(text(form, "t_pogloshenie"), "0.9");
  metric->setCurrentIndex(1);
  EXPECT_EQ(text(form, "t_cutoff"), "35.00");
  metric->setCurrentIndex(3);
  EXPECT_EQ(text(form, "t_cutoff"), "35.00") << "KK2mn has no standard one";
  press(form, "c_Cancel");
  EXPECT_EQ(session.project().rule().distance_index, 4);
  form = choose("mnu_View_metrics", "form_metric");
  fill(form, "t_cutoff", "9,5");
  form->findChild<QCheckBox *>("ch_several")->setChecked(true);
  press(form, "c_ok");
  EXPECT_DOUBLE_EQ(session.project().rule().cutoff, 9.5) << last_line().toStdString();
  EXPECT_TRUE(session.project().settings().several_metrics_and_cutoffs);
  const orb::class_net &net = session.project().signif().net();
  EXPECT_EQ(boxes.seen.back(),
            qt_text("NB! Selected cutoff level 9.5000<" + orb::number_text(net.minimal_edge_value_get(), 4) +
                    " =Min(edge_value)\nin the loaded net of significant clone overlaps:\n" + net.title_of_net_get()));
}

TEST_F(forms, formats_and_options) {
  QWidget *form = choose("mnu_Format", "form_formats");
  EXPECT_EQ(form->windowTitle(), "Data formats");
  form->findChild<QComboBox *>("combo_format_output")->setCurrentIndex(0);
  press(form, "c_ok");
  EXPECT_EQ(last_line(), "formats.set name-format-in=7 name-format-out=0 file-format=0");
  form = choose("mnu_View_Options", "Form1");
  EXPECT_EQ(form->windowTitle(), "Options for analysis");
  EXPECT_EQ(form->findChild<QComboBox *>("combo_table_format")->currentText(), "Sulston score only");
  EXPECT_TRUE(form->findChild<QCheckBox *>("ch_fast_FPC")->isChecked());
  form->findChild<QComboBox *>("combo_table_format")->setCurrentText("All known distances");
  form->findChild<QCheckBox *>("ch_fast_FPC")->setChecked(false);
  press(form, "c_ok");
  EXPECT_EQ(session.project().settings().table_format_text, "All known distances");
  EXPECT_FALSE(session.project().settings().for_FPC_fast_indicator);
  EXPECT_EQ(last_line(), "analyse.options clear=yes");
  ASSERT_TRUE(run("analyse.options", {{"do", "cutoffs,clustering"}}));
  form = choose("mnu_View_Options", "Form1");
  EXPECT_TRUE(form->findChild<QCheckBox *>("ch_clustering")->isChecked());
  form->findChild<QCheckBox *>("ch_clustering")->setChecked(false);
  form->findChild<QCheckBox *>("ch_Band_Map_Linker")->setChecked(true);
  form->findChild<QCheckBox *>("ch_topology")->setChecked(true);
  press(form, "c_ok");
  EXPECT_EQ(last_line(), "analyse.options do=band-map,topology,cutoffs clear=yes");
  const orb::contig_process_options &analyses = session.project().analyses();
  EXPECT_TRUE(analyses.option_band_map && analyses.option_topology && analyses.option_several_metrics);
  EXPECT_FALSE(analyses.option_clustering);
}

TEST_F(forms, setting_QQ) {
  load_all();
  QWidget *form = choose("mnu_Analysis_RevizeNetSignif_QClones", "FrmSettingQQ");
  EXPECT_EQ(form->windowTitle(), "QQ settimg");
  EXPECT_EQ(text(form, "t_cur_cutoff"), "15");
  EXPECT_EQ(text(form, "t_min_cutoff"), "25");
  fill(form, "t_min_cutoff", "much");
  press(form, "c_ok");
  EXPECT_EQ(boxes.seen.back(), "Additional cutoff has to be numeric and more than current cutoff");
  fill(form, "t_min_cutoff", "15");
  press(form, "c_ok");
  EXPECT_EQ(boxes.seen.back(), "Additional cutoff has to be more than current cutoff");
  fill(form, "t_min_cutoff", "20");
  press(form, "c_ok"); // the save dialog is cancelled
  EXPECT_EQ(boxes.seen.back(),
            "Resulted net of significant clone overlaps (without Qs) save to... (in the ORB-specific format)");
  EXPECT_TRUE(form->isVisible());
  orb::write_bytes(in_folder("q.ORBns"), "older");
  boxes.answer("Resulted net", qt_text(in_folder("q.ORBns")));
  boxes.answer(qt_text("File " + in_folder("q.ORBns") + " already exists! Overwrite?"), "yes");
  boxes.answer("max rank connections (min=1, max=50)", "2");
  press(form, "c_ok");
  EXPECT_EQ(boxes.seen.back(), "Net of significant clone overlaps is revized");
  EXPECT_EQ(last_line(), qt_text("net.revise out=" + in_folder("q.ORBns") +
                                 " force=yes ask-rank=yes additional-cutoff=20 no-overlaps=yes"));
  EXPECT_EQ(session.answers(), QStringList("max rank connections (min=1, max=50)\t2"));
}

TEST_F(forms, mark_vertices) {
  load_all();
  EXPECT_FALSE(shown("form_mark_vertices"));
  boxes.answer("Open file with all interesting clones", list_of("all.txt", 1, 40));
  QWidget *form = choose("mnu_View_mark", "form_mark_vertices");
  const auto label = [form](const char *name) { return form->findChild<QLabel *>(name)->text(); };
  EXPECT_EQ(label("l_vertices"), "40 clones from all.txt");
  press(form, "Command_load"); // cancelled
  EXPECT_EQ(label("l_n_vertices"), "");
  auto *kind = form->findChild<QComboBox *>("Combo_mark_by"), *value = form->findChild<QComboBox *>("Combo1_index");
  EXPECT_EQ(value->currentText(), "White");
  value->setCurrentText("Red");
  boxes.answer("Open file with list of marked clones", list_of("red.txt", 2, 5));
  press(form, "Command_load");
  EXPECT_EQ(label("l_n_vertices"), "4 clones from red.txt");
  kind->setCurrentText("Caption");
  EXPECT_EQ(value->currentText(), "------");
  boxes.answer("Open file with list of marked clones", list_of("named.txt", 7, 7));
  boxes.answer("Input caption for marking vertices", " LOD=5");
  press(form, "Command_load");
  EXPECT_EQ(label("l_list_name"), "named.txt");
  fill(form, "t_cutoff", "much");
  press(form, "Ok");
  EXPECT_EQ(boxes.seen.back(), "Cutoff should be numerical!");
  fill(form, "t_cutoff", "17,5");
  press(form, "Ok");
  EXPECT_FALSE(shown("form_mark_vertices"));
  EXPECT_EQ(last_line().toStdString(), "draw.vertices list=" + in_folder("all.txt") +
                                           " mark=color=Red=" + in_folder("red.txt") +
                                           " mark=\"caption= LOD=5=" + in_folder("named.txt") + "\" cutoff=17.5");
}

TEST_F(forms, simulations) {
  QWidget *form = choose("mnu_File_Simul_Score", "form_simul_1");
  EXPECT_EQ(form->windowTitle(), "Simulations");
  EXPECT_EQ(text(form, "t_n_estimations"), "10000");
  press(form, "b_calculate");
  EXPECT_NE(wrong(form), "") << "K is missing";
  fill(form, "t_k", "40");
  press(form, "b_calculate");
  EXPECT_EQ(last_line(), "pvalue.score n1=100 n2=100 k=40");
  EXPECT_TRUE(form->findChild<QLabel *>("l_lg_P_val")->text().startsWith("-Lod_10(P)="));
  press(form, "b_estimate");
  EXPECT_TRUE(wrong(form).contains("library")) << wrong(form).toStdString();
  ASSERT_TRUE(run("library.load", {{"file", example()}}));
  fill(form, "t_folder", qt_text(in_folder("tables")));
  fill(form, "t_n_estimations", "300");
  fill(form, "t_n_shag", "2");
  press(form, "b_create_table");
  fill(form, "t_m", "50");
  fill(form, "t_n", "50");
  fill(form, "t_k", "20");
  form->findChild<QCheckBox *>("ch_iid")->setChecked(true);
  press(form, "b_value_of_k");
  const QString value = text(form, "t_lg_P_val");
  EXPECT_GT(value.toDouble(), 0);
  fill(form, "t_k", "");
  press(form, "b_k_of_value");
  EXPECT_NEAR(text(form, "t_k").toDouble(), 20, 0.01);
}

TEST_F(forms, adaptive_clustering) {
  load_all();
  QWidget *form = choose("mnu_Analysis_WholeDB_AdaptClustering", "form_adapt_clust");
  for (const auto &[control, value] : {std::pair{"t_n_clones_max", "1200"},
                                       {"t_minimal_cluster_size", "6"},
                                       {"t_width_max", "1"},
                                       {"t_step_cutoff", "3"},
                                       {"t_meth_cutoff_n_steps", "6"},
                                       {"t_rank_relative_to_diam_path", "2"},
                                       {"t_minimal_branch_size", "3"}})
    EXPECT_EQ(text(form, control), value) << control;
  fill(form, "t_width_max", "-1");
  press(form, "c_start");
  EXPECT_TRUE(wrong(form).startsWith("max-width: \"-1\" isn't"));
  press(form, "c_canclel");
  EXPECT_FALSE(shown("form_adapt_clust"));
  EXPECT_FALSE(session.project().has(orb::project_part::contigs));
}

// Each entry opens its form; a form that was made from the parameters has a field for each that is left open.
TEST_F(forms, every_entry_opens_and_cancels) {
  load_all();
  const auto lines = session.lines();
  boxes.answer("Open file with all interesting clones", list_of("all.txt", 1, 3));
  std::size_t n_forms = 0;
  for (const orb::menu_entry &entry : orb::table_of_menu_entries()) {
    const QAction *action = window.action(entry.control);
    if (entry.command.empty() || !action->isEnabled() || entry.command == "program.exit")
      continue;
    const orb::bound_command command = orb::bound_by_name(entry.control);
    const auto &rows = command.parameters().rows();
    if (std::all_of(rows.begin(), rows.end(), [](const auto &row) { return row.is_given(); }))
      continue;
    const_cast<QAction *>(action)->trigger();
    settle();
    QWidget *form = nullptr;
    for (QWidget *top : QApplication::topLevelWidgets())
      if (top->isVisible() && top != &window)
        form = top;
    ASSERT_TRUE(form) << entry.control;
    const bool is_made = form->objectName() == qt_text(entry.control);
    for (const orb::parameter_row &row : rows) {
      EXPECT_EQ(form->findChild<QWidget *>(qt_text(row.key)) != nullptr || !is_made, !row.is_given() || !is_made)
          << entry.control << " " << row.key;
    }
    EXPECT_LE(form->width(), 1280);
    EXPECT_LE(form->height(), 800) << entry.control;
    expect_reachable(form);
    form->close();
    settle();
    ++n_forms;
  }
  EXPECT_GT(n_forms, 60u);
  EXPECT_EQ(session.lines(), lines);
}

TEST_F(forms, made_from_parameters) {
  load_all();
  QWidget *form = choose("mnu_Appendix_CloneNetCharacteristics", "mnu_Appendix_CloneNetCharacteristics");
  press(form, "c_ok");
  EXPECT_TRUE(wrong(form).contains("clone")) << wrong(form).toStdString();
  fill(form, "clone", "EC001A03");
  fill(form, "rank", "51");
  press(form, "c_ok");
  EXPECT_EQ(wrong(form), "rank: \"51\" isn't a whole number from 1 to 50");
  fill(form, "rank", "2");
  press(form, "c_ok");
  EXPECT_EQ(last_line(), "net.characteristics clone=EC001A03 rank=2");
  auto *messages = window.findChild<QPlainTextEdit *>("messages");
  EXPECT_TRUE(messages->toPlainText().contains("N_clusters = "));
  window.action("mnu_View_Project")->trigger();
  settle();
  ASSERT_TRUE(shown("results"));
  EXPECT_TRUE(
      shown("results")->findChild<QPlainTextEdit *>("t_results")->toPlainText().contains("Number of clones = 423"));
}

TEST_F(forms, a_result_that_exists_is_overwritten_after_a_question) {
  ASSERT_TRUE(run("library.load", {{"file", example()}}));
  const std::string file = in_folder("l.ORBdb");
  orb::write_bytes(file, "older");
  for (const char *reply : {"no", "yes"}) {
    QWidget *form = choose("mnu_File_SaveInTypicalFile", "mnu_File_SaveInTypicalFile");
    fill(form, "out", qt_text(file));
    boxes.answer(qt_text("File " + file + " already exists! Overwrite?"), reply);
    press(form, "c_ok");
    EXPECT_EQ(orb::bytes_of(file) == "older", std::string(reply) == "no");
    if (form = shown("mnu_File_SaveInTypicalFile"); form)
      form->close();
    settle();
  }
  EXPECT_EQ(last_line(), qt_text("library.save out=" + file + " force=yes"));
}

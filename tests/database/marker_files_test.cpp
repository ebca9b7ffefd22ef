// Marker files: the text forms, the native form, and what damaged files do.
#include "database/class_markers.h"
#include "support/database_fixture.h"

namespace orb_test {
namespace {

class marker_files : public database_fixture {
protected:
  marker_files() {
    std::string sizes;
    for (const char *name : {"C01", "C02", "C03", "C04", "C05"})
      sizes += std::string(name) + "\t1\tGel\r\n100\r\n-1\r\n\r\n";
    EXPECT_TRUE(load_sizes(write("a.sizes", sizes)));
    record = {};
  }
  // "C01:m1,m2;" for each clone with markers, then "m1(C01,C02)position;" for each marker.
  std::string loaded() {
    std::string text;
    for (clone_number clone = 1; clone <= 5; ++clone) {
      number_list of_clone;
      markers().list_of_markers_in_clone_get(clone, of_clone);
      EXPECT_EQ(of_clone.count(), markers().n_markers_in_clone_get(clone));
      if (of_clone.empty())
        continue;
      text += database.name_of_clone_get(clone) + ":";
      for (const std::int32_t m : of_clone.members())
        text += markers().name_of_marker_get(m) + ",";
      text.back() = ';';
    }
    for (std::int32_t m = 1; m <= markers().total_number_of_markers_get(); ++m) {
      text += markers().name_of_marker_get(m) + "(";
      const number_list clones = markers().list_of_clones_of_marker_get(m);
      for (const clone_number clone : clones.members())
        text += database.name_of_clone_get(clone) + ",";
      text.back() = ')';
      text += markers().position_of_marker_get(m) + ";";
    }
    return text;
  }
  std::string take_messages() {
    std::string text;
    for (const std::string &message : record.messages)
      text += message.substr(0, message.find("\r\n")) + "|";
    record.messages.clear();
    return text;
  }
  bool read_clones(const std::string &bytes, bool one_column, bool create_new = true) {
    return markers().file_with_list_of_markers_for_each_clone_read(frame, database, create_new, write("c.txt", bytes),
                                                                   &one_column);
  }
  bool read_markers(const std::string &bytes) {
    return markers().file_with_list_of_clones_for_each_marker_read(frame, database, write("m.txt", bytes));
  }
  bool read_native(const std::string &bytes) {
    return markers().run_file_about_markers_ORB_format_load(frame, database, write("n.ORB", bytes));
  }

  class_markers &markers() { return database.markers(); } // a load of clones renews it
};

TEST_F(marker_files, markers_for_each_clone) {
  EXPECT_TRUE(read_clones("C02\tm1,m2\r\nC01\tm2, m3 ,m2\n\nC04\n", true));
  EXPECT_EQ(loaded(), "C01:m2,m3;C02:m1,m2;m1(C02);m2(C02,C01);m3(C01);");
  EXPECT_EQ(take_messages(), "");
  EXPECT_EQ(record.panels.back(), "3: All of 4 clon-markers");
  EXPECT_EQ(file_bytes(folder / "new_markers_in_clones.ORB"),
            "Clones in database with bands:\r\n5\r\nClones in database with markers:\r\n2\r\n"
            "Total number of markers:\r\n3\r\nmmm:\r\n6\r\nClone adres in database with bands:\r\n2\r\n1\r\n"
            "Clone adres in database with markers:\r\n2\r\n1\r\n-1\r\n-1\r\n-1\r\n"
            "Marker names:\r\nm1\t\r\nm2\t\r\nm3\t\r\nStarts:\r\n1\r\n3\r\nEnds:\r\n2\r\n4\r\n"
            "Markers:\r\n1\r\n2\r\n2\r\n3\r\n");
  std::int32_t n_common = -1;
  markers().number_of_common_markers(1, 2, n_common);
  EXPECT_EQ(n_common, 1);
  markers().number_of_common_markers(1, 4, n_common);
  EXPECT_EQ(n_common, 0);

  markers().file_with_list_of_markers_for_each_clone_save(frame, database);
  const std::string saved = file_bytes(folder / "clones_with_markers.txt"), before = loaded();
  EXPECT_EQ(saved, "C02\tm1,m2\r\nC01\tm2,m3\r\n");
  EXPECT_TRUE(read_clones(saved, true));
  EXPECT_EQ(loaded(), before);
  // with tabs the same two names are one marker; a clone's last line holds
  EXPECT_TRUE(read_clones("C02\tm1,m2\nC03\ta\tb\t\t\nC02\tb\n", false));
  EXPECT_EQ(loaded(), "C02:b;C03:a,b;m1,m2);a(C03);b(C03,C02);");
  EXPECT_FALSE(frame.data_failed());
}

TEST_F(marker_files, wrong_lines_of_clones_are_told_and_passed_over) {
  EXPECT_TRUE(read_clones("X1\ta\nC01\ta\t\tb\n\tq\nC02\tc", false));
  EXPECT_EQ(take_messages(), "New clone X1|Problematic line: C01\ta\t\tb|New clone |");
  EXPECT_EQ(loaded(), "C01:a;C02:c;a(C01);c(C02);");
  EXPECT_EQ(frame.doubts().count(), 3);
  EXPECT_NE(frame.doubts().text().find("New clone X1 (file "), std::string::npos) << frame.doubts().text();
  std::string nineteen = "C01", names = "C01:";
  for (int i = 1; i <= 19; ++i)
    nineteen += "\tm" + std::to_string(i);
  EXPECT_TRUE(read_clones(nineteen, false));
  EXPECT_EQ(markers().n_markers_in_clone_get(1), 19);
  EXPECT_EQ(take_messages(), "");
  EXPECT_TRUE(read_clones(nineteen + "\tm20", false));
  EXPECT_EQ(markers().n_markers_in_clone_get(1), 19);
  EXPECT_EQ(take_messages(), "Problematic line: " + nineteen + "\tm20|");

  // the file only checks what is loaded
  ASSERT_TRUE(read_clones("C01\ta,b\nC02\tb", true));
  const std::string before = loaded();
  EXPECT_TRUE(read_clones("C01\ta,b\nC02\tb,z\nC03\ta", true, false));
  EXPECT_EQ(take_messages(), "it_is_new_marker: z C02\tb,z|nl2 <> nl1: C02\tb,z 2 1|nl2 <> nl1: C03\ta 1 0|");
  EXPECT_EQ(loaded(), before);
  EXPECT_FALSE(read_clones(std::string("C01\ta\nC02\tb\0\1", 12), true));
  EXPECT_FALSE(markers().file_with_list_of_markers_for_each_clone_read(frame, database, true)); // dialog cancelled
  frame.stop_requested_set(true);
  EXPECT_FALSE(read_clones("C04\tz", true));
  EXPECT_EQ(loaded(), before);
}

TEST_F(marker_files, clones_for_each_marker_and_positions) {
  EXPECT_TRUE(read_markers(" m1 \tC03,C01;C03\tchr1 \t\t 12 \t\nm2\nm3\tnobody\nm2\tC01 ghost\nm1\tC05\n\tC04\n"));
  EXPECT_EQ(loaded(), "C01:m1,m2;C03:m1;m1(C01,C03)chr1\t\t12;m2(C01);");
  EXPECT_EQ(take_messages(), "Problematic line: \tC04|n_unknown_clone_names=2|n_twice_marker_name=1|"
                             "private_n_name_of_markers=2|");
  EXPECT_EQ(markers().n_clones_with_markers_get(), 5);
  std::string zones;
  markers().string_of_zones({3, 1}, zones);
  EXPECT_EQ(zones, "Zones of markers:\tchr1\t\t12");
  book.add({"New marker q2", "no", false});
  EXPECT_TRUE(markers().read_file_with_marker_position(
      frame, database,
      write("p.txt", "MARKER NAME\tPOSITION\nm2\tchr2\nm1\tchr9\nq1\tx\nq2\tx\nq3\tx\nMarker name\tx\n")));
  EXPECT_EQ(take_messages(), "Position specified more than once for m1|");
  EXPECT_EQ(record.questions, (std::vector<std::string>{"New marker q1. Continue to say about this problem?",
                                                        "New marker q2. Continue to say about this problem?"}));
  EXPECT_EQ(loaded(), "C01:m1,m2;C03:m1;m1(C01,C03)chr1\t\t12;m2(C01)chr2;");
  EXPECT_NE(file_bytes(folder / "new_markers_in_clones.ORB").find("m1\tchr1\t\t12\r\nm2\tchr2\r\n"), std::string::npos);
  EXPECT_TRUE(read_markers(""));
  EXPECT_EQ(loaded(), "");
}

// One number more for each clone than a saved file has: deliberate on both sides.
TEST_F(marker_files, native_form_takes_one_number_a_clone_more_than_it_saves) {
  ASSERT_TRUE(read_clones("C04\ta,b\nC02\tb\nC01\tc,a", true));
  const std::string before = loaded();
  std::string native = file_bytes(folder / "new_markers_in_clones.ORB");
  take_messages();
  EXPECT_FALSE(read_native(native));
  EXPECT_EQ(loaded(), before);
  EXPECT_TRUE(frame.data_failed());
  EXPECT_EQ(take_messages(), "Native marker file is refused: its counts don't fit: it ends within the markers of clone "
                             "3 of 3. The reader takes one number more for each clone than a saved file of this form "
                             "has; read the markers from a text file instead.|");
  native = native.substr(0, native.find("\r\nMarkers:") + 10);
  const std::string fitting = native + "\r\n1\r\n2\r\n2\r\n2\r\n2\r\n3\r\n1\r\n1\r\n";
  EXPECT_FALSE(read_native(fitting + "1\r\n"));
  EXPECT_EQ(take_messages(), "Native marker file is refused: its counts don't fit: more marker numbers stand behind "
                             "those of its last clone.|");
  markers().redim_private_arrays(5, 0, 0);
  EXPECT_TRUE(read_native(fitting));
  EXPECT_EQ(loaded(), before);
  EXPECT_EQ(record.panels.back(), "3: Markers loaded");

  EXPECT_THROW(read_native("Clones in database with bands:\n6\n"), program_end);
  EXPECT_EQ(take_messages(), "Wrong number of clones in database: n_old=6, nnn=5|");
  EXPECT_EQ(loaded(), before);
}

TEST_F(marker_files, any_form_is_told_by_its_columns) {
  marker_file_form form;
  const auto read = [&](const std::string &bytes) {
    return markers().read_markers_of_any_text_form(frame, database, write("any.txt", bytes), form);
  };
  EXPECT_TRUE(read("Clone\tMarkers\nC01\ta,b\nC02\tb"));
  EXPECT_EQ(form, marker_file_form::markers_of_clones_in_one_column);
  EXPECT_EQ(loaded(), "C01:a,b;C02:b;a(C01);b(C01,C02);");
  EXPECT_TRUE(read("C01\ta\tb\nC02\tb"));
  EXPECT_EQ(form, marker_file_form::markers_of_clones_in_fields);
  EXPECT_EQ(loaded(), "C01:a,b;C02:b;a(C01);b(C01,C02);");
  EXPECT_TRUE(read("C01\tC04\nC02\tC05")); // known clones in both columns: the first decides
  EXPECT_EQ(loaded(), "C01:C04;C02:C05;C04(C01);C05(C02);");
  EXPECT_TRUE(read("a\tC01\tchr1\nb\tC01, C02\n"));
  EXPECT_EQ(form, marker_file_form::clones_of_markers);
  const std::string before = loaded();
  EXPECT_EQ(before, "C01:a,b;C02:b;a(C01)chr1;b(C01,C02);");
  for (const std::string &bytes : {std::string("a\tb\nc\td\n"), std::string(), std::string("\0\1\2", 3)}) {
    EXPECT_FALSE(read(bytes));
    EXPECT_EQ(loaded(), before);
  }
  markers().file_about_markers_ORB_format_save(frame, database);
  EXPECT_FALSE(read(file_bytes(folder / "new_markers_in_clones.ORB")));
  EXPECT_EQ(form, marker_file_form::native);
  EXPECT_EQ(loaded(), before);
  EXPECT_TRUE(record.questions.empty());
  EXPECT_THROW(markers().read_markers_of_any_text_form(frame, database, folder / "none", form), file_error);
}

TEST_F(marker_files, presence_of_markers_in_lists_of_clones) {
  ASSERT_TRUE(read_clones("C01\tb,a\nC02\tc\nC03\ta,d", true));
  markers().print_marker_presence_for_list_of_clones(frame, database, {3, 4, 1}, 3, {}, "ctg1");
  EXPECT_EQ(file_bytes(folder / "Consec_markers_ctg1.txt"), "C03\ta\td\t\r\nC04\t\t\t\r\nC01\ta\t\tb\r\n");
  std::vector<bool> present;
  markers().create_marker_presence_for_clone_and_list_of_markers(frame, 1, {4, 2}, present); // d, a
  EXPECT_EQ(present, (std::vector<bool>{false, false, true}));
  markers().create_marker_presence_in_list_of_marker_names(frame, 3, {"", "d", "x", "a"}, 2, present);
  EXPECT_EQ(present, (std::vector<bool>{false, true, false}));
  EXPECT_EQ(take_messages(),
            "Marker b of clone 1 is not in list_of_markers()|Marker a of clone 3 is not in list_of_markers()|");
  std::vector<std::string> names{"", "x", "a"};
  std::int32_t n = 2;
  markers().update_array_marker_name_by_markers_presented_in_clone(3, names, n);
  EXPECT_EQ(names, (std::vector<std::string>{"", "x", "a", "d"}));
  EXPECT_EQ(n, 3);
}

// Whatever stands in a file: what is loaded stays whole, or is replaced by something whose two directions agree.
TEST_F(marker_files, damaged_files_do_no_harm) {
  const std::string clones = "C01\ta,b\r\nC02\tb,c,d\r\nC05\te\r\n", of_markers = "a\tC01,C02\tz\r\nb\tC03\r\n";
  ASSERT_TRUE(read_clones(clones, true));
  const std::string native = file_bytes(folder / "new_markers_in_clones.ORB");
  random_source chance(11);
  const std::string pool = "\t\t,;\r\n -0129C9999999999\x01\xff";
  for (int round = 0; round < 600; ++round) {
    std::string bytes = round % 3 == 0 ? native + "1\r\n1\r\n1\r\n" : round % 3 == 1 ? clones : of_markers;
    for (int n = 1 + static_cast<int>(chance.uniform() * 3); n > 0; --n) {
      const auto at = static_cast<std::size_t>(chance.uniform() * static_cast<double>(bytes.size()));
      const double kind = chance.uniform();
      if (kind < 0.2)
        bytes.resize(at);
      else if (kind < 0.5)
        bytes.erase(at, 1 + static_cast<std::size_t>(chance.uniform() * 8));
      else
        bytes.insert(at, 1, pool[static_cast<std::size_t>(chance.uniform() * static_cast<double>(pool.size()))]);
    }
    const std::string before = loaded();
    bool read = false;
    marker_file_form form;
    try {
      read = markers().read_markers_of_any_text_form(frame, database, write("any.txt", bytes), form);
    } catch (const program_end &) {
    }
    if (!read) {
      ASSERT_EQ(loaded(), before);
      continue;
    }
    for (std::int32_t m = 1; m <= markers().total_number_of_markers_get(); ++m)
      for (clone_number clone = 1; clone <= 5; ++clone) {
        const auto of_clone = markers().markers_of_clone(clone);
        const number_list of_marker = markers().list_of_clones_of_marker_get(m);
        ASSERT_EQ(std::count(of_clone.begin(), of_clone.end(), m),
                  std::count(of_marker.members().begin(), of_marker.members().end(), clone));
      }
  }
}

} // namespace
} // namespace orb_test

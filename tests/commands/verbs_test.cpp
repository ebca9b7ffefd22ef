// What the table of verbs says holds: each option reaches the parameters of the steps that it is for, no key of a step
// is lost, and the options that are the verb's own do what they say.
#include <algorithm>
#include <gtest/gtest.h>
#include <set>

#include "commands/command_table.h"
#include "commands/verbs.h"
#include "frame/numbers.h"
#include "project/project_state.h"
#include "support/temporary_folder.h"

namespace {

using orb::parameter_row;
using orb::verb_run;

// Options that end in the verb or the program, not in a command.
const std::set<std::string> own_options{"resume",  "auto", "run",   "library", "net", "project", "script", "force",
                                        "threads", "seed", "quiet", "verbose", "log", "answers", "yes",    "strict"};

// A value that the row takes and that isn't what it holds.
std::string other_value(const parameter_row &row) {
  if (row.is_flag())
    return row.text() == "yes" ? "no" : "yes";
  if (!row.words.empty())
    return row.words.back() == row.text() ? row.words.front() : row.words.back();
  if (!row.is_number())
    return "some/thing";
  if (!row.low)
    return "77";
  const double below = std::min(*row.high, *row.low + 1);
  const auto text = [](double value) { return orb::number_text_shortest(value); };
  return row.text() == text(below) ? text(*row.low) : text(below);
}

// Of all steps of the call, in the order of the verb.
std::vector<const parameter_row *> rows_of_steps(verb_run &call) {
  std::vector<const parameter_row *> rows;
  for (const orb::bound_command &step : call.steps())
    for (const parameter_row &row : step.parameters().rows())
      rows.push_back(&row);
  return rows;
}

TEST(verbs, each_option_reaches_the_parameters_it_is_for) {
  for (const orb::verb &wanted : orb::table_of_verbs()) {
    verb_run call(wanted);
    const auto of_steps = rows_of_steps(call);
    for (const orb::verb_option &option : call.options()) {
      const std::string told = wanted.name + " --" + option.name;
      const std::string value = other_value(*option.rows.front());
      call.set(option.name, value);
      for (const parameter_row *row : option.rows) {
        const bool in_step = std::find(of_steps.begin(), of_steps.end(), row) != of_steps.end();
        EXPECT_TRUE(in_step || own_options.contains(option.name)) << told;
        EXPECT_TRUE(row->is_given()) << told;
        EXPECT_EQ(row->text(), value) << told << " of " << row->key;
        // one option for several steps means the same in each
        const parameter_row &first = *option.rows.front();
        EXPECT_EQ(row->target.index(), first.target.index()) << told;
        EXPECT_TRUE(row->low == first.low && row->high == first.high && row->words == first.words) << told;
      }
    }
  }
}

TEST(verbs, no_key_of_a_step_is_lost) {
  for (const orb::verb &wanted : orb::table_of_verbs()) {
    verb_run call(wanted);
    std::set<const parameter_row *> reached;
    for (const orb::verb_option &option : call.options())
      for (const parameter_row *row : option.rows)
        EXPECT_TRUE(reached.insert(row).second) << wanted.name << ": two options for " << row->key;
    for (std::size_t i = 0; i < wanted.steps.size(); ++i) {
      const orb::verb_step &step = wanted.steps[i];
      const orb::parameter_list &keys = call.steps()[i].parameters();
      const std::string told = wanted.name + ", " + step.command;
      std::set<std::string> without_option;
      for (const auto &[key, name] : step.names)
        if (name.empty())
          without_option.insert(key);
      for (const auto &[key, value] : step.presets)
        without_option.insert(key);
      for (const std::string &key : without_option)
        EXPECT_NE(keys.find(key), nullptr) << told << " has no " << key;
      for (const parameter_row &row : keys.rows()) {
        EXPECT_NE(reached.contains(&row), without_option.contains(row.key)) << told << ": " << row.key;
        if (without_option.contains(row.key) && row.required && !row.is_given()) {
          EXPECT_TRUE(wanted.prepare || wanted.run) << told << ": nobody gives " << row.key;
        }
      }
      if (!step.when.empty()) {
        EXPECT_NE(call.option(step.when.substr(step.when[0] == '!')), nullptr) << told;
      }
    }
    for (const auto *names : {&wanted.by_place, &wanted.needed})
      for (const std::string &name : *names) {
        ASSERT_NE(call.option(name), nullptr) << wanted.name << " --" << name;
        const bool may_lack = std::find(wanted.may_lack.begin(), wanted.may_lack.end(), name) != wanted.may_lack.end();
        EXPECT_NE(call.option(name)->needed, may_lack) << wanted.name << " --" << name;
      }
  }
}

TEST(verbs, a_cluster_is_cut_for_its_size_only_when_asked_and_the_form_keeps_its_limit) {
  for (const char *name : {"assemble", "contigs"}) {
    verb_run call(*orb::verb_by_name(name));
    const parameter_row &row = *call.option("max-clones")->rows.front();
    EXPECT_TRUE(row.text() == "none" && row.default_shown == "none" && !row.is_given()) << name;
    call.set("max-clones", "50");
    EXPECT_EQ(row.text(), "50");
    call.set("max-clones", "none");
    EXPECT_EQ(row.text(), "none");
    EXPECT_THROW(call.set("max-clones", "0"), orb::usage_error);
    EXPECT_THROW(call.set("max-clones", "nonesuch"), orb::usage_error);
  }
  const orb::bound_command form = orb::command_by_id("contigs.assemble")->bind();
  EXPECT_EQ(form.parameters().find("max-clones")->text(), "1200");
}

// ---- options of the verbs themselves -------------------------------------------------------------------------------

struct said {
  orb::exit_status status = orb::exit_status::done;
  std::string results, people;
};

said run(verb_run &call, orb::project_state &project) {
  said seen;
  const auto people = [&](const std::string &text) { seen.people += text + "\n"; };
  const auto stage_ends = [&](const std::string &summary, bool) { seen.people += summary + "\n"; };
  const orb::command_streams streams{[&](const std::string &text) { seen.results += text + "\n"; }, people, people,
                                     [](int, int, const std::string &) {}, stage_ends};
  seen.status = orb::run_verb(call, project, streams);
  return seen;
}

said run(const std::string &verb, const std::vector<std::pair<std::string, std::string>> &options) {
  verb_run call(*orb::verb_by_name(verb));
  for (const auto &[name, value] : options)
    call.set(name, value);
  orb::project_state project;
  return run(call, project);
}

const std::string example = ORB_SOURCE_DIR "/examples/ecoli536";

class verb_options : public testing::Test {
protected:
  std::string file(const std::string &name) const { return (folder.path() / name).string(); }
  orb::temporary_folder folder;
};

TEST_F(verb_options, a_project_is_opened_for_menu_and_script) {
  ASSERT_EQ(run("load", {{"input", example}, {"out", file("l.ORBdb")}}).status, orb::exit_status::done);
  folder.write("p.txt", "library,l.ORBdb\n");
  const std::string entry = "mnu_File_SaveInTypicalFile\tFile\tSave clones with lists of bands in ORB-specific file\t"
                            "library.save\t";
  EXPECT_NE(run("menu", {}).results.find(entry + "needs a library\n"), std::string::npos);
  EXPECT_NE(run("menu", {{"project", file("p.txt")}}).results.find(entry + "runnable\n"), std::string::npos);

  const std::string script = folder.write("s.orbscript", "# shows what is there\nproject.show\nlibrary.names out=\"" +
                                                             file("n") + "\" bands=no\n");
  const said without = run("script", {{"script", script}});
  EXPECT_EQ(without.status, orb::exit_status::wrong_command);
  EXPECT_NE(without.results.find("Number of clones = 0"), std::string::npos);
  EXPECT_NE(without.people.find("line 3, library.names: library.names needs a library"), std::string::npos)
      << without.people;
  const said with = run("script", {{"script", script}, {"project", file("p.txt")}});
  EXPECT_EQ(with.status, orb::exit_status::done) << with.people;
  EXPECT_NE(with.results.find("Number of clones = 423"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(file("n/DB.txt")));
}

// Library and net of a run come from its record, unless they are named.
TEST_F(verb_options, library_and_net_of_a_run_are_those_of_its_record_or_those_that_are_named) {
  ASSERT_EQ(run("assemble", {{"input", example},
                             {"out", file("d")},
                             {"cutoff", "17"},
                             {"no-ordering", "yes"},
                             {"no-pair-tables", "yes"},
                             {"no-drawings", "yes"}})
                .status,
            orb::exit_status::done);
  const auto prepared = [&](const std::vector<std::pair<std::string, std::string>> &options) {
    auto call = std::make_unique<verb_run>(*orb::verb_by_name("retain"));
    call->set("run", file("d"));
    for (const auto &[name, value] : options)
      call->set(name, value);
    orb::project_state project;
    orb::prepare_run_verb(*call, project);
    return call;
  };
  const auto value = [](verb_run &call, const char *step, const char *key) {
    return call.step(step)->parameters().find(key)->text();
  };
  const auto by_record = prepared({});
  EXPECT_EQ(value(*by_record, "library.load", "file"), file("d/CloneBandSizes.ORBdb"));
  EXPECT_TRUE(value(*by_record, "net.load", "file").starts_with(file("d/"))) << value(*by_record, "net.load", "file");
  EXPECT_EQ(value(*by_record, "metric.set", "cutoff"), "17");
  const auto named = prepared({{"library", "l.ORBdb"}, {"net", "n.ORBns"}, {"cutoff", "19"}});
  EXPECT_EQ(value(*named, "library.load", "file"), "l.ORBdb");
  EXPECT_EQ(value(*named, "net.load", "file"), "n.ORBns");
  EXPECT_EQ(value(*named, "metric.set", "cutoff"), "19");
  EXPECT_EQ(value(*named, "contigs.load", "folder"), value(*by_record, "contigs.load", "folder"));
}

// A finished result in a folder stays, whatever the verb; force makes it anew, from the same seed the same.
TEST_F(verb_options, force_overwrites_and_the_seed_decides) {
  ASSERT_EQ(run("load", {{"input", example}, {"out", file("l.ORBdb")}}).status, orb::exit_status::done);
  folder.write("list.txt", "EC001A01\nEC001A02\nEC001A03\n");
  const std::vector<std::pair<std::string, std::string>> table{
      {"input", file("l.ORBdb")}, {"list", file("list.txt")}, {"out", file("t")}};
  auto forced = table;
  forced.emplace_back("force", "yes");
  EXPECT_EQ(run("table", table).status, orb::exit_status::done);
  EXPECT_EQ(run("table", table).status, orb::exit_status::no_input_or_output);
  EXPECT_EQ(run("table", forced).status, orb::exit_status::done);

  const auto figures = [&](const std::string &seed) {
    const std::string out = file("e" + seed);
    EXPECT_EQ(run("pvalue estimate", {{"input", file("l.ORBdb")},
                                      {"n1", "60"},
                                      {"n2", "50"},
                                      {"runs", "200"},
                                      {"threads", "2"},
                                      {"force", "yes"},
                                      {"out", out},
                                      {"seed", seed}})
                  .status,
              orb::exit_status::done);
    const auto record = orb::run_record_read(out + "/run.json").value();
    EXPECT_EQ(std::to_string(record.value("seed", 0)), seed);
    EXPECT_EQ(record.value("threads", 0), 2);
    return record["results"]["a0"].dump() + record["results"]["a1"].dump();
  };
  EXPECT_NE(figures("1"), figures("2"));
  EXPECT_EQ(figures("1"), figures("1"));
}

} // namespace

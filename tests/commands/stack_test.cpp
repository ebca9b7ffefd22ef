// A stack of clones in a library is told where its net is made.
#include "support/library_generator.h"
#include "support/project_session.h"
#include "support/sizes_file.h"

using namespace orb_test;

namespace {

class stack_of_clones : public session_test {
protected:
  std::string findings_of_net(std::int32_t n_stack) const {
    process_frame frame;
    class_DB_of_clones database;
    class_usable_values usable_values;
    generate_library(frame, {.n_clones = 300, .bands_in_clone = 40, .coverage = 4, .n_stack = n_stack}, database,
                     usable_values);
    write_sizes_file(path("clones.sizes"), database);
    session run;
    run.done({"library.load file=" + text("clones.sizes")});
    const command_result result = run.run("net.create");
    EXPECT_EQ(result.status, exit_status::done);
    return result.findings;
  }
};

TEST_F(stack_of_clones, is_named_with_what_to_do) {
  EXPECT_EQ(findings_of_net(0), "");
  EXPECT_EQ(findings_of_net(40), ""); // deeper than others, and no harm
  const std::string told = findings_of_net(120);
  EXPECT_NE(told.find(" pile up, in stacks: 1.\n  120 clones: S100000, S100001, S100002, ...\nLook at them (orb info "
                      "LIB --clone S100000): "),
            std::string::npos)
      << told;
}

} // namespace

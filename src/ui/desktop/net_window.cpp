#include "ui/desktop/net_window.h"

#include <QCloseEvent>
#include <QColorDialog>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTimerEvent>
#include <algorithm>
#include <optional>

#include "commands/command_table.h"
#include "commands/script.h"
#include "frame/numbers.h"
#include "ui/desktop/edge_dialog.h"
#include "ui/desktop/elongation_dialog.h"
#include "ui/desktop/qt_text.h"
#include "viewer/view_hints.h"

namespace orb {

net_window::net_window(desktop_session &session, QWidget *parent)
    : QMainWindow(parent, Qt::Window), session_(session), lent_(std::make_unique<lent_sources>(session.project())),
      version_seen_(session.project().version()), rule_seen_(session.project().rule()) {
  setObjectName("form_net");
  setAttribute(Qt::WA_DeleteOnClose);
  resize(1180, 740);
  canvas_ = new net_canvas(*this, this);
  view_ = std::make_unique<net_view>(lent_->sources, window_of_view(), session.project().settings().threads);
  make_menus();
  make_buttons();
  make_status();
  setCentralWidget(make_side());
  connect(canvas_, &picture_canvas::resized, this, [this] { view_->resized(); });
  connect(&session_, &desktop_session::running_changed, this, &net_window::refresh_controls);
  connect(&session_, &desktop_session::project_changed, this, &net_window::parts_changed);
  connect(&session_.selection(), &selection_model::changed, this, &net_window::take_selection);
  show_panels();
  startTimer(1000); // the clock of the status bar
}

net_window::~net_window() = default;

view_window net_window::window_of_view() {
  view_window window;
  window.surface = canvas_->surface();
  window.elongation_dialog = [this](form_netElng &form) {
    return run_elongation_dialog(form, session_.project().frame(), this);
  };
  window.colour_dialog = [this](colour_value now) -> std::optional<colour_value> {
    const QColor chosen = QColorDialog::getColor(qt_colour(now), this, tr("Color"));
    return chosen.isValid() ? std::optional(colour_of(chosen)) : std::nullopt;
  };
  window.panels_changed = [this] { show_panels(); };
  window.picture_changed = [this] {
    canvas_->update();
    if (view_ != nullptr && view_->process_state() != view_process::idle)
      session_.project().frame().yield();
  };
  window.net_is_to_be_written = [this](const std::filesystem::path &file) { keep_what_was_opened(file); };
  window.file_written = [this](const std::string &control, const std::filesystem::path &file) {
    file_was_written(control, file);
  };
  return window;
}

// ---- the way into the view -----------------------------------------------------------------------------------------

void net_window::guarded(const std::function<void()> &what) {
  ++depth_;
  try {
    what();
  } catch (const std::exception &failed) { // a file that can't be written, or no memory
    session_.project().frame().alarm(failed.what());
  }
  --depth_;
}

bool net_window::act(const std::function<void()> &what, bool is_long) {
  if (!may_act())
    return false;
  if (is_long) {
    const desktop_session::busy_mark busy(session_);
    const frame_scope scope(session_.project().frame()); // what a user stopped before doesn't stop this
    guarded(what);
  } else {
    guarded(what);
  }
  edge_of_menu_ = -1; // edges may have other numbers now
  show_panels();
  if (closes_after_ || view_->wants_to_close()) {
    closes_after_ = true;
    QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
  }
  return true;
}

bool net_window::choose(const std::string &control, const std::string &value) {
  // while the view is at work it takes nothing but what ends it
  if (depth_ > 0)
    return (control == "mnuProcess" || control == "mnuExit") && view_->process_state() == view_process::running &&
           view_->choose(control, value);
  bool taken = false;
  act([&] { taken = view_->choose(control, value); }, true);
  return taken;
}

bool net_window::open_file(const std::filesystem::path &file) {
  const bool is_first = view_->steps().empty() && !view_->has_net();
  bool opened = false;
  if (is_first)
    act(
        [&] {
          opened = view_->ShowNetFile(file);
          if (opened)
            first_file_ = file;
        },
        true);
  else
    opened = choose("mnuFileNewNetFile", file.string()) && view_->has_net();
  // a file of a run gives no places: an empty picture would be of no use
  if (opened && view_->net().n_vertices_get() > 0 && view_->shows_nothing())
    choose("mnuOptions_Multilevel");
  take_selection(nullptr);
  return opened;
}

void net_window::closeEvent(QCloseEvent *event) {
  if (depth_ > 0) { // at work, or in a dialog of its own
    event->ignore();
    if (view_->is_at_work())
      view_->close_requested();
    return;
  }
  if (!closes_after_) {
    ++depth_; // the question is a loop of events
    const bool may_close = view_->close_requested();
    --depth_;
    if (!may_close) {
      event->ignore();
      return;
    }
  }
  event->accept();
}

void net_window::stop_or_cancel() {
  if (view_->process_state() == view_process::running)
    choose("mnuProcess");
  else if (view_->is_rotating())
    choose("CmdCancelRotate");
}

// ---- parts, selection, lines ---------------------------------------------------------------------------------------

void net_window::parts_changed() {
  project_state &project = session_.project();
  if (depth_ > 0 || (project.version() == version_seen_ && project.rule() == rule_seen_))
    return;
  version_seen_ = project.version();
  rule_seen_ = project.rule();
  auto lent = std::make_unique<lent_sources>(project);
  view_->sources_set(lent->sources);
  lent_ = std::move(lent);
  show_panels();
}

std::vector<std::int32_t> net_window::selected_clones() const {
  std::vector<std::int32_t> clones;
  for (const vertex_number n : view_->net().selected().members())
    if (const clone_number clone = view_->net().nodes()[static_cast<std::size_t>(n)].clone_id; clone > 0)
      clones.push_back(clone);
  std::sort(clones.begin(), clones.end());
  clones.erase(std::unique(clones.begin(), clones.end()), clones.end());
  return clones;
}

void net_window::publish_selection() {
  std::vector<std::int32_t> clones = selected_clones();
  if (clones == clones_seen_)
    return;
  clones_seen_ = clones;
  session_.selection().set(std::move(clones), this);
}

// What another window has selected, as far as it is in this net.
void net_window::take_selection(const QObject *by) {
  if (by == this || depth_ > 0 || !view_->has_net())
    return;
  std::vector<vertex_number> nodes;
  for (vertex_number n = 1; n <= view_->net().n_vertices_get(); ++n)
    if (const clone_number clone = view_->net().nodes()[static_cast<std::size_t>(n)].clone_id;
        clone > 0 && session_.selection().contains(clone))
      nodes.push_back(n);
  if (nodes.empty() && by == nullptr)
    return;
  ++depth_; // not told again
  view_->select_nodes(nodes);
  --depth_;
  clones_seen_ = selected_clones();
  show_panels();
}

namespace {

// A step that opens a net, as "mnuFileNewNetFile=FILE".
constexpr std::string_view opens = "mnuFileNewNetFile=";

} // namespace

std::filesystem::path net_window::opened_at(std::size_t step) const {
  if (step == 0)
    return first_file_;
  const std::string &text = view_->steps()[step - 1];
  return text.starts_with(opens) ? std::filesystem::path(text.substr(opens.size())) : std::filesystem::path();
}

// A line that reads what it writes couldn't be repeated, and the net as it was would be gone. A file that was opened
// again after it was saved has one more copy.
void net_window::keep_what_was_opened(const std::filesystem::path &to_be_written) {
  std::filesystem::path copy;
  for (std::size_t step = 0; step <= view_->steps().size(); ++step) {
    const std::filesystem::path file = opened_at(step);
    std::error_code failed;
    if (file.empty() || kept_.contains(step) || !std::filesystem::equivalent(file, to_be_written, failed))
      continue;
    if (copy.empty()) {
      copy = file.string() + "~";
      while (std::any_of(kept_.begin(), kept_.end(), [&copy](const auto &kept) { return kept.second == copy; }))
        copy += "~";
      std::filesystem::copy_file(file, copy, std::filesystem::copy_options::overwrite_existing);
    }
    kept_[step] = copy;
  }
}

QString net_window::script_line(const std::string &save_control, const std::filesystem::path &file) const {
  bound_command command = bound_by_name("net.view");
  const auto opened = [this](std::size_t step) {
    const auto kept = kept_.find(step);
    return kept == kept_.end() ? opened_at(step).string() : kept->second.string();
  };
  if (!first_file_.empty())
    command.set("file", opened(0));
  const surface_size size = view_->first_size();
  command.set("size",
              std::to_string(static_cast<int>(size.width)) + "x" + std::to_string(static_cast<int>(size.height)));
  for (std::size_t step = 1; step <= view_->steps().size(); ++step)
    command.set("do", opened_at(step).empty() ? view_->steps()[step - 1] : std::string(opens) + opened(step));
  if (save_control == "mnuSave")
    command.set("out", file.string());
  else if (!save_control.empty() && save_control != "mnuSaveSubNetRm") // which is a step already
    command.set("do", save_control + "=" + file.string());
  if (!save_control.empty())
    command.set("force", "yes");
  return qt_text(script_line_of(command));
}

void net_window::file_was_written(const std::string &control, const std::filesystem::path &file) {
  session_.note_line(script_line(control, file));
}

// ---- the mouse -----------------------------------------------------------------------------------------------------

void net_window::mouse_pressed(QPointF at, bool shift) {
  act([&] { view_->press(net_view::button::first, static_cast<float>(at.x()), static_cast<float>(at.y()), shift); },
      false);
}

void net_window::mouse_moved(QPointF at) {
  if (!may_act())
    return;
  canvas_->ring_set({}, 0);
  ++depth_;
  view_->move(static_cast<float>(at.x()), static_cast<float>(at.y()));
  --depth_;
}

void net_window::mouse_released(QPointF at) {
  act([&] { view_->release(static_cast<float>(at.x()), static_cast<float>(at.y())); }, false);
}

void net_window::hand_moved(QPointF by, bool goes_on) {
  if (may_act() && view_->has_net())
    act([&] { view_->pan(static_cast<float>(by.x()), static_cast<float>(by.y()), goes_on); }, false);
}

void net_window::hand_let_go() {
  act([&] { view_->redraw_net(); }, false);
}

void net_window::wheel_turned(int steps, QPointF at) {
  if (view_->has_net())
    act([&] { view_->zoom_at(steps, static_cast<float>(at.x()), static_cast<float>(at.y())); }, false);
}

void net_window::hovered(QPointF at) {
  const vertex_number node = depth_ == 0 ? view_->node_at(static_cast<float>(at.x()), static_cast<float>(at.y())) : -1;
  if (node < 1) {
    canvas_->ring_set({}, 0);
    return;
  }
  const node_elng &of = view_->net().nodes()[static_cast<std::size_t>(node)];
  canvas_->ring_set({view_->geometry().coorOnPictX_get(of.x), view_->geometry().coorOnPictY_get(of.y)},
                    std::max<double>(of.size, 4) + 4);
}

QString net_window::hint_at(QPointF at) {
  if (!may_act() || !view_->has_net()) // a command may be changing what the hint tells of
    return {};
  const auto x = static_cast<float>(at.x()), y = static_cast<float>(at.y());
  if (const vertex_number node = view_->node_at(x, y); node > 0)
    return qt_lines(hint_of_node(lent_->sources, view_->net(), node));
  return qt_lines(hint_of_edge(view_->net(), view_->edge_at(x, y)));
}

void net_window::menu_wanted(QPointF at, QPoint on_screen) {
  if (!may_act() || !view_->has_net())
    return;
  edge_of_menu_ = view_->edge_at(static_cast<float>(at.x()), static_cast<float>(at.y()));
  refresh_controls();
  menus_.at("Selection")->popup(on_screen);
}

std::int32_t net_window::edge_in_question() const {
  const class_net_elng &net = view_->net();
  if (edge_of_menu_ > 0 || net.Get_nOfSelectedNodes() != 2)
    return edge_of_menu_;
  const vertex_number a = net.selected()(1), b = net.selected()(2);
  for (std::int32_t e = 1; e <= net.n_edges_get(); ++e)
    if (const edge_elng &edge = net.edges()[static_cast<std::size_t>(e)];
        (edge.from == a && edge.to == b) || (edge.from == b && edge.to == a))
      return e;
  return -1;
}

void net_window::show_edge(std::int32_t edge) {
  if (edge < 1 || edge > view_->net().n_edges_get())
    return;
  const edge_elng &of = view_->net().edges()[static_cast<std::size_t>(edge)];
  const auto clone = [this](vertex_number n) { return view_->net().nodes()[static_cast<std::size_t>(n)].clone_id; };
  run_edge_dialog(session_, clone(of.from), clone(of.to), qt_lines(hint_of_edge(view_->net(), edge)), this);
}

} // namespace orb

// The windows that look at nets, contigs and fingerprints, for whoever opens them.
#pragma once

#include <filesystem>

class QWidget;

namespace orb {

class desktop_session;

// Each is a window of its own that deletes itself when it is closed.
// The net viewer; an empty file: without a net.
QWidget *open_net_viewer(desktop_session &session, const std::filesystem::path &net_file, QWidget *parent);
// The contig browser on a run's folder or table; empty: asks. Null when nothing was chosen, or after a message.
QWidget *open_contig_browser(desktop_session &session, const std::filesystem::path &run_or_table, QWidget *parent);
// Fingerprints of the selected clones, which it follows.
QWidget *open_lanes(desktop_session &session, QWidget *parent);

} // namespace orb

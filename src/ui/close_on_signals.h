#pragma once

#include <array>
#include <functional>
#include <memory>

#include <csignal>

class QSocketNotifier;

namespace sky::ui {

// While it lives, SIGTERM (log-out), SIGINT (Ctrl+C) and SIGHUP (a closed terminal) no longer end the
// process on the spot: the first of them calls close on the event loop's thread, as a click on the
// close button would, and puts the signals' previous handling back, so a second one ends the process
// at once. Only one may live at a time. Needs a running event loop to act.
class CloseOnSignals {
public:
    explicit CloseOnSignals(std::function<void()> close);
    ~CloseOnSignals();
    CloseOnSignals(const CloseOnSignals&) = delete;
    CloseOnSignals& operator=(const CloseOnSignals&) = delete;

private:
    void Restore();

    std::function<void()> m_close;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::array<struct sigaction, 3> m_previous{};
    bool m_installed = false;
};

} // namespace sky::ui

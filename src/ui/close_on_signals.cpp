#include "close_on_signals.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace sky::ui {
namespace {

constexpr std::array<int, 3> kSignals = {SIGTERM, SIGINT, SIGHUP};

// A signal handler may do next to nothing: it writes one byte into this pipe, and the event loop,
// which watches the other end, does the rest. It has to be reachable from the handler, hence global.
int g_pipe[2] = {-1, -1};

void OnSignal(int) {
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(g_pipe[1], &byte, 1);
    errno = saved;
}

} // namespace

CloseOnSignals::CloseOnSignals(std::function<void()> close) : m_close(std::move(close)) {
    // Without the pipe the signals keep their usual effect: the program still runs.
    if (g_pipe[0] >= 0 || pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(g_pipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] {
        char bytes[16];
        while (read(g_pipe[0], bytes, sizeof bytes) > 0) {
        }
        m_notifier->setEnabled(false);
        Restore();
        m_close();
    });
    struct sigaction action {};
    action.sa_handler = OnSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < kSignals.size(); ++i)
        sigaction(kSignals[i], &action, &m_previous[i]);
    m_installed = true;
}

CloseOnSignals::~CloseOnSignals() {
    Restore();
    if (!m_notifier)
        return; // the pipe is not this one's
    m_notifier.reset();
    for (int& end : g_pipe) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
}

void CloseOnSignals::Restore() {
    if (!m_installed)
        return;
    for (size_t i = 0; i < kSignals.size(); ++i)
        sigaction(kSignals[i], &m_previous[i], nullptr);
    m_installed = false;
}

} // namespace sky::ui

#pragma once

#include <functional>
#include <memory>

#include <QObject>
#include <QString>
#include <QThread>

#include "chart_queries.h"

namespace sky::store {

// The charts' reads on a thread of their own, with a read-only connection of its own to the history
// file, so the map never waits for them: a read is asked for, and its answer comes back on the thread
// of a context object when it is ready. Reads run one after another in the order asked. The contexts
// must outlive the reader (its owner is one): answers not yet delivered go with the context.
class ChartReader {
public:
    explicit ChartReader(QString path);
    ~ChartReader(); // lets the read under way finish, drops the others

    // Runs work on the reader's thread; hands its result to done on context's thread.
    template <typename Result>
    void Ask(std::function<Result(ChartQueries&)> work, QObject* context, std::function<void(Result)> done) {
        Run(
            [work = std::move(work), done = std::move(done)](ChartQueries& queries) -> std::function<void()> {
                auto result = std::make_shared<Result>(work(queries));
                return [done, result] { done(std::move(*result)); };
            },
            context);
    }

private:
    void Run(std::function<std::function<void()>(ChartQueries&)> work, QObject* context);

    QThread m_thread;
    QObject* m_worker = nullptr; // lives on m_thread, with the connection
};

} // namespace sky::store

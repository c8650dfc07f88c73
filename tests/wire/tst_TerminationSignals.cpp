#include "support/TestMain.h"
#include "wire/TerminationSignals.h"

#include <QSignalSpy>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>

namespace {
constexpr int MaxUnreadSignals = 65536; // as many bytes as a pipe holds

bool endsTheProcess(int signal)
{
    struct sigaction action;
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL;
}
} // namespace

class tst_TerminationSignals : public QObject
{
    Q_OBJECT

private slots:
    // The test library handles these signals itself.
    void init()
    {
        for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
            QVERIFY(::signal(number, SIG_DFL) != SIG_ERR);
        }
    }

    void a_signal_that_ends_the_process_is_announced_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("of the service") << SIGTERM;
        QTest::newRow("of the keyboard") << SIGINT;
        QTest::newRow("of a terminal that is gone") << SIGHUP;
    }

    void a_signal_that_ends_the_process_is_announced()
    {
        QFETCH(int, signal);
        QVERIFY(endsTheProcess(signal));
        {
            const TerminationSignals signalsOfProcess;
            QSignalSpy announced(&signalsOfProcess, &TerminationSignals::terminate);
            QVERIFY(!endsTheProcess(signal));
            QCOMPARE(::raise(signal), 0);
            QCOMPARE(announced.count(), 0); // not within the handler
            QTRY_COMPARE(announced.count(), 1);
            QCOMPARE(::raise(signal), 0);
            QTRY_COMPARE(announced.count(), 2);
        }
        QVERIFY(endsTheProcess(signal));
    }

    void a_signal_before_the_event_loop_runs_is_not_forgotten()
    {
        const TerminationSignals signalsOfProcess;
        QVERIFY(!signalsOfProcess.wasRaised());
        QCOMPARE(::raise(SIGTERM), 0);
        QCoreApplication::processEvents();
        QVERIFY(signalsOfProcess.wasRaised());
    }

    void what_the_signals_did_before_is_restored()
    {
        QVERIFY(::signal(SIGHUP, SIG_IGN) != SIG_ERR);
        {
            const TerminationSignals signalsOfProcess;
        }
        QCOMPARE(::raise(SIGHUP), 0);
        QVERIFY(::signal(SIGHUP, SIG_DFL) == SIG_IGN);
    }

    void more_signals_than_the_pipe_holds_neither_block_nor_change_errno()
    {
        const TerminationSignals signalsOfProcess;
        QSignalSpy announced(&signalsOfProcess, &TerminationSignals::terminate);
        errno = ENOTTY;
        for (int i = 0; i <= MaxUnreadSignals; ++i) {
            ::raise(SIGTERM);
        }
        QCOMPARE(errno, ENOTTY);
        QTRY_VERIFY(announced.count() > 0);
    }

    void without_a_pipe_the_signals_still_end_the_process()
    {
        struct rlimit limit;
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
        const struct rlimit none
        {
            0, limit.rlim_max
        };
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
        bool ends = false;
        {
            const TerminationSignals signalsOfProcess;
            ends = endsTheProcess(SIGTERM) && endsTheProcess(SIGINT) && endsTheProcess(SIGHUP);
        }
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        QVERIFY(ends);
        QVERIFY(endsTheProcess(SIGTERM));
    }
};

QN740_TEST_MAIN(tst_TerminationSignals)
#include "tst_TerminationSignals.moc"

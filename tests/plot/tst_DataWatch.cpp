#include "plot/DataWatch.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {
constexpr int LimitMs = 200;
}

class tst_DataWatch : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_watch = std::make_unique<DataWatch>(LimitMs, u"watchTimer"_s);
        m_timer = m_watch->findChild<QTimer*>(u"watchTimer"_s);
        QVERIFY(m_timer != nullptr);
    }

    void a_new_watch_expects_nothing_and_runs_no_timer()
    {
        m_watch->dataCame();
        QVERIFY(!m_watch->isExpecting() && !m_watch->isStale() && !m_timer->isActive());
    }

    void without_data_it_is_stale_after_the_limit_and_not_before()
    {
        QSignalSpy changed(m_watch.get(), &DataWatch::staleChanged);
        QElapsedTimer elapsed;
        elapsed.start();
        m_watch->setExpecting(true);
        QVERIFY(!m_watch->isStale());
        QTRY_VERIFY(m_watch->isStale());
        QVERIFY2(elapsed.elapsed() >= LimitMs, qPrintable(QString::number(elapsed.elapsed())));
        QCOMPARE(changed.count(), 1);
        QVERIFY(!m_timer->isActive());
    }

    void data_start_the_time_anew()
    {
        m_watch->setExpecting(true);
        for (int i = 0; i < 6; ++i) {
            QTest::qWait(LimitMs / 4);
            m_watch->dataCame();
            QCOMPARE(m_timer->interval(), LimitMs);
        }
        QVERIFY(!m_watch->isStale());
    }

    void data_end_it()
    {
        m_watch->setExpecting(true);
        QTRY_VERIFY(m_watch->isStale());
        QSignalSpy changed(m_watch.get(), &DataWatch::staleChanged);
        m_watch->dataCame();
        QVERIFY(!m_watch->isStale() && m_timer->isActive());
        m_watch->dataCame();
        QCOMPARE(changed.count(), 1);
        QTRY_VERIFY(m_watch->isStale());
    }

    void to_be_told_again_that_data_are_expected_changes_nothing()
    {
        m_watch->setExpecting(true);
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < 10 * LimitMs && !m_watch->isStale()) {
            QTest::qWait(LimitMs / 10);
            m_watch->setExpecting(true);
            m_watch->setPaused(false);
        }
        QVERIFY(m_watch->isStale());
        m_watch->setExpecting(true);
        QVERIFY(m_watch->isStale() && !m_timer->isActive());
    }

    void when_data_are_expected_again_the_whole_time_starts()
    {
        m_watch->setExpecting(true);
        QTRY_VERIFY(m_watch->isStale());
        QSignalSpy changed(m_watch.get(), &DataWatch::staleChanged);
        m_watch->setExpecting(false);
        QVERIFY(!m_watch->isStale() && !m_timer->isActive());
        QCOMPARE(changed.count(), 1);
        m_watch->setExpecting(true);
        QVERIFY(!m_watch->isStale());
        QCOMPARE(m_timer->interval(), LimitMs);
        QTRY_VERIFY(m_watch->isStale());
    }

    void a_pause_keeps_what_is_left_of_the_time()
    {
        m_watch->setExpecting(true);
        QTest::qWait(LimitMs / 2);
        m_watch->setPaused(true);
        QVERIFY(!m_timer->isActive());
        QTest::qWait(LimitMs);
        QVERIFY(!m_watch->isStale());
        m_watch->setPaused(false);
        QVERIFY2(
            m_timer->interval() <= LimitMs / 2, qPrintable(QString::number(m_timer->interval())));
        QTRY_VERIFY(m_watch->isStale());
    }

    void a_pause_hides_that_the_time_has_run_out_and_does_not_end_it()
    {
        m_watch->setExpecting(true);
        QTRY_VERIFY(m_watch->isStale());
        QSignalSpy changed(m_watch.get(), &DataWatch::staleChanged);
        m_watch->setPaused(true);
        QVERIFY(!m_watch->isStale());
        m_watch->setPaused(false);
        QVERIFY(m_watch->isStale());
        QCOMPARE(changed.count(), 2);
    }

    void data_during_a_pause_start_the_time_anew_behind_it()
    {
        m_watch->setExpecting(true);
        QTRY_VERIFY(m_watch->isStale());
        m_watch->setPaused(true);
        m_watch->dataCame();
        QVERIFY(!m_timer->isActive());
        m_watch->setPaused(false);
        QVERIFY(!m_watch->isStale());
        QCOMPARE(m_timer->interval(), LimitMs);
    }

    void the_whole_time_starts_behind_a_shorter_rest_data()
    {
        QTest::addColumn<bool>("byData");
        QTest::newRow("data come") << true;
        QTest::newRow("data are expected again") << false;
    }

    void the_whole_time_starts_behind_a_shorter_rest()
    {
        QFETCH(bool, byData);
        m_watch->setExpecting(true);
        QTRY_VERIFY(m_timer->remainingTime() < LimitMs - 20);
        m_watch->setPaused(true);
        m_watch->setPaused(false);
        QVERIFY(m_timer->interval() < LimitMs);
        if (byData) {
            m_watch->dataCame();
        } else {
            m_watch->setExpecting(false);
            m_watch->setExpecting(true);
        }
        QCOMPARE(m_timer->interval(), LimitMs);
    }

    void a_pause_without_expectation_runs_no_timer()
    {
        m_watch->setPaused(true);
        m_watch->setExpecting(true);
        QVERIFY(!m_timer->isActive());
        m_watch->setExpecting(false);
        m_watch->setPaused(false);
        QVERIFY(!m_timer->isActive());
    }

private:
    std::unique_ptr<DataWatch> m_watch;
    QTimer* m_timer = nullptr;
};

QN740_TEST_MAIN(tst_DataWatch)
#include "tst_DataWatch.moc"

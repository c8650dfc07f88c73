#include "support/TestMain.h"
#include "wire/DropLog.h"
#include "wire/Log.h"

#include <thread>

using namespace Qt::StringLiterals;

namespace {
QStringList logged;

void keep(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    logged +=
        QString::fromLatin1(context.category) + (type == QtWarningMsg ? u": "_s : u"? "_s) + text;
}
} // namespace

class tst_DropLog : public QObject
{
    Q_OBJECT

private slots:
    void init() { logged.clear(); }

    void the_first_is_logged_at_once_and_the_next_after_a_minute_with_their_number()
    {
        const QtMessageHandler before = qInstallMessageHandler(keep);
        DropLog log(&logMenus, u"too many keys"_s);
        log.add(5);
        log.add(6);
        log.add(5 + DropLog::IntervalMs - 1);
        QCOMPARE(logged, QStringList{u"qn740.menus: too many keys"_s});
        log.add(5 + DropLog::IntervalMs);
        QCOMPARE(logged.size(), 2);
        QCOMPARE(logged.at(1), u"qn740.menus: too many keys (3 times)"_s);
        log.add(5 + 3 * DropLog::IntervalMs);
        qInstallMessageHandler(before);
        QCOMPARE(logged.size(), 3);
        QCOMPARE(logged.at(2), u"qn740.menus: too many keys"_s);
    }

    void what_is_dropped_within_the_minute_is_logged_at_its_end()
    {
        constexpr int IntervalMs = 50;
        const QtMessageHandler before = qInstallMessageHandler(keep);
        DropLog log(&logMenus, u"too many keys"_s, IntervalMs);
        log.add();
        log.add();
        log.add();
        const QStringList atOnce = logged;
        const bool isLater = QTest::qWaitFor([] { return logged.size() == 2; });
        QTest::qWait(2 * IntervalMs); // nothing follows
        qInstallMessageHandler(before);
        QVERIFY(isLater);
        QCOMPARE(atOnce, QStringList{u"qn740.menus: too many keys"_s});
        QCOMPARE(logged,
            QStringList(
                {u"qn740.menus: too many keys"_s, u"qn740.menus: too many keys (2 times)"_s}));
    }

    void what_is_logged_after_a_minute_is_not_logged_again_at_its_end()
    {
        constexpr int IntervalMs = 50;
        const QtMessageHandler before = qInstallMessageHandler(keep);
        DropLog log(&logMenus, u"too many keys"_s, IntervalMs);
        log.add(0);
        log.add(1);
        log.add(IntervalMs);
        QTest::qWait(2 * IntervalMs); // nothing follows
        qInstallMessageHandler(before);
        QCOMPARE(logged,
            QStringList(
                {u"qn740.menus: too many keys"_s, u"qn740.menus: too many keys (2 times)"_s}));
    }

    void a_thread_without_an_event_loop_logs_the_rest_at_the_end()
    {
        const QtMessageHandler before = qInstallMessageHandler(keep);
        std::thread([] {
            DropLog log(&logMenus, u"too many keys"_s);
            for (int times = 0; times < 3; ++times) {
                log.add();
            }
        }).join();
        qInstallMessageHandler(before);
        QCOMPARE(logged,
            QStringList(
                {u"qn740.menus: too many keys"_s, u"qn740.menus: too many keys (2 times)"_s}));
    }

    void what_is_not_logged_yet_is_logged_at_the_end()
    {
        const QtMessageHandler before = qInstallMessageHandler(keep);
        {
            DropLog log(&logMenus, u"too many keys"_s);
            log.add();
            log.add();
        }
        {
            const DropLog silent(&logMenus, u"nothing"_s);
        }
        qInstallMessageHandler(before);
        QCOMPARE(logged,
            QStringList({u"qn740.menus: too many keys"_s, u"qn740.menus: too many keys"_s}));
    }

    void the_clock_is_that_of_the_system_when_none_is_given()
    {
        const QtMessageHandler before = qInstallMessageHandler(keep);
        DropLog log(&logLink, u"too long"_s);
        for (int i = 0; i < 1000; ++i) {
            log.add();
        }
        qInstallMessageHandler(before);
        QCOMPARE(logged, QStringList{u"qn740.link: too long"_s});
    }
};

QN740_TEST_MAIN(tst_DropLog)
#include "tst_DropLog.moc"

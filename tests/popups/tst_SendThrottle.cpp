#include "popups/SendThrottle.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_SendThrottle : public QObject
{
    Q_OBJECT

private slots:
    void the_first_message_is_sent_at_once()
    {
        SendThrottle throttle;
        QVERIFY(!throttle.isWaiting());
        QCOMPARE(throttle.offer(u"1"_s), std::optional<QString>(u"1"_s));
        QVERIFY(throttle.isWaiting());
    }

    void only_the_last_message_offered_meanwhile_is_sent()
    {
        SendThrottle throttle;
        throttle.offer(u"1"_s);
        for (int i = 2; i <= 10; ++i) {
            QCOMPARE(throttle.offer(QString::number(i)), std::nullopt);
        }
        QCOMPARE(throttle.expired(), std::optional<QString>(u"10"_s));
    }

    void a_late_message_makes_the_next_one_wait_too()
    {
        SendThrottle throttle;
        throttle.offer(u"1"_s);
        throttle.offer(u"2"_s);
        throttle.expired();
        QVERIFY(throttle.isWaiting());
        QCOMPARE(throttle.offer(u"3"_s), std::nullopt);
        QCOMPARE(throttle.expired(), std::optional<QString>(u"3"_s));
    }

    void no_message_is_sent_twice()
    {
        SendThrottle throttle;
        throttle.offer(u"1"_s);
        throttle.offer(u"2"_s);
        throttle.offer(u"1"_s);
        QCOMPARE(throttle.expired(), std::nullopt);
        QVERIFY(!throttle.isWaiting());
    }

    void after_a_pause_the_next_message_is_sent_at_once()
    {
        SendThrottle throttle;
        throttle.offer(u"1"_s);
        throttle.expired();
        QCOMPARE(throttle.offer(u"2"_s), std::optional<QString>(u"2"_s));
    }
};

QN740_TEST_MAIN(tst_SendThrottle)
#include "tst_SendThrottle.moc"

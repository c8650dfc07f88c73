// What a bus makes of the bytes that come from the card.
#include "spectrum/BusFixture.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_BusReplies : public QObject, private BusFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void a_spectrum_is_received_data()
    {
        QTest::addColumn<bool>("k7150");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("data");
        QByteArray all;
        for (int byte = 0; byte < 256; ++byte) {
            all += static_cast<char>(byte);
        }
        QTest::newRow("decimal") << false << cardSide::spectrum(all) << all;
        QTest::newRow("decimal after ten bytes of noise")
            << false << "0123456789" + cardSide::spectrum(all) << all;
        QTest::newRow("K7150") << true << cardSide::k7150Spectrum(2, all) << '\x02' + all;
        QTest::newRow("K7150 after noise")
            << true << "[[]0123456" + cardSide::k7150Spectrum(0, all) << QByteArray(1, '\0') + all;
    }

    void a_spectrum_is_received()
    {
        QFETCH(bool, k7150);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, data);
        m_bus->setIsK7150Type(k7150);
        m_bus->sendMessage(u"0190RFFT"_s);
        QTRY_VERIFY(!m_card->received().isEmpty());
        m_card->write(bytes);
        QTRY_COMPARE(m_received->count(), 1);
        const auto message = m_received->at(0).at(0).value<CmdMsg>();
        QCOMPARE(message.data.toLatin1(), data);
        QCOMPARE(message.command, u"RFFT"_s);
        QCOMPARE(message.addressValue, 190);
    }

    void a_reply_travels_in_a_queued_signal_too()
    {
        QVERIFY(QMetaType::fromName("CmdMsg").isValid());
        QList<CmdMsg> taken;
        connect(
            m_bus.get(), &Rs422Bus::messageReceived, this,
            [&taken](const CmdMsg& message) { taken += message; }, Qt::QueuedConnection);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(taken.size(), 1);
        QCOMPARE(taken.first().data, u"name"_s);
        QCOMPARE(taken.first().addressValue, 190);
    }

    void a_spectrum_split_across_reads_is_assembled()
    {
        const QByteArray reply = cardSide::spectrum(QByteArray(600, 'p'));
        m_bus->sendMessage(u"0190RFFT"_s, Long);
        for (const QByteArray& part : {reply.left(4), reply.mid(4, 7), reply.mid(11, 300)}) {
            QVERIFY(m_card->writeUntilRead(part));
            QCOMPARE(m_received->count(), 0);
        }
        m_card->write(reply.mid(311));
        QTRY_COMPARE(m_received->count(), 1);
        QCOMPARE(m_received->at(0).at(0).value<CmdMsg>().data.size(), 600);
    }

    void a_spectrum_advances_the_queue_at_once()
    {
        m_bus->sendMessage(u"first"_s, 10000);
        m_bus->sendMessage(u"second"_s, 10000);
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
    }

    void a_text_reply_does_not_advance_the_queue()
    {
        m_bus->sendMessage(u"first"_s, Long);
        m_bus->sendMessage(u"second"_s, Long);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        QCOMPARE(m_bus->txCount(), 1);
        // The reply timer advances it.
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        QCOMPARE(m_lost->count(), 0);
    }

    void a_request_queued_after_a_text_reply_goes_out_at_once()
    {
        m_bus->sendMessage(u"first"_s, 10000);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        m_bus->sendMessage(u"second"_s);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
    }

    void a_second_text_reply_in_the_same_read_is_lost()
    {
        m_bus->sendMessage(u"first"_s, 10000);
        m_card->write(cardSide::text("RNME", "a") + cardSide::text("RVER", "b"));
        QTRY_COMPARE(m_received->count(), 1);
        QTest::qWait(50);
        QCOMPARE(m_received->count(), 1);
        QCOMPARE(m_received->at(0).at(0).value<CmdMsg>().data, u"a"_s);
    }

    void a_reply_of_another_address_ends_the_transaction_too()
    {
        m_bus->sendMessage(u"0190RNME"_s, Long);
        m_card->write(cardSide::text("RNME", "x", "AB90"));
        QTRY_COMPARE(m_received->count(), 1);
        const auto message = m_received->at(0).at(0).value<CmdMsg>();
        QCOMPARE(message.addressValue, -1);
        QCOMPARE(message.getChannelAddressInt(), 0);
        QCOMPARE(message.getCardAddressInt(), -1);
        testClock::expire(m_bus.get());
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_lost->count(), 0);
    }

    void what_the_owner_queues_on_a_text_reply_waits_for_the_timer()
    {
        connect(m_bus.get(), &Rs422Bus::messageReceived, m_bus.get(),
            [this] { m_bus->sendMessage(u"second"_s); });
        m_bus->sendMessage(u"first"_s, Long);
        m_card->write(cardSide::text("RNME", "a"));
        QTRY_COMPARE(m_received->count(), 1);
        QCOMPARE(m_bus->txCount(), 1);
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
    }

    void a_reply_without_a_request_is_passed_on_and_ends_nothing()
    {
        m_card->write(cardSide::text("RNME", "a"));
        QTRY_COMPARE(m_received->count(), 1);
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_received->count(), 2);
        QCOMPARE(timers(m_bus.get()), 0);
        m_bus->sendMessage(u"first"_s, Long);
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
    }

    void a_request_sent_on_a_reply_without_a_request_is_tracked()
    {
        bool once = true;
        connect(m_bus.get(), &Rs422Bus::messageReceived, m_bus.get(), [this, &once] {
            if (std::exchange(once, false)) {
                m_bus->sendMessage(u"first"_s, Long);
                m_bus->sendMessage(u"second"_s, Long);
            }
        });
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 2);
    }

    void the_bus_may_be_closed_and_deleted_in_a_reply()
    {
        Rs422Bus* bus = m_bus.release();
        connect(bus, &Rs422Bus::messageReceived, bus, [bus] {
            bus->close();
            bus->deleteLater();
        });
        const QPointer<Rs422Bus> watch(bus);
        bus->sendMessage(u"first"_s);
        m_card->write(cardSide::spectrum("x") + "more");
        QTRY_VERIFY(watch.isNull());
    }

    void noise_while_idle_does_not_hide_a_later_reply()
    {
        for (int i = 0; i < 40; ++i) {
            QVERIFY(m_card->write(QByteArray(8000, '[')));
        }
        m_bus->sendMessage(u"first"_s);
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_received->count(), 1);
    }
};

QN740_TEST_MAIN(tst_BusReplies)
#include "tst_BusReplies.moc"

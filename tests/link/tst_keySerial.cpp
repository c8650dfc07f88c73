#include "link/keySerial.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_keySerial : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(u"ttyO1"_s);
        m_serial = std::make_unique<keySerial>();
        m_messages.clear();
        connect(m_serial.get(), &keySerial::valid_mess_in, this,
            [this](const QString& message) { m_messages += message; });
    }

    void cleanup()
    {
        m_serial.reset();
        m_devices.reset();
    }

    void a_new_link_has_no_port_and_no_name()
    {
        QVERIFY(m_serial->port() == nullptr);
        QVERIFY(m_serial->name().isEmpty());
        m_serial->serial_data_in();
        QVERIFY(m_messages.isEmpty());
    }

    void the_line_is_opened_with_the_settings_of_the_main_unit()
    {
        m_serial->check_serial();
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QCOMPARE(m_serial->name(), u"ttyO1"_s);
        QCOMPARE(m_serial->port()->baudRate(), 115200);
        QCOMPARE(m_serial->port()->dataBits(), QSerialPort::Data8);
        QCOMPARE(m_serial->port()->parity(), QSerialPort::NoParity);
        QCOMPARE(m_serial->port()->stopBits(), QSerialPort::OneStop);
        QCOMPARE(m_serial->port()->flowControl(), QSerialPort::NoFlowControl);
        QCOMPARE(m_serial->port()->readBufferSize(), qint64(1 << 20));
    }

    void an_absent_line_is_reported_by_the_result_and_one_warning()
    {
        m_devices->remove(u"ttyO1"_s);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was not opened: ."_s));
        QVERIFY(!m_serial->open_serial(u"ttyO1"_s));
        QVERIFY(!m_serial->isOpen());
        QCOMPARE(m_serial->name(), u"ttyO1"_s);
    }

    void opening_and_losing_the_line_is_announced()
    {
        QList<bool> states;
        connect(
            m_serial.get(), &keySerial::openChanged, this, [&] { states += m_serial->isOpen(); });
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QCOMPARE(states, QList<bool>{true});
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost: "_s));
        m_pty->close();
        QTRY_COMPARE(states, (QList<bool>{true, false}));
    }

    void bytes_are_announced_whatever_they_are_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("a message") << framed("PING");
        QTest::newRow("half a message") << QByteArray("\x02PI");
        QTest::newRow("noise") << QByteArray("x");
    }

    void bytes_are_announced_whatever_they_are()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        const QSignalSpy received(m_serial.get(), &keySerial::bytesReceived);
        m_serial->serial_data_in();
        QCOMPARE(received.size(), 0);
        QVERIFY(m_pty->write(bytes));
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(m_serial->unread(), qint64(0));
    }

    void a_frame_in_pieces_is_one_message()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        m_pty->write("\x02PI");
        QTest::qWait(50);
        QVERIFY(m_messages.isEmpty());
        m_pty->write("NG\x04");
        QTRY_COMPARE(m_messages, QStringList{u"\x02PING\x04"_s});
    }

    void bytes_are_latin_1()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        m_pty->write("\x02\xe9\x80\xff\x04");
        QTRY_COMPARE(m_messages.size(), 1);
        QCOMPARE(m_messages.first(), QString::fromLatin1("\x02\xe9\x80\xff\x04"));
    }

    void all_byte_values_inside_a_frame_are_kept()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QByteArray body;
        for (int i = 0; i < 256; ++i) {
            if (i != 4) {
                body += static_cast<char>(i);
            }
        }
        m_pty->write(framed(body));
        QTRY_COMPARE(m_messages.size(), 1);
        QCOMPARE(m_messages.first().toLatin1(), framed(body));
    }

    void a_burst_of_5000_frames_is_handled_in_order_with_nothing_left()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QByteArray burst;
        for (int i = 0; i < 5000; ++i) {
            burst += framed("SB,0,message number " + QByteArray::number(i));
        }
        QVERIFY(m_pty->write(burst));
        QTRY_COMPARE_WITH_TIMEOUT(m_messages.size(), 5000, 30000);
        for (int i = 0; i < 5000; ++i) {
            QCOMPARE(m_messages.at(i), u"\x02SB,0,message number %1\x04"_s.arg(i));
        }
        QCOMPARE(m_serial->port()->bytesAvailable(), qint64(0));
    }

    void a_read_takes_1024_bytes_and_the_rest_follows_by_itself()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        // The port holds more than one read before the first turn.
        disconnect(m_serial->port(), &QSerialPort::readyRead, nullptr, nullptr);
        const QByteArray frame = framed(QByteArray(98, 'x'));
        for (int i = 0; i < 30; ++i) {
            m_pty->write(frame);
        }
        QTRY_COMPARE(m_serial->port()->bytesAvailable(), qint64(3000));
        m_serial->serial_data_in();
        QCOMPARE(m_serial->port()->bytesAvailable(), qint64(3000 - 1024));
        QCOMPARE(m_messages.size(), 10);
        QTRY_COMPARE(m_messages.size(), 30);
        QCOMPARE(m_serial->port()->bytesAvailable(), qint64(0));
        const QSignalSpy turns(m_serial.get(), &keySerial::turnEnded);
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::processEvents();
        }
        QCOMPARE(turns.size(), 0); // there is nothing left for one
    }

    void turns_that_are_asked_for_meanwhile_are_not_taken_once_more()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        disconnect(m_serial->port(), &QSerialPort::readyRead, nullptr, nullptr);
        const QByteArray frame = framed(QByteArray(98, 'x'));
        for (int i = 0; i < 30; ++i) {
            m_pty->write(frame);
        }
        QTRY_COMPARE(m_serial->port()->bytesAvailable(), qint64(3000));
        const QSignalSpy turns(m_serial.get(), &keySerial::turnEnded);
        m_serial->serial_data_in();
        m_serial->serial_data_in();
        QCOMPARE(m_messages.size(), 20);
        QTRY_COMPARE(m_messages.size(), 30);
        QCoreApplication::processEvents();
        QCOMPARE(turns.size(), 3);
    }

    void a_handler_that_runs_an_event_loop_gets_each_message_once_and_in_order()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QStringList entered;
        int depth = 0;
        int deepest = 0;
        connect(m_serial.get(), &keySerial::valid_mess_in, this, [&](const QString& message) {
            entered += message;
            deepest = qMax(deepest, ++depth);
            if (entered.size() == 1) {
                m_pty->write(framed("third")); // while the first is handled
                QEventLoop editor;
                QTimer::singleShot(200, &editor, &QEventLoop::quit);
                editor.exec();
            }
            --depth;
        });
        m_pty->write(framed("first") + framed("second"));
        QTRY_COMPARE(entered,
            (QStringList{u"\x02"_s
                         u"first\x04"_s,
                u"\x02second\x04"_s, u"\x02third\x04"_s}));
        QCOMPARE(deepest, 1);
    }

    void a_handler_in_a_queued_turn_is_not_entered_twice_either()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QStringList entered;
        int depth = 0;
        int deepest = 0;
        connect(m_serial.get(), &keySerial::valid_mess_in, this, [&](const QString& message) {
            entered += message.left(8);
            deepest = qMax(deepest, ++depth);
            if (entered.size() == 2) {
                m_pty->write(framed("third"));
                QEventLoop editor;
                QTimer::singleShot(200, &editor, &QEventLoop::quit);
                editor.exec();
            }
            --depth;
        });
        // The first frame fills a whole read; the second waits for the queued turn, in which the
        // port announces new bytes also to an event loop inside the handler.
        m_pty->write(framed(QByteArray(1022, 'x')) + framed("second"));
        QTRY_COMPARE(
            entered, (QStringList{u"\x02xxxxxxx"_s, u"\x02second\x04"_s, u"\x02third\x04"_s}));
        QCOMPARE(deepest, 1);
    }

    void a_frame_of_200_kB_without_an_end_waits_and_is_then_one_message()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        const QByteArray body(200 * 1024, 'x');
        QVERIFY(m_pty->write('\x02' + body));
        QVERIFY(m_messages.isEmpty());
        QVERIFY(m_pty->write("\x04"));
        QTRY_COMPARE_WITH_TIMEOUT(m_messages.size(), 1, 30000);
        QCOMPARE(m_messages.first().size(), body.size() + 2);
    }

    void a_lost_line_is_closed_and_stays_closed()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost"_s));
        m_pty->close();
        QTRY_VERIFY(!m_serial->port()->isOpen());
        m_devices->add(u"ttyO1"_s);
        QTest::qWait(2500);
        QVERIFY(!m_serial->port()->isOpen());
    }

    void what_came_before_the_line_was_lost_is_still_handled()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        // The bytes are still in the port when the other end is closed.
        disconnect(m_serial->port(), &QSerialPort::readyRead, nullptr, nullptr);
        QByteArray sent;
        for (int i = 0; i < 30; ++i) {
            sent += framed(QByteArray::number(i).rightJustified(98, 'x'));
        }
        m_pty->write(sent);
        QTRY_COMPARE(m_serial->port()->bytesAvailable(), qint64(3000));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost"_s));
        m_pty->close();
        QTRY_VERIFY(!m_serial->port()->isOpen());
        QTRY_COMPARE(m_messages.size(), 30);
        QCOMPARE(m_messages.join(QString()), QString::fromLatin1(sent));
    }

    void a_line_that_is_lost_while_a_message_is_handled_is_read_to_its_end()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        connect(m_serial.get(), &keySerial::valid_mess_in, this, [&] {
            if (m_messages.size() == 1) {
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost"_s));
                QTRY_COMPARE(m_serial->port()->bytesAvailable(), qint64(3000));
                m_pty->close();
                QTRY_VERIFY(!m_serial->port()->isOpen());
                QCOMPARE(m_messages.size(), 1);
            }
        });
        m_pty->write(framed(QByteArray(1022, 'x')) + framed(QByteArray(98, 'x')).repeated(30));
        QTRY_COMPARE(m_messages.size(), 31);
    }

private:
    std::unique_ptr<DeviceDirectory> m_devices;
    std::unique_ptr<keySerial> m_serial;
    Pty* m_pty = nullptr;
    QStringList m_messages;
};

QN740_TEST_MAIN(tst_keySerial)
#include "tst_keySerial.moc"

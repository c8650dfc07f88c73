#include "app/Dispatcher.h"
#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "app/SlotTable.h"
#include "link/LinkControl.h"
#include "link/keySerial.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/Pty.h"
#include "support/TestMain.h"
#include "wire/Commands.h"

using namespace Qt::StringLiterals;

class tst_Dispatcher : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(u"ttyO1"_s);
        m_window = std::make_unique<MainWindow>();
    }

    void cleanup()
    {
        m_window.reset();
        m_devices.reset();
    }

    void the_table_has_all_words_in_their_order()
    {
        QCOMPARE(Dispatcher(slotTable(*m_window)).words(),
            (QStringList{u"AK"_s, u"SK"_s, u"CK"_s, u"CV"_s, u"CM"_s, u"SB"_s, u"DB"_s, u"PING"_s,
                u"Slave"_s, u"SQ"_s, u"SM"_s, u"VER"_s, u"SH"_s, u"MS"_s, u"PAX"_s, u"LC"_s,
                u"EI"_s, u"SP"_s, u"IK"_s, u"SF"_s, u"HM"_s, u"ST"_s, u"PM"_s, u"CLEAR"_s}));
    }

    void words_match_exactly_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("known");
        QTest::newRow("PING") << "\x02PING\x04" << true;
        QTest::newRow("AK without a field") << "\x02"
                                               "AK\x04"
                                            << true;
        QTest::newRow("lower case") << "\x02"
                                       "ak\x04"
                                    << false;
        QTest::newRow("a blank in front") << "\x02 PING\x04" << false;
        QTest::newRow("junk in front") << "x\x02PING\x04" << false;
        QTest::newRow("unknown") << "\x02XY,1\x04" << false;
        QTest::newRow("empty body") << "\x02\x04" << false;
        QTest::newRow("one character") << "\x04" << false;
        QTest::newRow("nothing") << "" << false;
    }

    void words_match_exactly()
    {
        QFETCH(QString, message);
        QTEST(Dispatcher(slotTable(*m_window)).dispatch(message), "known");
    }

    void queries_are_answered_over_the_line_data()
    {
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("PING") << framed("PING") << framed("PONG");
        QTest::newRow("PING with fields") << framed("PING,1,2") << framed("PONG");
        QTest::newRow("VER has no command word") << framed("VER") << framed("1.1.6.4");
    }

    void queries_are_answered_over_the_line()
    {
        QFETCH(QByteArray, query);
        QFETCH(QByteArray, answer);
        m_pty->takeReceived();
        m_pty->write(query);
        QTRY_COMPARE(m_pty->received(), answer);
    }

    void unknown_and_malformed_messages_get_no_answer()
    {
        m_pty->takeReceived();
        m_pty->write("\x02ping\x04\x02\x04\x04junk\x02XX,,,\x04xy\x02PING\x04" + framed("VER"));
        QTRY_COMPARE(m_pty->received(), framed("1.1.6.4"));
    }

    void short_lists_and_empty_fields_are_harmless()
    {
        m_pty->takeReceived();
        for (const QString& word : Dispatcher(slotTable(*m_window)).words()) {
            for (const char* fields : {"", ",", ",,", ",,,,,,,,,,,,", ",abc", ",1", ",1,x,y"}) {
                // These words open editors and boxes, or answer by themselves.
                if (word != u"IK"_s && word != u"DB"_s && word != u"Slave"_s) {
                    QVERIFY(m_pty->write(framed(word.toLatin1() + fields)));
                }
            }
        }
        m_pty->takeReceived();
        m_pty->write(framed("VER,end"));
        QTRY_VERIFY(m_pty->received().endsWith(framed("1.1.6.4")));
    }

    void every_message_is_widened_for_the_link_mode_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("sent");
        QTest::newRow("none") << 0 << framed("D2:FREQ R1:AGC");
        QTest::newRow("diversity") << 1 << framed("D1 D2 D3:FREQ R1 R2:AGC");
        QTest::newRow("frequency diversity") << 2 << framed("D1 D2 D3:FREQ R1:AGC");
    }

    void every_message_is_widened_for_the_link_mode()
    {
        QFETCH(int, mode);
        m_window->rooms().link->setMode(mode);
        m_pty->takeReceived();
        m_window->send_mess(u"\x02"_s
                            u"D2:FREQ R1:AGC\x04"_s);
        QTEST(waitForBytes(), "sent");
    }

    void bytes_go_out_as_latin_1()
    {
        m_pty->takeReceived();
        m_window->send_mess(QString::fromLatin1("\x02\xe9\xff\x04"));
        QCOMPARE(waitForBytes(), QByteArray("\x02\xe9\xff\x04"));
    }

    void sending_on_a_lost_line_is_ignored()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost"_s));
        m_pty->close();
        QTRY_VERIFY(!m_window->rooms().link->serial()->port()->isOpen());
        m_window->send_mess(u"\x02Main\x04"_s);
        QVERIFY(!m_window->rooms().link->serial()->port()->isOpen());
    }

    void unsent_answers_are_limited_when_the_unit_never_reads()
    {
        QByteArray burst;
        for (int i = 0; i < 1000; ++i) {
            burst += framed("PING");
        }
        // The panel writes 300,000 answers of 6 bytes, and the test reads none of them.
        for (int i = 0; i < 300; ++i) {
            QVERIFY(m_pty->write(burst));
        }
        QTRY_VERIFY_WITH_TIMEOUT(
            m_window->rooms().link->serial()->port()->bytesToWrite() > (1 << 20) - 6, 60000);
        QVERIFY(m_window->rooms().link->serial()->port()->bytesToWrite() <= (1 << 20) + 6);
    }

    void clear_deletes_every_menu()
    {
        m_window->process_mess(u"\x02"_s
                               u"AK,M,k,L,5,C,,0,,0,0,1\x04"_s);
        const QPointer<KeyBoard> menu = m_window->rooms().menus->book.find(u"M"_s);
        const QPointer<Key> key = menu->keys.first();
        const QPointer<QPushButton> button = menu->buttons.first();
        const QPointer<QGroupBox> frame = menu->frame;
        m_window->process_mess(u"\x02"_s
                               u"CLEAR\x04"_s);
        QVERIFY(m_window->rooms().menus->book.pages.isEmpty());
        QTRY_VERIFY(menu == nullptr && key == nullptr && button == nullptr && frame == nullptr);
    }

    void clear_and_new_menus_in_one_write_show_the_right_pages()
    {
        const auto menus = [](const char* round) {
            QByteArray bytes;
            for (const char* name : {"A", "B", "C"}) {
                bytes += framed(QByteArray("AK,") + name + ",k," + name + round + ",5,X,,0,,0,0,1");
            }
            return bytes;
        };
        m_window->show();
        m_pty->write(menus("1") + framed("SK,B"));
        QTRY_COMPARE(shownKey(), u"B1"_s);
        m_pty->write(framed("CLEAR") + menus("2") + framed("SK,C"));
        QTRY_COMPARE(shownKey(), u"C2"_s);
        QTRY_COMPARE(m_window->rooms().stack->count(),
            5); // the waiting page, the scopes and the three menus
        m_pty->write(framed("SK,A"));
        QTRY_COMPARE(shownKey(), u"A2"_s);
        for (const KeyBoard* menu : m_window->rooms().menus->book.pages) {
            QCOMPARE(m_window->rooms().stack->widget(menu->stackIndex), menu->frame.data());
        }
    }

    void every_word_of_the_table_has_its_slot()
    {
        QStringList words = Dispatcher(slotTable(*m_window)).words();
        QCOMPARE(words.size(), wire::toPanel().size());
        for (const wire::Command& command : wire::toPanel()) {
            QCOMPARE(words.removeAll(command.word), 1);
        }
    }

    void an_ignored_message_is_logged_with_the_reason_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("logged");
        const auto row = [](const char* message, const char* logged) {
            QTest::newRow(message) << QString::fromUtf8(message) << QString::fromUtf8(logged);
        };
        row("AK,M,k,L,5,C,,0,,0", "qn740.menus AK: 9 fields, needs 11");
        row("SK,Nowhere", "qn740.menus SK: no menu Nowhere");
        row("SK", "qn740.menus SK: 0 fields, needs 1");
        row("CV,Nowhere,k,1,1", "qn740.menus CV: no menu Nowhere");
        row("CK,Loading,k,1", "qn740.menus CK: no key k");
        row("EI,Loading,k,1", "qn740.menus EI: no key k");
        row("CM", "qn740.menus CM: 0 fields, needs 1");
        row("CM,", "qn740.menus CM: the main menu must be a name, not \"\"");
        row("MS", "qn740.menus MS: 0 fields, needs 1");
        row("MS,,Loading,k", "qn740.menus MS: the main menu must be a name, not \"\"");
        row("MS,PAX", ""); // makes the menu
        row("MS,PAX,Loading", "qn740.menus MS: 2 fields, needs 3");
        row("MS,PAX,Nowhere,k", "qn740.menus MS: no menu Nowhere");
        row("CM,Main,Loading,k", "qn740.menus CM: no key k");
        row("EI,Loading,k", "qn740.menus EI: 2 fields, needs 3");
        row("IK,L,x,C,,0,", "qn740.menus IK: the key type must be a whole number, not \"x\"");
        row("PAX,2", "qn740.menus PAX: neither 0 nor 1");
        row("PAX,1", "qn740.menus PAX: no PAX main menu");
        row("Slave,7", "qn740.link Slave: no link mode 7");
        row("Slave,x", "qn740.link Slave: the link mode must be a whole number, not \"x\"");
        row("DB", "qn740.link DB: 0 fields, needs 1");
        row("SQ,4,1", "qn740.scopes SQ: no demodulator 4");
        row("SM,1,9", "qn740.scopes SM: no mode 9");
        row("PM,1,2", "qn740.scopes PM: 2 fields, needs 3");
        row("LC,1", "qn740.spectrum LC: no spectrum yet");
        row("LC,9,1", "qn740.spectrum LC: no colour 9");
        row("LC,1,4", "qn740.spectrum LC: no trace 4");
        row("LC,1,1", ""); // the scope takes it
        row("SM,5,1", "qn740.scopes SM: no demodulator 5");
        row("SM,1,x", "qn740.scopes SM: the mode must be a whole number, not \"x\"");
        row("SF,0,70", "qn740.spectrum SF: no spectrum yet");
        row("ST", "qn740.spectrum ST: 0 fields, needs 1");
        row("SB,x,Text", "qn740.link SB: the time must be a whole number, not \"x\"");
        row("Foo", "qn740.link unknown word Foo");
        row("SK,Loading", ""); // carried out
        row("SB,0,Text", "");
    }

    void an_ignored_message_is_logged_with_the_reason()
    {
        QFETCH(QString, message);
        QFETCH(QString, logged);
        static QStringList lines;
        lines.clear();
        QLoggingCategory::setFilterRules(u"qn740.*.debug=true"_s);
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext& context, const QString& text) {
                lines += QString::fromUtf8(context.category) + u' ' + text;
            });
        m_window->process_mess(u'\x02' + message + u'\x04');
        qInstallMessageHandler(before);
        QLoggingCategory::setFilterRules(u""_s);
        QCOMPARE(lines.join(u'|'), logged);
    }

    void the_debug_log_can_be_read_back()
    {
        QLoggingCategory::setFilterRules(u"qn740.link.debug=true"_s);
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(u"^\\d+\\.\\d{3} in \\\\x02PING\\\\x04$"_s));
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(u"^\\d+\\.\\d{3} out \\\\x02PONG\\\\x04$"_s));
        m_pty->write(framed("PING"));
        QTRY_VERIFY(m_pty->received().contains(framed("PONG")));
        QLoggingCategory::setFilterRules(u""_s);
    }

private:
    QByteArray waitForBytes()
    {
        [this] { QTRY_VERIFY(m_pty->received().endsWith('\x04')); }();
        return m_pty->received();
    }

    QString shownKey() const
    {
        for (const QPushButton* button :
            m_window->rooms().stack->currentWidget()->findChildren<QPushButton*>()) {
            if (button->isVisible()) {
                return button->text();
            }
        }
        return {};
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_pty = nullptr;
    std::unique_ptr<MainWindow> m_window;
};

QN740_TEST_MAIN(tst_Dispatcher)
#include "tst_Dispatcher.moc"

// What a line can make the panel keep is bounded. Each test goes up to one of the limits that
// docs/reliability.md lists, and past it. Limits that tests of their own class reach are not
// repeated here.
#include "app/Dispatcher.h"
#include "app/Limits.h"
#include "app/StatusBar.h"
#include "link/FrameCutter.h"
#include "link/Limits.h"
#include "link/LinkControl.h"
#include "link/ResendCutter.h"
#include "link/keySerial.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "popups/Limits.h"
#include "popups/NumberRanges.h"
#include "spectrum/Clock.h"
#include "spectrum/LevelMarkers.h"
#include "spectrum/Limits.h"
#include "spectrum/Rs422Bus.h"
#include "support/Pty.h"
#include "support/TestMain.h"
#include "wire/Limits.h"
#include "wire/Message.h"

#include <qcustomplot.h>

using namespace Qt::StringLiterals;

namespace {

QStringList warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtWarningMsg) {
        warnings += text;
    }
}

QStringList keyFields(const QString& menu, int key, const QString& options = {})
{
    return {menu, QString::number(key), u"L"_s, u"0"_s, u"C:"_s, {}, u"0"_s, options, u"0"_s,
        u"0"_s, u"1"_s};
}

} // namespace

class tst_Limits : public QObject
{
    Q_OBJECT

    qsizetype keyCount() const
    {
        qsizetype count = 0;
        for (const KeyBoard* menu : std::as_const(m_menus->book.pages)) {
            count += menu->keys.size();
        }
        return count;
    }

private slots:
    void init()
    {
        warnings.clear();
        m_before = qInstallMessageHandler(keepWarnings);
        m_area = std::make_unique<QWidget>();
        m_menus = std::make_unique<MenuMessages>(new QStackedLayout(m_area.get()));
    }

    void cleanup()
    {
        m_menus.reset();
        m_area.reset();
        qInstallMessageHandler(m_before);
    }

    void a_message_without_an_end_is_dropped_when_it_is_too_long()
    {
        constexpr qsizetype Piece = qsizetype{1} << 20;
        FrameCutter cutter;
        cutter.append(QString(wire::Stx) + QString(Piece - 1, u'a'));
        for (qsizetype size = Piece; size < linkLimits::MaxMessage; size += Piece) {
            QVERIFY(!cutter.next());
            cutter.append(QString(Piece, u'a'));
        }
        QVERIFY(!cutter.next());
        QCOMPARE(cutter.rest().size(), linkLimits::MaxMessage);
        cutter.append(u"a"_s);
        QVERIFY(!cutter.next());
        QCOMPARE(cutter.rest(), QString());
        QCOMPARE(warnings,
            QStringList{u"16777216 characters without the end of a message were dropped"_s});
        cutter.append(u"more of it\x04"_s);
        QVERIFY(!cutter.next());
        cutter.append(wire::frame(u"PING"_s));
        QCOMPARE(*cutter.next(), wire::frame(u"PING"_s));
    }

    void the_longest_message_is_handed_on()
    {
        FrameCutter cutter;
        const QString message = wire::frame(QString(linkLimits::MaxMessage - 2, u'a'));
        cutter.append(message.chopped(1));
        QVERIFY(!cutter.next());
        cutter.append(message.right(1));
        QVERIFY(*cutter.next() == message);
        QCOMPARE(warnings, QStringList());
    }

    void fields_beyond_the_limit_are_dropped()
    {
        const auto message = [](qsizetype commas) {
            return wire::frame(u"W"_s + QString(commas, u',') + u"x"_s);
        };
        qsizetype taken = -1;
        const Dispatcher dispatcher(
            {{QLatin1String("W"), [&](const QStringList& fields) { taken = fields.size(); }}});
        QVERIFY(dispatcher.dispatch(message(wire::MaxFields - 2)));
        QCOMPARE(taken, wire::MaxFields - 2);
        QCOMPARE(warnings, QStringList());
        QCOMPARE(wire::fields(message(wire::MaxFields - 1)).last(), u"x"_s);
        QVERIFY(dispatcher.dispatch(message(5'000'000)));
        QCOMPARE(taken, wire::MaxFields - 1);
        QCOMPARE(warnings, QStringList{u"a message has 10000 fields or more"_s});
    }

    void keys_beyond_the_limit_are_not_made()
    {
        const auto full = static_cast<int>(menuLimits::MaxKeys);
        for (int i = 0; i < full; ++i) {
            m_menus->defineKey(keyFields(QString::number(i / 100), i));
        }
        QCOMPARE(keyCount(), menuLimits::MaxKeys);
        QCOMPARE(warnings, QStringList());
        MainMenus mainMenus(m_menus->book);
        for (int i = 0; i < 3; ++i) {
            m_menus->defineKey(keyFields(u"New"_s, i));
            m_menus->copyKey({u"1"_s, u"0"_s, u"0"_s});
            mainMenus.copyToMainMenu({u"Main"_s, u"0"_s, u"0"_s});
            mainMenus.copyToPaxMenu({u"Pax"_s, u"0"_s, u"0"_s});
        }
        QCOMPARE(keyCount(), menuLimits::MaxKeys);
        QVERIFY(m_menus->book.find(u"New"_s) == nullptr);
        QCOMPARE(warnings, QStringList{u"there are 15000 keys: no more are made"_s});
        // What is there can be changed, and "CLEAR" makes room.
        QStringList fields = keyFields(u"0"_s, 0);
        fields[2] = u"Changed"_s;
        m_menus->defineKey(fields);
        QCOMPARE(m_menus->book.findKey(u"0"_s, u"0"_s)->label, u"Changed"_s);
        m_menus->book.clear();
        m_menus->defineKey(keyFields(u"New"_s, 0));
        QCOMPARE(keyCount(), 1);
    }

    void menus_beyond_the_limit_are_not_made()
    {
        const auto full = static_cast<int>(menuLimits::MaxMenus);
        for (int i = 0; i < full; ++i) {
            m_menus->copyKey({QString::number(i)}); // a menu without keys
        }
        QCOMPARE(m_menus->book.pages.size(), menuLimits::MaxMenus);
        QCOMPARE(warnings, QStringList());
        MainMenus mainMenus(m_menus->book);
        m_menus->defineKey(keyFields(u"New"_s, 0));
        m_menus->copyKey({u"New"_s});
        mainMenus.copyToMainMenu({u"Main"_s});
        mainMenus.copyToPaxMenu({u"Pax"_s});
        QCOMPARE(m_menus->book.pages.size(), menuLimits::MaxMenus);
        QCOMPARE(warnings, QStringList{u"there are 500 menus: no more are made"_s});
        m_menus->defineKey(keyFields(u"7"_s, 0));
        QCOMPARE(keyCount(), 1);
    }

    void the_text_of_one_definition_is_limited()
    {
        const QString longest(menuLimits::MaxKeyCharacters - 6, u'a'); // and "M", "0", "L" and "C:"
        m_menus->defineKey(keyFields(u"M"_s, 0, longest + u'a'));
        QCOMPARE(m_menus->book.findKey(u"M"_s, u"0"_s)->options.size(), longest.size() + 1);
        m_menus->defineKey(keyFields(u"M"_s, 0, longest + u"aa"_s));
        QCOMPARE(m_menus->book.findKey(u"M"_s, u"0"_s)->options.size(), longest.size() + 1);
        m_menus->defineKey(keyFields(u"M"_s, 1, longest + u"aa"_s));
        QCOMPARE(keyCount(), 1);
        m_menus->pressImmediately({u"L"_s, u"0"_s, u"C"_s, {}, u"0"_s, longest + u"aaaaaa"_s});
        m_menus->lockChoices({u"M"_s, u"0"_s, QString(menuLimits::MaxKeyCharacters + 1, u':')});
        QCOMPARE(
            warnings, QStringList{u"a definition of more than 262144 characters is ignored"_s});
    }

    void the_text_of_all_definitions_is_limited()
    {
        const QString options(200'000, u'a');
        int made = 0;
        for (int i = 0; i < 60; ++i) {
            m_menus->defineKey(keyFields(u"M"_s, i, options));
            m_menus->defineKey(keyFields(u"M"_s, i, options)); // is counted once
        }
        made = static_cast<int>(keyCount());
        QCOMPARE(made, static_cast<int>(menuLimits::MaxCharacters / (options.size() + 6)));
        QCOMPARE(
            warnings, QStringList{u"the definitions have 8388608 characters: no more are taken"_s});
        m_menus->defineKey(keyFields(u"M"_s, 0)); // a shorter one makes room
        m_menus->defineKey(keyFields(u"M"_s, 99, options));
        QCOMPARE(keyCount(), made + 1);
        m_menus->book.clear();
        m_menus->defineKey(keyFields(u"M"_s, 0, options));
        m_menus->defineKey(keyFields(u"M"_s, 1, options));
        QCOMPARE(keyCount(), 2);
    }

    // What a copy shares with its source takes memory of its own once either of them is changed.
    void the_text_of_copies_is_counted()
    {
        const QString options(250'000, u'a');
        const auto characters = [this] {
            qsizetype sum = 0;
            for (const KeyBoard* menu : std::as_const(m_menus->book.pages)) {
                for (const Key* key : std::as_const(menu->keys)) {
                    sum += key->options.size();
                }
            }
            return sum;
        };
        MainMenus mainMenus(m_menus->book);
        int made = 0;
        for (int round = 0; round < 3; ++round) {
            m_menus->defineKey(keyFields(u"A"_s, 0, options));
            for (int i = 0; i < 20; ++i) {
                mainMenus.copyToMainMenu({u"Main"_s + QString::number(i), u"A"_s, u"0"_s});
                mainMenus.copyToPaxMenu({u"Pax"_s, u"A"_s, u"0"_s});
                m_menus->copyKey({u"Copies"_s, u"A"_s, u"0"_s});
            }
            for (int i = 0; i < 20; ++i) {
                m_menus->defineKey(keyFields(u"Main"_s + QString::number(i), 0, u"x"_s));
                m_menus->defineKey(keyFields(u"B"_s, ++made, options));
            }
            QVERIFY2(characters() <= menuLimits::MaxCharacters, QByteArray::number(characters()));
        }
        QCOMPARE(
            warnings, QStringList{u"the definitions have 8388608 characters: no more are taken"_s});
    }

    // Otherwise definitions that come again and again would use the room up.
    void changes_of_linked_keys_leave_the_room_as_it_was()
    {
        const QString options(250'000, u'a');
        for (int round = 0; round < 40; ++round) {
            m_menus->defineKey(keyFields(u"A"_s, 0, options));
            m_menus->copyKey({u"B"_s, round == 0 ? u"A"_s : QString(), u"0"_s});
            m_menus->defineKey(keyFields(u"A"_s, 0, u"x"_s));
            m_menus->defineKey(keyFields(u"B"_s, 0, options));
        }
        QCOMPARE(warnings, QStringList());
    }

    void locked_choices_beyond_the_limit_are_dropped()
    {
        m_menus->defineKey(keyFields(u"M"_s, 0));
        QStringList positions;
        for (int i = 0; i < 2000; ++i) {
            positions += QString::number(i);
        }
        m_menus->lockChoices({u"M"_s, u"0"_s, positions.join(u':')});
        const Key* key = m_menus->book.findKey(u"M"_s, u"0"_s);
        QCOMPARE(key->itemIds.size(), menuLimits::MaxLocked);
        QCOMPARE(key->itemIds.last(), 999);
    }

    void ranges_beyond_the_limit_are_left_out()
    {
        const auto ranges = [](qsizetype count) {
            return NumberRanges(QStringList(count, u"1 2"_s).join(u':'), 0)
                .errorText()
                .count(u" to "_s);
        };
        QCOMPARE(ranges(popUpLimits::MaxRanges), popUpLimits::MaxRanges);
        QCOMPARE(ranges(popUpLimits::MaxRanges + 500), popUpLimits::MaxRanges);
    }

    void requests_beyond_the_limit_are_lost()
    {
        DeviceDirectory none;
        Rs422Bus bus(u"ttyUSB11"_s, '[', ']', true, 921600);
        for (qsizetype i = 0; i < spectrumLimits::MaxQueued + 10; ++i) {
            bus.sendMessage(u"0190RFFT"_s); // the first one is under way
        }
        QCOMPARE(bus.txCount(), spectrumLimits::MaxQueued);
        QCOMPARE(warnings, QStringList{u"ttyUSB11: 10000 requests wait, further ones are lost"_s});
    }

    void status_requests_beyond_the_limit_are_lost()
    {
        DeviceDirectory none;
        {
            Rs422Bus bus(u"ttyUSB11"_s, '[', ']', true, 921600);
            QStringList requests;
            for (qsizetype i = 0; i < spectrumLimits::MaxQueued; ++i) {
                requests += QString::number(i);
            }
            bus.addToStatusQueue(requests);
            QCOMPARE(warnings, QStringList());
            requests = QStringList{u"late"_s, u"later"_s, u"latest"_s};
            bus.addToStatusQueue(requests);
            bus.run();
            for (qsizetype i = 0; i < spectrumLimits::MaxQueued; ++i) {
                QCOMPARE(bus.lastRequest(), QString::number(i));
                testClock::expire(&bus);
            }
            QCOMPARE(bus.lastRequest(), u"0"_s); // their turns begin anew
        }
        const QString warning = u"ttyUSB11: 10000 requests wait, further ones are lost"_s;
        QCOMPARE(warnings, QStringList({warning, warning + u" (2 times)"_s}));
    }

    void bytes_that_a_card_does_not_read_are_dropped()
    {
        DeviceDirectory devices;
        devices.add(u"ttyUSB11"_s);
        Rs422Bus bus(u"ttyUSB11"_s, '[', ']', true, 921600);
        for (int i = 0; i < 6; ++i) {
            bus.sendMessage(QString(20'000, u'x'), 60'000);
            testClock::expire(&bus);
        }
        QCOMPARE(warnings,
            QStringList{u"ttyUSB11: the card does not read: 4096 bytes wait and are dropped"_s});
    }

    void a_card_reply_without_an_end_is_dropped()
    {
        DeviceDirectory devices;
        Pty& card = devices.add(u"ttyUSB11"_s);
        Rs422Bus bus(u"ttyUSB11"_s, '[', ']', true, 921600);
        for (qsizetype sent = 0; sent <= spectrumLimits::MaxReplyBytes; sent += 8192) {
            card.write(QByteArray(8192, 'x'));
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE(warnings,
            QStringList{u"ttyUSB11: 262144 bytes without the end of a reply were dropped"_s});
    }

    void markers_beyond_the_limit_are_left_out()
    {
        QCustomPlot plot;
        LevelMarkers markers(plot);
        markers.setLevels(QList<double>(LevelMarkers::MaxCount, -10.0), -120.0, 10.0);
        QCOMPARE(warnings, QStringList());
        markers.setLevels(QList<double>(LevelMarkers::MaxCount + 5, -10.0), -120.0, 10.0);
        QCOMPARE(markers.levels().size(), LevelMarkers::MaxCount);
        QCOMPARE(warnings, QStringList{u"a chart has 64 markers: no more are shown"_s});
    }

    void a_re_sent_message_without_an_end_keeps_its_last_characters()
    {
        ResendCutter cutter;
        QCOMPARE(cutter.take(QString(linkLimits::MaxResent, u'x')), QStringList());
        QCOMPARE(warnings, QStringList());
        QCOMPARE(cutter.take(u"xx"_s), QStringList());
        QCOMPARE(warnings,
            QStringList{
                u"of a re-sent message without an end, what is older than its last 1024 characters is dropped"_s});
    }

    void what_a_main_unit_does_not_read_is_lost_beyond_the_limit()
    {
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        LinkControl link(m_area.get());
        link.open(u"ttyO1"_s);
        const QString message = wire::frame(QString(998, u'a'));
        for (qsizetype sent = 0; sent < 3 * linkLimits::MaxUnsentBytes; sent += 1000) {
            link.send(message);
        }
        QVERIFY(link.serial()->port()->bytesToWrite() >= linkLimits::MaxUnsentBytes);
        QVERIFY(link.serial()->port()->bytesToWrite() < linkLimits::MaxUnsentBytes + 1000);
        QCOMPARE(warnings,
            QStringList{u"the main unit does not read: 1048576 bytes wait, a message is lost"_s});
    }

    void the_text_of_the_status_bar_is_cut_off()
    {
        StatusBar bar(m_area.get());
        bar.takeText({u"0"_s, QString(appLimits::MaxStatusCharacters, u'a')});
        QCOMPARE(bar.currentMessage().size(), appLimits::MaxStatusCharacters);
        QCOMPARE(warnings, QStringList());
        bar.takeText({u"0"_s, QString(appLimits::MaxStatusCharacters + 500, u'a')});
        QCOMPARE(bar.currentMessage().size(), appLimits::MaxStatusCharacters);
        QCOMPARE(warnings,
            QStringList{u"the text of the status bar is cut off after 1048576 characters"_s});
    }

private:
    QtMessageHandler m_before = nullptr;
    std::unique_ptr<QWidget> m_area;
    std::unique_ptr<MenuMessages> m_menus;
};

QN740_TEST_MAIN(tst_Limits)
#include "tst_Limits.moc"

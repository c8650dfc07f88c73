#include "sim/unit/MenuFile.h"
#include "support/TestMain.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
const QString GoodKey = QStringLiteral("AK,Menu,id,Label,1,R1:FREQ:,2200 2400,1,,2250.5,0,1");

QList<QStringList> builtInFields(const QString& word)
{
    QList<QStringList> all;
    const MenuFile menus = MenuFile::builtIn();
    for (const MenuStep& step : menus.steps()) {
        QStringList fields = step.body.split(u',');
        if (step.kind == MenuStep::Kind::Message && fields.takeFirst() == word) {
            all.append(fields);
        }
    }
    return all;
}

QString withField(int index, const QString& value)
{
    QStringList fields = GoodKey.split(u',');
    fields[index + 1] = value;
    return fields.join(u',');
}
} // namespace

class tst_MenuFile : public QObject
{
    Q_OBJECT

private slots:
    void a_good_message_is_accepted_unchanged_data()
    {
        QTest::addColumn<QString>("line");
        const QStringList lines{GoodKey, GoodKey + u",1"_s, GoodKey + u","_s, u"SK,Menu"_s,
            u"CK,Menu,id,2"_s, u"CV,Menu,id,-1.5e3,1"_s, u"CM,Main,Menu,id"_s, u"SB,0,Text"_s,
            u"DB,KILLBOX"_s, u"DB,Text,1"_s, u"PING"_s, u"Slave"_s, u"Slave,2"_s, u"Slave,7"_s,
            u"SQ,1,0"_s, u"SM,2,3"_s, u"SM,4,1"_s, u"VER"_s, u"SH,0,1"_s, u"MS,PAX,Menu,id"_s,
            u"PAX,1"_s, u"PAX,2"_s, u"LC,5"_s, u"LC,5,3"_s, u"EI,Menu,id,0:2:3"_s, u"EI,Menu,id,"_s,
            u"SP,0,3"_s, u"IK,Label,0,CMD,,0,"_s, u"IK,Label,1,CMD,0 9,0,,text,1.5"_s,
            u"SF,0,2250.5"_s, u"HM,0"_s, u"HM,0,-20,-40.5,-60"_s, u"ST,1"_s, u"PM,0.5,1,2"_s,
            u"CLEAR"_s, u"SB,0,trailing blank "_s};
        for (const QString& line : lines) {
            QTest::newRow(qPrintable(line)) << line;
        }
    }

    void a_good_message_is_accepted_unchanged()
    {
        QFETCH(QString, line);
        const MenuFile::Line parsed = MenuFile::parseLine(line.toUtf8());
        QCOMPARE(parsed.fault, QString());
        QVERIFY(parsed.step.has_value());
        QCOMPARE(parsed.step->kind, MenuStep::Kind::Message);
        QCOMPARE(parsed.step->body, line);
    }

    void a_line_that_is_no_message_is_refused_with_its_reason_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("reason");
        const auto row = [](const QString& line, const QString& reason) {
            QTest::newRow(qPrintable(line.left(60))) << line << reason;
        };
        row(u"XY,1"_s, u"unknown command word \"XY\""_s);
        row(u",1"_s, u"the command word is missing"_s);
        row(u"ak,Menu"_s, u"unknown command word \"ak\", is AK meant?"_s);
        row(u"PING "_s, u"unknown command word \"PING \", is PING meant?"_s);
        row(u"waiting"_s, u"unknown command word \"waiting\""_s);
        row(QString(60, u'x'), u"unknown command word \""_s + QString(40, u'x') + u"...\""_s);
        row(u"AK,Menu,id,Label,1,C,,0,"_s, u"AK needs 11 fields, this has 8"_s);
        row(u"AK"_s, u"AK needs 11 fields, this has 0"_s);
        row(u"SK"_s, u"SK needs 1 field, this has 0"_s);
        row(u"CK,Menu,id"_s, u"CK needs 3 fields, this has 2"_s);
        row(u"CV,Menu,id,1"_s, u"CV needs 4 fields, this has 3"_s);
        row(u"CM,Main,Menu"_s, u"CM needs 3 fields, this has 2"_s);
        row(u"MS,PAX"_s, u"MS needs 3 fields, this has 1"_s);
        row(u"SB,0"_s, u"SB needs 2 fields, this has 1"_s);
        row(u"DB"_s, u"DB needs 1 field, this has 0"_s);
        row(u"SQ,1"_s, u"SQ needs 2 fields, this has 1"_s);
        row(u"SM,1"_s, u"SM needs 2 fields, this has 1"_s);
        row(u"SH,1"_s, u"SH needs 2 fields, this has 1"_s);
        row(u"PAX"_s, u"PAX needs 1 field, this has 0"_s);
        row(u"LC"_s, u"LC needs 1 field, this has 0"_s);
        row(u"EI,Menu,id"_s, u"EI needs 3 fields, this has 2"_s);
        row(u"SP,1"_s, u"SP needs 2 fields, this has 1"_s);
        row(u"IK,Label,0,CMD,,0"_s, u"IK needs 6 fields, this has 5"_s);
        row(u"SF,1"_s, u"SF needs 2 fields, this has 1"_s);
        row(u"HM"_s, u"HM needs 1 field, this has 0"_s);
        row(u"ST"_s, u"ST needs 1 field, this has 0"_s);
        row(u"PM,1,2"_s, u"PM needs 3 fields, this has 2"_s);
        row(withField(0, u""_s), u"AK: the menu name must be a name, not \"\""_s);
        row(withField(1, u""_s), u"AK: the key identifier must be a name, not \"\""_s);
        row(withField(3, u"one"_s), u"AK: the key type must be a whole number, not \"one\""_s);
        row(withField(3, u""_s), u"AK: the key type must be a whole number, not \"\""_s);
        row(withField(6, u"1.5"_s), u"AK: the parameter must be a whole number, not \"1.5\""_s);
        row(withField(8, u"2 MHz"_s), u"AK: the value must be a number, not \"2 MHz\""_s);
        row(withField(8, u"nan"_s), u"AK: the value must be a number, not \"nan\""_s);
        row(withField(9, u"on"_s), u"AK: the toggle must be 0 or 1, not \"on\""_s);
        row(withField(10, u"3"_s), u"AK: the display state must be 0, 1 or 2, not \"3\""_s);
        row(GoodKey + u",x"_s, u"AK: the fixed placement must be 0, 1 or empty, not \"x\""_s);
        row(u"CK,Menu,id,9"_s, u"CK: the display state must be 0, 1 or 2, not \"9\""_s);
        row(u"CV,Menu,id,x,1"_s, u"CV: the value must be a number, not \"x\""_s);
        row(u"CV,Menu,id,1,2"_s, u"CV: the toggle must be 0 or 1, not \"2\""_s);
        row(u"Slave,x"_s, u"Slave: the link mode must be a whole number, not \"x\""_s);
        row(u"EI,Menu,id,1:a"_s,
            u"EI: the list of positions must be whole numbers separated by \":\", not \"1:a\""_s);
        row(u"HM,0,1,2,x"_s, u"HM: the level must be a number, not \"x\""_s);
        row(u"IK,Label,t,CMD,,0,"_s, u"IK: the key type must be a whole number, not \"t\""_s);
        row(u"SF,0,x"_s, u"SF: the frequency must be a number, not \"x\""_s);
        row(u"SB,soon,Text"_s, u"SB: the time must be a whole number, not \"soon\""_s);
        row(u"SB,0,a\\x04"_s
            u"b"_s,
            u"the frame characters \\x02 and \\x04 cannot stand in a message"_s);
        row(u"SB,0,"_s + QChar(0x2026),
            u"the character U+2026 is not in Latin-1 and cannot be sent"_s);
        row(u"wait"_s, u"wait needs a time in milliseconds from 0 to 600000"_s);
        row(u"wait soon"_s, u"wait needs a time in milliseconds from 0 to 600000"_s);
        row(u"wait -1"_s, u"wait needs a time in milliseconds from 0 to 600000"_s);
        row(u"wait 600001"_s, u"wait needs a time in milliseconds from 0 to 600000"_s);
    }

    void a_line_that_is_no_message_is_refused_with_its_reason()
    {
        QFETCH(QString, line);
        QFETCH(QString, reason);
        const MenuFile::Line parsed = MenuFile::parseLine(line.toUtf8());
        QCOMPARE(parsed.fault, reason);
        QVERIFY(!parsed.step.has_value());
    }

    void a_message_has_65536_characters_at_most_data()
    {
        QTest::addColumn<QString>("letter"); // as written in the file
        QTest::newRow("plain") << "x";
        QTest::newRow("escaped") << "\\xe9";
        QTest::newRow("UTF-8") << QString(QChar(0xe9));
    }

    void a_message_has_65536_characters_at_most()
    {
        QFETCH(QString, letter);
        const QString start = u"SB,0,"_s;
        const QString longest = start + letter.repeated(65536 - start.size());
        QCOMPARE(MenuFile::parseLine(longest.toUtf8()).fault, QString());
        QCOMPARE(MenuFile::parseLine(longest.toUtf8()).step->body.size(), 65536);
        const MenuFile file = MenuFile::parse("PING\n" + (longest + letter).toUtf8(), u"my.menu"_s);
        QCOMPARE(file.errors(),
            QStringList{u"my.menu:2: the message is longer than 65536 characters"_s});
        QCOMPARE(file.messageCount(), 1);
    }

    void all_faults_are_reported_with_file_and_line()
    {
        const MenuFile file =
            MenuFile::parse("# head\n\nAK,1\nPING\n  # more\nnone\n", u"my.menu"_s);
        QCOMPARE(file.errors(),
            (QStringList{u"my.menu:3: AK needs 11 fields, this has 1"_s,
                u"my.menu:6: unknown command word \"none\""_s}));
        QCOMPARE(file.messageCount(), 1);
    }

    void a_hundred_faults_are_enough()
    {
        const MenuFile file = MenuFile::parse(QByteArray("x\n").repeated(5000), u"f"_s);
        QCOMPARE(file.errors().size(), 101);
        QCOMPARE(file.errors().last(), u"f: 4900 more"_s);
    }

    void an_unknown_word_that_is_silenced_is_left_out()
    {
        const MenuFile one =
            MenuFile::parse("# qn740: ignore QN101 for the next panel\nNEW,1\nPING\n", u"f"_s);
        QCOMPARE(one.errors(), QStringList());
        QCOMPARE(one.messageCount(), 1);
        const MenuFile next = MenuFile::parse("# qn740: ignore QN101\nNEW,1\nNEW,2\nVER\n", u"f"_s);
        QCOMPARE(next.errors(), QStringList{u"f:3: unknown command word \"NEW\""_s});
        const MenuFile all = MenuFile::parse("NEW,1\nNEW,2\n# qn740: ignore-file QN101\n", u"f"_s);
        QCOMPARE(all.errors(), QStringList());
        const MenuFile other = MenuFile::parse("# qn740: ignore QN102\nSM,1\n", u"f"_s);
        QCOMPARE(other.errors().size(), 1);
        const MenuFile json = MenuFile::parse(
            R"({"version":1,"content":[{"message":"NEW","ignore":["QN101"]},{"message":"PING"}]})",
            u"f"_s);
        QCOMPARE(json.errors(), QStringList());
    }

    void comments_blank_lines_and_waits_are_no_messages()
    {
        const MenuFile file = MenuFile::parse("#a\n\n   \n\t# b\nwait 250\n wait  0 \nVER", u"f"_s);
        QCOMPARE(file.errors(), QStringList());
        QCOMPARE(file.steps().size(), 3);
        QCOMPARE(file.steps().at(0).kind, MenuStep::Kind::Wait);
        QCOMPARE(file.steps().at(0).waitMs, 250);
        QCOMPARE(file.steps().at(1).waitMs, 0);
        QCOMPARE(file.steps().at(2).body, u"VER"_s);
        QCOMPARE(file.messageCount(), 1);
    }

    void line_ends_and_a_byte_order_mark_do_not_matter()
    {
        const MenuFile file = MenuFile::parse("\xef\xbb\xbfPING\r\nSB,0,a b \r\nVER", u"f"_s);
        QCOMPARE(file.errors(), QStringList());
        QCOMPARE(file.steps().at(1).body, u"SB,0,a b "_s);
    }

    void utf8_and_latin1_give_the_same_byte()
    {
        const QString degrees = u"SB,0,5 "_s + QChar(0xb0);
        QCOMPARE(MenuFile::parseLine(degrees.toUtf8()).step->body, degrees);
        QCOMPARE(MenuFile::parseLine(degrees.toLatin1()).step->body, degrees);
    }

    void escapes_stand_for_their_bytes()
    {
        QCOMPARE(MenuFile::parseLine("SB,0,a\\x0ab\\\\c").step->body, u"SB,0,a\nb\\c"_s);
    }

    void a_file_that_cannot_be_read_is_a_fault()
    {
        const MenuFile missing = MenuFile::load(u"/nowhere/at.all"_s);
        QCOMPARE(missing.errors().size(), 1);
        QVERIFY(missing.errors().first().startsWith(u"/nowhere/at.all: "_s));
        QTemporaryDir directory;
        QCOMPARE(MenuFile::load(directory.path()).errors().size(), 1);
    }

    void a_file_that_never_ends_is_a_fault()
    {
        const MenuFile file = MenuFile::load(u"/dev/zero"_s);
        QCOMPARE(file.errors(), QStringList{u"/dev/zero: larger than 16 MB"_s});
    }

    void a_file_is_read_whole()
    {
        QTemporaryDir directory;
        QFile file(directory.filePath(u"a.menu"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("PING\nwait 5\nVER\n");
        file.close();
        const MenuFile menus = MenuFile::load(file.fileName());
        QCOMPARE(menus.errors(), QStringList());
        QCOMPARE(menus.steps().size(), 3);
    }

    void the_built_in_menus_have_no_fault()
    {
        const MenuFile menus = MenuFile::builtIn();
        QCOMPARE(menus.errors(), QStringList());
        QVERIFY(menus.messageCount() > 200);
    }

    void the_built_in_menus_use_every_key_type_and_number_pad()
    {
        QSet<int> types;
        QSet<int> pads;
        for (const QStringList& key : builtInFields(u"AK"_s)) {
            types.insert(key.at(3).toInt());
            if (key.at(3) == u"1"_s) {
                pads.insert(key.at(6).toInt());
            }
        }
        QCOMPARE(types, (QSet<int>{0, 1, 2, 3, 4, 5, 6}));
        QCOMPARE(pads, (QSet<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    }

    void the_built_in_menus_have_lists_of_4_17_30_and_60_modulations()
    {
        QSet<qsizetype> counts;
        for (const QStringList& key : builtInFields(u"AK"_s)) {
            if (key.at(3) == u"2"_s) {
                counts.insert(key.at(7).split(u':').size());
            }
        }
        for (const qsizetype count : {4, 17, 30, 60}) {
            QVERIFY2(counts.contains(count), qPrintable(QString::number(count)));
        }
    }

    void the_built_in_menus_have_a_page_too_many_and_keys_in_all_states()
    {
        QHash<QString, int> keys;
        QSet<QString> states;
        QSet<QString> toggles;
        for (const QStringList& key : builtInFields(u"AK"_s)) {
            keys[key.at(0)] += 1;
            toggles.insert(key.at(3) == u"0"_s ? key.at(9) : u"none"_s);
        }
        for (const QStringList& state : builtInFields(u"CK"_s)) {
            states.insert(state.at(2));
        }
        QVERIFY(std::any_of(keys.begin(), keys.end(), [](int count) { return count > 36; }));
        QCOMPARE(states, (QSet<QString>{u"0"_s, u"1"_s, u"2"_s}));
        QVERIFY(toggles.contains(u"0"_s) && toggles.contains(u"1"_s));
    }

    void the_built_in_messages_name_existing_keys_and_menus()
    {
        QSet<QString> keys;
        QSet<QString> menus{u"Main"_s, u"PAX"_s};
        for (const QStringList& key : builtInFields(u"AK"_s)) {
            keys.insert(key.at(0) + u","_s + key.at(1));
            menus.insert(key.at(0));
        }
        for (const char* word : {"CM", "MS"}) {
            QHash<QString, int> copies;
            for (const QStringList& copy : builtInFields(QString::fromUtf8(word))) {
                QVERIFY2(
                    keys.contains(copy.at(1) + u","_s + copy.at(2)), qPrintable(copy.join(u',')));
                copies[copy.at(1)] += 1;
            }
            QVERIFY(!copies.isEmpty());
            QVERIFY(std::all_of(copies.begin(), copies.end(), [](int n) { return n <= 5; }));
        }
        QSet<QString> groups;
        for (const QStringList& copy : builtInFields(u"CM"_s)) {
            groups.insert(copy.at(1));
        }
        QCOMPARE(groups,
            (QSet<QString>{u"Tuner CH1"_s, u"Tuner CH2"_s, u"Demod 1"_s, u"Demod 2"_s, u"Demod 3"_s,
                u"Combiner"_s}));
        for (const QStringList& state : builtInFields(u"CK"_s)) {
            QVERIFY2(
                keys.contains(state.at(0) + u","_s + state.at(1)), qPrintable(state.join(u',')));
        }
        for (const QStringList& key : builtInFields(u"AK"_s)) {
            if (key.at(4).startsWith(u"SK:"_s)) {
                QVERIFY2(menus.contains(key.at(4).section(u':', 1, 1)), qPrintable(key.at(4)));
            }
        }
        for (const QStringList& menu : builtInFields(u"SK"_s)) {
            QVERIFY(menus.contains(menu.at(0)));
        }
    }

    void the_built_in_values_lie_in_their_ranges()
    {
        int checked = 0;
        for (const QStringList& key : builtInFields(u"AK"_s)) {
            const bool isSlider = key.at(3) == u"3"_s;
            if ((key.at(3) != u"1"_s || key.at(6) == u"7"_s) && !isSlider) {
                continue;
            }
            // A percentage is typed in percent and stored as a fraction.
            const bool isPercent = key.at(3) == u"1"_s && key.at(6) == u"5"_s;
            const double value = key.at(8).toDouble() * (isPercent ? 100 : 1);
            bool inside = false;
            for (const QString& range : key.at(5).split(u':')) {
                const QStringList bounds = range.split(u' ');
                QVERIFY2(bounds.size() == 2, qPrintable(key.join(u',')));
                const double low = bounds.at(isSlider ? 1 : 0).toDouble();
                const double high = bounds.at(isSlider ? 0 : 1).toDouble();
                QVERIFY2(low < high, qPrintable(key.join(u',')));
                inside = inside || (low <= value && value <= high);
            }
            QVERIFY2(inside, qPrintable(key.join(u',')));
            checked += 1;
        }
        QVERIFY(checked > 20);
    }

    void the_built_in_labels_have_no_word_wider_than_a_key()
    {
        for (const QStringList& key : builtInFields(u"AK"_s)) {
            for (const QString& word : key.at(2).split(u' ')) {
                QVERIFY2(word.size() <= 13, qPrintable(key.at(2)));
            }
            QVERIFY2(key.at(2).size() <= 36, qPrintable(key.at(2)));
        }
    }
};

QN740_TEST_MAIN(tst_MenuFile)
#include "tst_MenuFile.moc"

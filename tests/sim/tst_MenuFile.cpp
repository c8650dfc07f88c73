#include "sim/unit/MenuFile.h"
#include "support/TestMain.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

namespace {
const QString GoodKey = QStringLiteral("AK,Menu,id,Label,1,R1:FREQ:,2200 2400,1,,2250.5,0,1");

QList<QStringList> builtInFields(const QString& word)
{
    QList<QStringList> all;
    const MenuFile menus = MenuFile::builtIn();
    for (const MenuStep& step : menus.steps()) {
        QStringList fields = step.body.split(',');
        if (step.kind == MenuStep::Kind::Message && fields.takeFirst() == word) {
            all.append(fields);
        }
    }
    return all;
}

QString withField(int index, const QString& value)
{
    QStringList fields = GoodKey.split(',');
    fields[index + 1] = value;
    return fields.join(',');
}
} // namespace

class tst_MenuFile : public QObject
{
    Q_OBJECT

private slots:
    void a_message_is_accepted_as_it_stands_data()
    {
        QTest::addColumn<QString>("line");
        const QStringList lines{GoodKey, GoodKey + ",1", GoodKey + ",", "SK,Menu", "CK,Menu,id,2",
            "CV,Menu,id,-1.5e3,1", "CM,Main,Menu,id", "SB,0,Text", "DB,KILLBOX", "DB,Text,1",
            "PING", "Slave", "Slave,2", "Slave,7", "SQ,1,0", "SM,2,3", "SM,4,1", "VER", "SH,0,1",
            "MS,PAX,Menu,id", "PAX,1", "PAX,2", "LC,5", "LC,5,3", "EI,Menu,id,0:2:3", "EI,Menu,id,",
            "SP,0,3", "IK,Label,0,CMD,,0,", "IK,Label,1,CMD,0 9,0,,text,1.5", "SF,0,2250.5", "HM,0",
            "HM,0,-20,-40.5,-60", "ST,1", "PM,0.5,1,2", "CLEAR", "SB,0,trailing blank "};
        for (const QString& line : lines) {
            QTest::newRow(qPrintable(line)) << line;
        }
    }

    void a_message_is_accepted_as_it_stands()
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
        row("XY,1", "unknown command word \"XY\"");
        row(",1", "the command word is missing");
        row("ak,Menu", "unknown command word \"ak\", is AK meant?");
        row("PING ", "unknown command word \"PING \", is PING meant?");
        row("waiting", "unknown command word \"waiting\"");
        row(QString(60, 'x'), "unknown command word \"" + QString(40, 'x') + "...\"");
        row("AK,Menu,id,Label,1,C,,0,", "AK needs 11 fields, this has 8");
        row("AK", "AK needs 11 fields, this has 0");
        row("SK", "SK needs 1 field, this has 0");
        row("CK,Menu,id", "CK needs 3 fields, this has 2");
        row("CV,Menu,id,1", "CV needs 4 fields, this has 3");
        row("CM,Main,Menu", "CM needs 3 fields, this has 2");
        row("MS,PAX", "MS needs 3 fields, this has 1");
        row("SB,0", "SB needs 2 fields, this has 1");
        row("DB", "DB needs 1 field, this has 0");
        row("SQ,1", "SQ needs 2 fields, this has 1");
        row("SM,1", "SM needs 2 fields, this has 1");
        row("SH,1", "SH needs 2 fields, this has 1");
        row("PAX", "PAX needs 1 field, this has 0");
        row("LC", "LC needs 1 field, this has 0");
        row("EI,Menu,id", "EI needs 3 fields, this has 2");
        row("SP,1", "SP needs 2 fields, this has 1");
        row("IK,Label,0,CMD,,0", "IK needs 6 fields, this has 5");
        row("SF,1", "SF needs 2 fields, this has 1");
        row("HM", "HM needs 1 field, this has 0");
        row("ST", "ST needs 1 field, this has 0");
        row("PM,1,2", "PM needs 3 fields, this has 2");
        row(withField(0, ""), "AK: the menu name must be a name, not \"\"");
        row(withField(1, ""), "AK: the key identifier must be a name, not \"\"");
        row(withField(3, "one"), "AK: the key type must be a whole number, not \"one\"");
        row(withField(3, ""), "AK: the key type must be a whole number, not \"\"");
        row(withField(6, "1.5"), "AK: the parameter must be a whole number, not \"1.5\"");
        row(withField(8, "2 MHz"), "AK: the value must be a number, not \"2 MHz\"");
        row(withField(8, "nan"), "AK: the value must be a number, not \"nan\"");
        row(withField(9, "on"), "AK: the toggle must be 0 or 1, not \"on\"");
        row(withField(10, "3"), "AK: the display state must be 0, 1 or 2, not \"3\"");
        row(GoodKey + ",x", "AK: the fixed placement must be 0, 1 or empty, not \"x\"");
        row("CK,Menu,id,9", "CK: the display state must be 0, 1 or 2, not \"9\"");
        row("CV,Menu,id,x,1", "CV: the value must be a number, not \"x\"");
        row("CV,Menu,id,1,2", "CV: the toggle must be 0 or 1, not \"2\"");
        row("Slave,x", "Slave: the link mode must be a whole number, not \"x\"");
        row("EI,Menu,id,1:a",
            "EI: the list of positions must be whole numbers separated by \":\", not \"1:a\"");
        row("HM,0,1,2,x", "HM: the level must be a number, not \"x\"");
        row("IK,Label,t,CMD,,0,", "IK: the key type must be a whole number, not \"t\"");
        row("SF,0,x", "SF: the frequency must be a number, not \"x\"");
        row("SB,soon,Text", "SB: the time must be a whole number, not \"soon\"");
        row("SB,0,a\\x04"
            "b",
            "the frame characters \\x02 and \\x04 cannot stand in a message");
        row(QString("SB,0,") + QChar(0x2026),
            "the character U+2026 is not in Latin-1 and cannot be sent");
        row("wait", "wait needs a time in milliseconds from 0 to 600000");
        row("wait soon", "wait needs a time in milliseconds from 0 to 600000");
        row("wait -1", "wait needs a time in milliseconds from 0 to 600000");
        row("wait 600001", "wait needs a time in milliseconds from 0 to 600000");
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
        QTest::addColumn<QString>("letter"); // as it stands in the file
        QTest::newRow("plain") << "x";
        QTest::newRow("escaped") << "\\xe9";
        QTest::newRow("UTF-8") << QString(QChar(0xe9));
    }

    void a_message_has_65536_characters_at_most()
    {
        QFETCH(QString, letter);
        const QString start("SB,0,");
        const QString longest = start + letter.repeated(65536 - start.size());
        QCOMPARE(MenuFile::parseLine(longest.toUtf8()).fault, QString());
        QCOMPARE(MenuFile::parseLine(longest.toUtf8()).step->body.size(), 65536);
        const MenuFile file = MenuFile::parse("PING\n" + (longest + letter).toUtf8(), "my.menu");
        QCOMPARE(
            file.errors(), QStringList{"my.menu:2: the message is longer than 65536 characters"});
        QCOMPARE(file.messageCount(), 1);
    }

    void all_faults_are_told_with_file_and_line()
    {
        const MenuFile file = MenuFile::parse("# head\n\nAK,1\nPING\n  # more\nnone\n", "my.menu");
        QCOMPARE(file.errors(),
            (QStringList{"my.menu:3: AK needs 11 fields, this has 1",
                "my.menu:6: unknown command word \"none\""}));
        QCOMPARE(file.messageCount(), 1);
    }

    void a_hundred_faults_are_enough()
    {
        const MenuFile file = MenuFile::parse(QByteArray("x\n").repeated(5000), "f");
        QCOMPARE(file.errors().size(), 101);
        QCOMPARE(file.errors().last(), QString("f: 4900 more"));
    }

    void comments_blank_lines_and_waits_are_no_messages()
    {
        const MenuFile file = MenuFile::parse("#a\n\n   \n\t# b\nwait 250\n wait  0 \nVER", "f");
        QCOMPARE(file.errors(), QStringList());
        QCOMPARE(file.steps().size(), 3);
        QCOMPARE(file.steps().at(0).kind, MenuStep::Kind::Wait);
        QCOMPARE(file.steps().at(0).waitMs, 250);
        QCOMPARE(file.steps().at(1).waitMs, 0);
        QCOMPARE(file.steps().at(2).body, QString("VER"));
        QCOMPARE(file.messageCount(), 1);
    }

    void line_ends_and_a_byte_order_mark_do_not_matter()
    {
        const MenuFile file = MenuFile::parse("\xef\xbb\xbfPING\r\nSB,0,a b \r\nVER", "f");
        QCOMPARE(file.errors(), QStringList());
        QCOMPARE(file.steps().at(1).body, QString("SB,0,a b "));
    }

    void utf8_and_latin1_give_the_same_byte()
    {
        const QString degrees = QString("SB,0,5 ") + QChar(0xb0);
        QCOMPARE(MenuFile::parseLine(degrees.toUtf8()).step->body, degrees);
        QCOMPARE(MenuFile::parseLine(degrees.toLatin1()).step->body, degrees);
    }

    void escapes_stand_for_their_bytes()
    {
        QCOMPARE(MenuFile::parseLine("SB,0,a\\x0ab\\\\c").step->body, QString("SB,0,a\nb\\c"));
    }

    void a_file_that_cannot_be_read_is_a_fault()
    {
        const MenuFile missing = MenuFile::load("/nowhere/at.all");
        QCOMPARE(missing.errors().size(), 1);
        QVERIFY(missing.errors().first().startsWith("/nowhere/at.all: "));
        QTemporaryDir directory;
        QCOMPARE(MenuFile::load(directory.path()).errors().size(), 1);
    }

    void a_file_that_never_ends_is_a_fault()
    {
        const MenuFile file = MenuFile::load("/dev/zero");
        QCOMPARE(file.errors(), QStringList{"/dev/zero: larger than 16 MB"});
    }

    void a_file_is_read_whole()
    {
        QTemporaryDir directory;
        QFile file(directory.filePath("a.menu"));
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
        for (const QStringList& key : builtInFields("AK")) {
            types.insert(key.at(3).toInt());
            if (key.at(3) == "1") {
                pads.insert(key.at(6).toInt());
            }
        }
        QCOMPARE(types, (QSet<int>{0, 1, 2, 3, 4, 5, 6}));
        QCOMPARE(pads, (QSet<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    }

    void the_built_in_menus_have_lists_of_4_17_30_and_60_modulations()
    {
        QSet<qsizetype> counts;
        for (const QStringList& key : builtInFields("AK")) {
            if (key.at(3) == "2") {
                counts.insert(key.at(7).split(':').size());
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
        for (const QStringList& key : builtInFields("AK")) {
            keys[key.at(0)] += 1;
            toggles.insert(key.at(3) == "0" ? key.at(9) : QString("none"));
        }
        for (const QStringList& state : builtInFields("CK")) {
            states.insert(state.at(2));
        }
        QVERIFY(std::any_of(keys.begin(), keys.end(), [](int count) { return count > 36; }));
        QCOMPARE(states, (QSet<QString>{"0", "1", "2"}));
        QVERIFY(toggles.contains("0") && toggles.contains("1"));
    }

    void the_built_in_messages_name_keys_and_menus_that_are_there()
    {
        QSet<QString> keys;
        QSet<QString> menus{"Main", "PAX"};
        for (const QStringList& key : builtInFields("AK")) {
            keys.insert(key.at(0) + "," + key.at(1));
            menus.insert(key.at(0));
        }
        for (const char* word : {"CM", "MS"}) {
            QHash<QString, int> copies;
            for (const QStringList& copy : builtInFields(word)) {
                QVERIFY2(keys.contains(copy.at(1) + "," + copy.at(2)), qPrintable(copy.join(',')));
                copies[copy.at(1)] += 1;
            }
            QVERIFY(!copies.isEmpty());
            QVERIFY(std::all_of(copies.begin(), copies.end(), [](int n) { return n <= 5; }));
        }
        QSet<QString> groups;
        for (const QStringList& copy : builtInFields("CM")) {
            groups.insert(copy.at(1));
        }
        QCOMPARE(groups,
            (QSet<QString>{"Tuner CH1", "Tuner CH2", "Demod 1", "Demod 2", "Demod 3", "Combiner"}));
        for (const QStringList& state : builtInFields("CK")) {
            QVERIFY2(keys.contains(state.at(0) + "," + state.at(1)), qPrintable(state.join(',')));
        }
        for (const QStringList& key : builtInFields("AK")) {
            if (key.at(4).startsWith("SK:")) {
                QVERIFY2(menus.contains(key.at(4).section(':', 1, 1)), qPrintable(key.at(4)));
            }
        }
        for (const QStringList& menu : builtInFields("SK")) {
            QVERIFY(menus.contains(menu.at(0)));
        }
    }

    void the_built_in_values_lie_in_their_ranges()
    {
        int checked = 0;
        for (const QStringList& key : builtInFields("AK")) {
            const bool isSlider = key.at(3) == "3";
            if ((key.at(3) != "1" || key.at(6) == "7") && !isSlider) {
                continue;
            }
            // a percentage is typed in percent and kept as a fraction
            const bool isPercent = key.at(3) == "1" && key.at(6) == "5";
            const double value = key.at(8).toDouble() * (isPercent ? 100 : 1);
            bool inside = false;
            for (const QString& range : key.at(5).split(':')) {
                const QStringList bounds = range.split(' ');
                QVERIFY2(bounds.size() == 2, qPrintable(key.join(',')));
                const double low = bounds.at(isSlider ? 1 : 0).toDouble();
                const double high = bounds.at(isSlider ? 0 : 1).toDouble();
                QVERIFY2(low < high, qPrintable(key.join(',')));
                inside = inside || (low <= value && value <= high);
            }
            QVERIFY2(inside, qPrintable(key.join(',')));
            checked += 1;
        }
        QVERIFY(checked > 20);
    }

    void the_built_in_labels_have_no_word_wider_than_a_key()
    {
        for (const QStringList& key : builtInFields("AK")) {
            for (const QString& word : key.at(2).split(' ')) {
                QVERIFY2(word.size() <= 13, qPrintable(key.at(2)));
            }
            QVERIFY2(key.at(2).size() <= 36, qPrintable(key.at(2)));
        }
    }
};

QN740_TEST_MAIN(tst_MenuFile)
#include "tst_MenuFile.moc"

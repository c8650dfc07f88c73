#include "support/TestMain.h"
#include "wire/Commands.h"
#include "wire/Log.h"

using namespace Qt::StringLiterals;

using wire::FieldType;

class tst_Commands : public QObject
{
    Q_OBJECT

private slots:
    void both_directions_have_their_words()
    {
        QStringList words;
        for (const wire::Command& command : wire::toPanel()) {
            words += command.word;
        }
        words.sort();
        QCOMPARE(words.join(u' '),
            u"AK CK CLEAR CM CV DB EI HM IK LC MS PAX PING PM SB SF SH SK SM SP SQ ST Slave "_s
            u"VER"_s);
        words.clear();
        for (const wire::Command& command : wire::fromPanel()) {
            words += command.word;
        }
        QCOMPARE(words.join(u' '), u"PONG Slave Main"_s);
    }

    void words_are_unique_and_field_counts_consistent()
    {
        for (const auto& commands : {wire::toPanel(), wire::fromPanel()}) {
            for (const wire::Command& command : commands) {
                QCOMPARE(wire::findCommand(commands, command.word), &command);
                QVERIFY2(command.minFields <= command.completeFields, command.word.data());
                QVERIFY2(command.completeFields <= command.fields.size(), command.word.data());
            }
        }
    }

    // The fields as letters: n name, t text, i integer, r number, f flag, p placement, s state,
    // l positions; a capital for one whose type must fit, "*" when the last one may come again.
    void a_word_has_its_room_counts_and_fields_data()
    {
        QTest::addColumn<bool>("fromPanel");
        QTest::addColumn<wire::Room>("room");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("complete");
        QTest::addColumn<QString>("fields");
        const auto row = [](const char* word, wire::Room room, int minimum, int complete,
                             const char* fields, bool fromPanel = false) {
            QTest::addRow("%s%s", word, fromPanel ? " of the panel" : "")
                << fromPanel << room << minimum << complete << QString::fromLatin1(fields);
        };
        using wire::Room;
        row("AK", Room::Menus, 11, 11, "nntittitrfsp");
        row("SK", Room::Menus, 1, 1, "n");
        row("CK", Room::Menus, 2, 3, "nns");
        row("CV", Room::Menus, 2, 4, "nnrf");
        row("CM", Room::Menus, 1, 3, "Nnn");
        row("MS", Room::Menus, 1, 3, "Nnn");
        row("PAX", Room::Menus, 1, 1, "i");
        row("EI", Room::Menus, 3, 3, "nnl");
        row("IK", Room::Menus, 6, 6, "tIttIttR");
        row("CLEAR", Room::Menus, 0, 0, "");
        row("SB", Room::Link, 1, 2, "It");
        row("DB", Room::Link, 1, 1, "tt");
        row("PING", Room::Link, 0, 0, "");
        row("Slave", Room::Link, 0, 0, "I");
        row("VER", Room::Link, 0, 0, "");
        row("SQ", Room::Scopes, 2, 2, "II");
        row("SM", Room::Scopes, 2, 2, "II");
        row("PM", Room::Scopes, 3, 3, "RII");
        row("SH", Room::Spectrum, 2, 2, "II");
        row("LC", Room::Spectrum, 1, 1, "II");
        row("SP", Room::Spectrum, 2, 2, "II");
        row("SF", Room::Spectrum, 2, 2, "IR");
        row("HM", Room::Spectrum, 1, 1, "IR*");
        row("ST", Room::Spectrum, 1, 1, "t");
        row("PONG", Room::Link, 0, 0, "", true);
        row("Slave", Room::Link, 1, 1, "I", true);
        row("Main", Room::Menus, 0, 0, "", true);
    }

    void a_word_has_its_room_counts_and_fields()
    {
        QFETCH(bool, fromPanel);
        QFETCH(wire::Room, room);
        const QString word = QString::fromLatin1(QTest::currentDataTag()).section(u' ', 0, 0);
        const wire::Command* command =
            wire::findCommand(fromPanel ? wire::fromPanel() : wire::toPanel(), word);
        QVERIFY(command != nullptr);
        QCOMPARE(command->room, room);
        QTEST(static_cast<int>(command->minFields), "minimum");
        QTEST(static_cast<int>(command->completeFields), "complete");
        QString fields;
        for (const wire::Field& field : command->fields) {
            const QChar letter = u"tnirfpsl"_s.at(static_cast<int>(field.type));
            fields += field.isRequired ? letter.toUpper() : letter;
        }
        if (command->repeatsLast) {
            fields += u'*';
        }
        QTEST(fields, "fields");
    }

    void a_word_is_found_only_when_it_matches_exactly()
    {
        QCOMPARE(wire::findCommand(wire::toPanel(), u"PING"_s)->word, wire::word::Ping);
        for (const char* unknown : {"ping", "PING ", " PING", "", "PONG", "Main"}) {
            QVERIFY2(
                wire::findCommand(wire::toPanel(), QString::fromUtf8(unknown)) == nullptr, unknown);
        }
        QVERIFY(wire::findCommand(wire::fromPanel(), u"PING"_s) == nullptr);
    }

    void a_message_needs_as_many_fields_as_the_table_says_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<int>("needed");
        QTest::newRow("a key") << "AK" << 11;
        QTest::newRow("a key to press at once") << "IK" << 6;
        QTest::newRow("locked choices") << "EI" << 3;
        QTest::newRow("a query without fields") << "PING" << 0;
    }

    void a_message_needs_as_many_fields_as_the_table_says()
    {
        QFETCH(QString, word);
        QFETCH(int, needed);
        const QByteArray letters = word.toLatin1();
        const QLatin1String command(letters);
        QVERIFY(wire::hasEnoughFields(command, QStringList(needed, u"1"_s)));
        QVERIFY(wire::hasEnoughFields(command, QStringList(needed + 1, u"1"_s)));
        if (needed > 0) {
            QVERIFY(!wire::hasEnoughFields(command, QStringList(needed - 1, u"1"_s)));
        }
    }

    void an_unknown_word_never_has_enough_fields()
    {
        QVERIFY(!wire::hasEnoughFields(wire::word::Pong, {}));
        QVERIFY(!wire::hasEnoughFields(QLatin1String("Foo"), QStringList(100, u"1"_s)));
    }

    void a_command_of_the_panel_is_told_from_what_a_key_sends_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("word"); // empty for what a key sends
        QTest::newRow("PONG") << "PONG"
                              << "PONG";
        QTest::newRow("Main") << "Main"
                              << "Main";
        QTest::newRow("link mode") << "Slave,2"
                                   << "Slave";
        QTest::newRow("negative link mode") << "Slave,-3"
                                            << "Slave";
        QTest::newRow("link mode without a number") << "Slave,x"
                                                    << "";
        QTest::newRow("link mode without a field") << "Slave"
                                                   << "";
        QTest::newRow("link mode with a field too many") << "Slave,1,2"
                                                         << "";
        QTest::newRow("PONG with a field") << "PONG,1"
                                           << "";
        QTest::newRow("other case") << "pong"
                                    << "";
        QTest::newRow("word of the main unit") << "PING"
                                               << "";
        QTest::newRow("key") << "R1:AGC:1"
                             << "";
        QTest::newRow("empty") << ""
                               << "";
    }

    void a_command_of_the_panel_is_told_from_what_a_key_sends()
    {
        QFETCH(QString, body);
        QFETCH(QString, word);
        const wire::Command* command = wire::commandFromPanel(body.split(u','));
        QCOMPARE(command != nullptr ? QString(command->word) : QString(), word);
    }

    void an_empty_list_is_no_command_of_the_panel()
    {
        QVERIFY(wire::commandFromPanel({}) == nullptr);
    }

    void fields_are_described_up_to_the_last_known_one()
    {
        const wire::Command* shows = wire::findCommand(wire::toPanel(), u"SK"_s);
        QCOMPARE(shows->field(0)->name, QLatin1String("menu name"));
        QVERIFY(shows->field(1) == nullptr);
        const wire::Command* markers = wire::findCommand(wire::toPanel(), u"HM"_s);
        QCOMPARE(markers->field(1)->name, QLatin1String("level"));
        QCOMPARE(markers->field(100), markers->field(1));
        QVERIFY(wire::findCommand(wire::toPanel(), u"PING"_s)->field(0) == nullptr);
    }

    void a_field_fits_its_type_data()
    {
        QTest::addColumn<FieldType>("type");
        QTest::addColumn<QStringList>("good");
        QTest::addColumn<QStringList>("bad");
        QTest::newRow("text") << FieldType::Text << QStringList{u""_s, u"x"_s, u"1"_s}
                              << QStringList{};
        QTest::newRow("name") << FieldType::Name << QStringList{u"x"_s, u" "_s}
                              << QStringList{u""_s};
        QTest::newRow("integer") << FieldType::Integer
                                 << QStringList{u"0"_s, u"-7"_s, u"2147483647"_s}
                                 << QStringList{
                                        u""_s, u"x"_s, u"1.5"_s, u"0x2"_s, u"99999999999"_s};
        QTest::newRow("number") << FieldType::Number
                                << QStringList{u"0"_s, u"-7.5"_s, u"1e3"_s, u"nan"_s}
                                << QStringList{u""_s, u"x"_s, u"1.2.3"_s};
        QTest::newRow("flag") << FieldType::Flag << QStringList{u"0"_s, u"1"_s}
                              << QStringList{u""_s, u"2"_s, u"01"_s, u"x"_s};
        QTest::newRow("placement") << FieldType::Placement << QStringList{u"0"_s, u"1"_s, u""_s}
                                   << QStringList{u"2"_s, u"x"_s};
        QTest::newRow("state") << FieldType::State << QStringList{u"0"_s, u"1"_s, u"2"_s}
                               << QStringList{u""_s, u"3"_s, u"-1"_s};
        QTest::newRow("positions")
            << FieldType::Positions << QStringList{u""_s, u"1"_s, u"0:2:3"_s, u"1::2"_s}
            << QStringList{u"x"_s, u"1:x"_s, u"1.5"_s};
    }

    void a_field_fits_its_type()
    {
        QFETCH(FieldType, type);
        QFETCH(QStringList, good);
        QFETCH(QStringList, bad);
        for (const QString& text : good) {
            QVERIFY2(wire::fits(type, text), qPrintable(text));
        }
        for (const QString& text : bad) {
            QVERIFY2(!wire::fits(type, text), qPrintable(text));
        }
        QCOMPARE(wire::description(type).isEmpty(), type == FieldType::Text);
    }

    void the_reason_says_why_a_message_is_ignored_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* message, const char* reason) {
            QTest::newRow(message) << QString::fromUtf8(message) << QString::fromUtf8(reason);
        };
        row("AK,Menu,k,L,5,C,,0,,0", "AK: 9 fields, needs 11");
        row("AK", "AK: 0 fields, needs 11");
        row("AK,Menu,k,L,5,C,,0,,0,0,1", "");
        row("AK,Menu,k,L,x,C,,x,,x,x,x", ""); // a field that is not a number counts as 0
        row("SK", "SK: 0 fields, needs 1");
        row("SK,Nowhere", "");
        row("CK,Menu", "CK: 1 field, needs 2");
        row("CK,Menu,k", ""); // a missing state counts as 0
        row("CV,Menu,k", "");
        row("EI,Menu,k", "EI: 2 fields, needs 3");
        row("SM,1", "SM: 1 field, needs 2");
        row("SM,1,x", "SM: the mode must be a whole number, not \"x\"");
        row("SM,\t,1", "SM: the demodulator must be a whole number, not \"\\x09\"");
        row("PM,x,1,1", "PM: the phase must be a number, not \"x\"");
        row("LC,1", "");
        row("LC,1,x", "LC: the trace must be a whole number, not \"x\"");
        row("HM,0,-10,-20,x", "HM: the level must be a number, not \"x\"");
        row("Slave", "");
        row("Slave,x", "Slave: the link mode must be a whole number, not \"x\"");
        row("IK,L,0,C,,0", "IK: 5 fields, needs 6");
        row("PING,what,ever", "");
        row("Foo", "unknown word Foo");
        row("", "unknown word ");
        row("\x7f,1", "unknown word \\x7f");
    }

    void the_reason_says_why_a_message_is_ignored()
    {
        QFETCH(QString, message);
        QStringList fields = message.split(u',');
        const QString word = fields.takeFirst();
        QTEST(wire::whyIgnored(word, fields), "reason");
    }

    void a_long_field_is_cut_in_the_reason()
    {
        QCOMPARE(wire::whyIgnored(QString(1000, u'A'), {}),
            QString(u"unknown word "_s + QString(40, u'A') + u"..."_s));
    }

    void a_value_of_another_type_is_reported_with_its_field()
    {
        const wire::Command* command = wire::findCommand(wire::toPanel(), wire::word::SM);
        QCOMPARE(wire::wrongValue(*command, *command->field(1), u"x"_s),
            u"SM: the mode must be a whole number, not \"x\""_s);
        QCOMPARE(wire::wrongValue(*command, *command->field(1), u"%1"_s),
            u"SM: the mode must be a whole number, not \"%1\""_s);
    }

    void text_from_the_line_is_shown_printable_and_short()
    {
        QCOMPARE(wire::excerpt(u""_s), u""_s);
        QCOMPARE(wire::excerpt(u"a\tb"_s), u"a\\x09b"_s);
        QCOMPARE(wire::excerpt(QString(40, u'A')), QString(40, u'A'));
        QCOMPARE(wire::excerpt(QString(41, u'A')), QString(QString(40, u'A') + u"..."_s));
    }

    void a_message_is_built_with_its_frame()
    {
        QCOMPARE(wire::message(wire::word::Pong), u"\x02PONG\x04"_s);
        QCOMPARE(wire::message(wire::word::Slave, {u"2"_s}), u"\x02Slave,2\x04"_s);
    }

    void an_ignored_message_is_logged_at_debug_level_only()
    {
        static QStringList logged;
        logged.clear();
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext& context, const QString& text) {
                logged += QString::fromUtf8(context.category) + u' ' + text;
            });
        wire::logIgnored(logMenus(), wire::word::SK, u"no menu Nowhere"_s);
        QLoggingCategory::setFilterRules(u"qn740.menus.debug=true"_s);
        wire::logIgnored(logMenus(), wire::word::SK, u"no menu No\twhere"_s);
        QLoggingCategory::setFilterRules(u""_s);
        qInstallMessageHandler(before);
        QCOMPARE(logged, QStringList{u"qn740.menus SK: no menu No\\x09where"_s});
    }
};

QN740_TEST_MAIN(tst_Commands)
#include "tst_Commands.moc"

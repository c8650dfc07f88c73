// The simulator accepts every example of docs/protocol.md, and the panel does what the list under
// the example says.
#include "app/ProtocolExamples.h"
#include "scopes/IqBlockDecoder.h"
#include "sim/card/CardPort.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/scope/ScopeBytes.h"
#include "sim/unit/MenuFile.h"
#include "spectrum/BusFrame.h"
#include "support/LineEnd.h"
#include "support/TestMain.h"
#include "wire/Commands.h"
#include "wire/Message.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int ShortMs = 50; // wait for something that is known not to come

QByteArray document()
{
    QFile file(QString::fromUtf8(QT_TESTCASE_SOURCEDIR "/../docs/protocol.md"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Returns the lines of all blocks of this kind.
QList<QByteArray> blockOf(const QByteArray& kind)
{
    QList<QByteArray> lines;
    bool inBlock = false;
    for (const QByteArray& line : document().split('\n')) {
        if (line == "```" + kind) {
            inBlock = true;
        } else if (line == "```") {
            inBlock = false;
        } else if (inBlock) {
            lines += line;
        }
    }
    return lines;
}

QByteArray block(const char* messages, const char* list)
{
    return QByteArray("Text\n\n```menu\n") + messages + "\n```\n" + list + "\n";
}

QString outcome(const char* messages, const char* list, int patienceMs = ExampleRun::MaxWaitMs)
{
    QStringList faults;
    const auto examples = Example::read(block(messages, list), faults);
    if (examples.size() != 1 || !faults.isEmpty()) {
        return u"not read: "_s + faults.join(u"; "_s);
    }
    return ExampleRun(examples.first(), patienceMs).failure();
}

const char* const Toggle = "AK,Menu,agc,AGC,0,R1:AGC:,,0,,0,0,1\nSK,Menu";

} // namespace

class tst_ProtocolExamples : public QObject
{
    Q_OBJECT

    QList<Example> m_examples;

private slots:
    void initTestCase()
    {
        QStringList faults;
        m_examples = Example::read(document(), faults);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
        QVERIFY(!m_examples.isEmpty());
    }

    void every_message_has_an_example()
    {
        QStringList missing;
        for (const wire::Command& command : wire::toPanel()) {
            missing += command.word;
        }
        for (const Example& example : std::as_const(m_examples)) {
            for (const QByteArray& line : example.messages.split('\n')) {
                missing.removeAll(QString::fromUtf8(line.split(',').first()));
            }
        }
        QCOMPARE(missing, QStringList());
    }

    void an_example_holds_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < m_examples.size(); ++i) {
            const QByteArray first = m_examples.at(i).messages.split('\n').first();
            QTest::addRow("%d %s", m_examples.at(i).line, first.left(30).constData()) << i;
        }
    }

    void an_example_holds()
    {
        QFETCH(int, index);
        const Example& example = m_examples.at(index);
        const MenuFile file = MenuFile::parse(example.messages, u"docs/protocol.md"_s);
        QVERIFY2(file.errors().isEmpty(), qPrintable(file.errors().join(u'\n')));
        const QString failure = ExampleRun(example).failure();
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
    }

    void a_scope_record_is_decoded_to_the_documented_values_data()
    {
        QTest::addColumn<QByteArray>("line");
        for (const QByteArray& line : blockOf("iq")) {
            QTest::newRow(line.constData()) << line;
        }
    }

    void a_scope_record_is_decoded_to_the_documented_values()
    {
        QFETCH(QByteArray, line);
        const QList<QByteArray> fields = line.simplified().split(' ');
        QCOMPARE(fields.size(), iqBlock::RecordBytes + 3);
        const QByteArray record = QByteArray::fromHex(fields.mid(0, iqBlock::RecordBytes).join());
        const int index = fields.at(iqBlock::RecordBytes).toInt();
        QVERIFY(index > 0); // the first record holds the I of the one before
        const QVector<int> zeros(iqBlock::Records, 0);
        QByteArray block = scopeBytes::block(zeros, zeros);
        block.replace(index * iqBlock::RecordBytes, iqBlock::RecordBytes, record);
        IqBlockDecoder decoder;
        decoder.take(block.constData(), block.size());
        QVERIFY(decoder.blockReady());
        QVERIFY(qAbs(decoder.i().at(index) - fields.at(7).toDouble()) < 1e-9);
        QVERIFY(qAbs(decoder.q().at(index) - fields.at(8).toDouble()) < 1e-9);
    }

    void the_simulated_card_answers_as_documented()
    {
        PseudoTerminal line;
        CardSpectrum spectrum;
        const CardPort card(CardPort::Type::Older, line, spectrum, CardFaults());
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QByteArray expected;
        int requests = 0;
        for (const QByteArray& text : blockOf("bus")) {
            const QByteArray bytes =
                wire::fromPrintable(QString::fromLatin1(text.mid(2))).toLatin1();
            if (text.startsWith('<')) {
                expected += bytes;
                QTRY_COMPARE(panel.received(), expected);
                bus::ReplyBuffer buffer;
                CmdMsg reply;
                buffer.append(bytes);
                QVERIFY(buffer.take(reply, bus::Layout::Decimal) == bus::ReplyBuffer::Found::Reply);
                continue;
            }
            QVERIFY(text.startsWith("> "));
            // The panel frames it in the same way.
            const QString request = QString::fromLatin1(bytes.mid(1, bytes.size() - 3));
            QCOMPARE(bus::frame(request, '[', ']', true), bytes);
            QVERIFY(panel.write(bytes));
            ++requests;
        }
        QVERIFY(requests >= 3);
        QCOMPARE(card.answered(), requests);
    }

    void an_item_that_is_not_understood_is_a_fault_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<QString>("fault");
        QTest::newRow("unknown statement") << QByteArray("- the panel sends `PONG`")
                                           << "6: not understood: the panel sends `PONG`";
        QTest::newRow("words after the statement") << QByteArray("- panel sends `PONG` soon")
                                                   << "6: not understood: panel sends `PONG` soon";
        QTest::newRow("no backticks")
            << QByteArray("- panel sends PONG") << "6: not understood: panel sends PONG";
        QTest::newRow("second item")
            << QByteArray("- panel sends `PONG`\n- and so on") << "7: not understood: and so on";
        QTest::newRow("no statement")
            << QByteArray("Text") << "3: has no statement about the result";
        QTest::newRow("statement after other text")
            << QByteArray("Text\n- panel sends `PONG`") << "3: has no statement about the result";
    }

    void an_item_that_is_not_understood_is_a_fault()
    {
        QFETCH(QByteArray, list);
        QFETCH(QString, fault);
        QStringList faults;
        Example::read(block("PING", list.constData()), faults);
        QVERIFY2(faults.contains(fault), qPrintable(faults.join(u'\n')));
    }

    void a_statement_that_does_not_hold_is_reported_data()
    {
        QTest::addColumn<QByteArray>("messages");
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<QString>("failure");
        const auto notHeld = [](const char* text) {
            return u"\"%1\" does not hold"_s.arg(QString::fromUtf8(text));
        };
        QTest::newRow("another answer") << QByteArray("PING") << QByteArray("- panel sends `PANG`")
                                        << "sent in place of \"\x02PANG\x04\": \"\x02PONG\x04\"";
        QTest::newRow("no answer") << QByteArray("SB,0,Text") << QByteArray("- panel sends `PANG`")
                                   << notHeld("panel sends `PANG`");
        QTest::newRow("one answer more")
            << QByteArray("PING") << QByteArray("- panel sends nothing")
            << "sent, and not expected: \"\x02PONG\x04\"";
        QTest::newRow("another key")
            << QByteArray(Toggle)
            << QByteArray("- operator presses `AGC`\n- panel sends `R1:AGC:0`")
            << "sent in place of \"\x02R1:AGC:0\x04\": \"\x02R1:AGC:1\x04\"";
        QTest::newRow("one message more")
            << QByteArray(Toggle) << QByteArray("- operator presses `AGC`")
            << "sent, and not expected: \"\x02R1:AGC:1\x04\"";
        QTest::newRow("no such key to press")
            << QByteArray(Toggle) << QByteArray("- operator presses `Gain`")
            << notHeld("operator presses `Gain`");
        QTest::newRow("no such key to see")
            << QByteArray(Toggle) << QByteArray("- menu `Menu` shows the key `Gain`")
            << notHeld("menu `Menu` shows the key `Gain`");
        QTest::newRow("a key that is there")
            << QByteArray(Toggle) << QByteArray("- menu `Menu` does not show the key `AGC`")
            << notHeld("menu `Menu` does not show the key `AGC`");
        QTest::newRow("another menu")
            << QByteArray(Toggle) << QByteArray("- menu `Other` does not show the key `Gain`")
            << notHeld("menu `Other` does not show the key `Gain`");
        QTest::newRow("another colour") << QByteArray(Toggle) << QByteArray("- key `AGC` is green")
                                        << notHeld("key `AGC` is green");
        QTest::newRow("another status")
            << QByteArray(Toggle) << QByteArray("- status bar shows `Ready`")
            << notHeld("status bar shows `Ready`");
        QTest::newRow("status bar there")
            << QByteArray(Toggle) << QByteArray("- status bar is hidden")
            << notHeld("status bar is hidden");
        QTest::newRow("another mode")
            << QByteArray(Toggle) << QByteArray("- link mode shows `Diversity Mode`")
            << notHeld("link mode shows `Diversity Mode`");
        QTest::newRow("no box") << QByteArray(Toggle) << QByteArray("- box shows `Text`")
                                << notHeld("box shows `Text`");
        const QByteArray spectrum("ST,1\nSF,0,2250.5\nSP,0,4\nHM,0,-60");
        const QByteArray toCharts("- panel sends `D1:SPEN:1D2:SPEN:1D2:SPEN:1` without a frame\n"
                                  "- operator presses `Scopes` `Spectrum`\n- ");
        const auto chart = [&](const char* name, const char* statement) {
            QTest::newRow(name) << spectrum << toCharts + statement << notHeld(statement);
        };
        chart("chart hidden", "chart `0` is hidden");
        chart("another middle", "chart `0` has `2250.6` MHz in its middle");
        chart("another width", "chart `0` is `20` MHz wide");
        chart("other markers", "chart `0` has markers at `-61`");
        chart("one marker more", "chart `0` has markers at `-60` `-70`");
        chart("markers", "chart `0` has no markers");
        chart("another trace", "chart `0` is `red`");
        QTest::newRow("no charts yet")
            << QByteArray("SF,0,2250.5") << QByteArray("- chart `0` is shown")
            << notHeld("chart `0` is shown");
        const QByteArray toScopes("- operator presses `Scopes`\n- ");
        const auto scope = [&](const char* name, const char* message, const char* statement) {
            QTest::newRow(name) << QByteArray(message) << toScopes + statement
                                << notHeld(statement);
        };
        scope("scope hidden", "SQ,1,1", "scope `1` is hidden");
        scope("scope shown", "SQ,1,0", "scope `1` is shown");
        scope("another colour of a scope", "LC,1,1", "scope `1` is `red`");
        scope("colour of another scope", "LC,1,1", "scope `2` is `lime`");
        scope("another phase", "PM,0.25,60,75", "phase `67.5\u00b0` is lit");
        scope("other magnitudes", "PM,0.25,60,75", "magnitudes are `60` and `74`");
        QTest::newRow("editor left open")
            << QByteArray("AK,Menu,ip,IP,6,SYS:IP:,,0,,0,0,1\nSK,Menu")
            << QByteArray("- operator presses `IP` `AGC`") << notHeld("operator presses `AGC`");
    }

    void a_statement_that_does_not_hold_is_reported()
    {
        QFETCH(QByteArray, messages);
        QFETCH(QByteArray, list);
        QFETCH(QString, failure);
        // A wait for something that never comes is short. Everything else comes soon, however slow
        // the machine is.
        const int patience = failure.endsWith(u"does not hold"_s) ? ShortMs : ExampleRun::MaxWaitMs;
        QCOMPARE(outcome(messages.constData(), list.constData(), patience), failure);
    }

    void statements_that_hold_pass()
    {
        QCOMPARE(outcome(Toggle, "- operator presses `AGC`\n- panel sends `R1:AGC:1`"), QString());
    }
};

QN740_TEST_MAIN(tst_ProtocolExamples)
#include "tst_ProtocolExamples.moc"

// These tests check messages that arrive on the line for re-sent messages and are sent on to the
// main unit.
#include "app/ScopesFixture.h"
#include "link/LinkControl.h"
#include "support/TestMain.h"
#include "wire/SerialLine.h"

#include <QRegularExpression>

class tst_ResentMessages : public ScopesFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void messages_of_the_resend_line_go_to_the_main_unit()
    {
        Pty& line = *newWindowWithResendLine();
        m_window->rooms().link->setMode(1);
        QVERIFY(line.write("junk\x02"
                           "D1:A"));
        QVERIFY(line.write(QByteArray("BC,1\x04\x04more\x02"
                                      "D2:DSDM:1\x04")));
        QTRY_COMPARE(m_pty->received(), framed("D1 D2 D3:ABC,1") + framed("D2:DSDM:1"));
    }

    void an_unfinished_message_is_dropped_when_the_resend_line_is_lost()
    {
        Pty* line = newWindowWithResendLine();
        // When the first message arrives, the beginning of the second has been read as well.
        QVERIFY(line->write(framed("D1:A") +
            "\x02"
            "D1:DSDM:"));
        QTRY_COMPARE(m_pty->received(), framed("D1:A"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("was lost")));
        line->close();
        const SerialLine* resend = resendLine();
        QVERIFY(resend != nullptr);
        QTRY_VERIFY(!resend->isOpen());
        line = &m_devices->add(QStringLiteral("ttyUSB4"));
        QTRY_VERIFY_WITH_TIMEOUT(resend->isOpen(), 20000);
        QVERIFY(line->write("1\x04" + framed("D1:B")));
        QTRY_COMPARE(m_pty->received(), framed("D1:A") + framed("D1:B"));
    }

    void an_endless_message_on_the_resend_line_is_dropped()
    {
        Pty* line = newWindowWithResendLine();
        const QByteArray longest = framed("D1:" + QByteArray(1000, 'A'));
        QVERIFY(line->write(longest));
        QTRY_COMPARE(m_pty->received(), longest);
        m_pty->takeReceived();
        QVERIFY(line->write(framed("D1:" + QByteArray(100'000, 'B')) + framed("D1:C")));
        QTRY_COMPARE(m_pty->received(), framed("D1:C"));
    }

private:
    // Creates a window while the re-send line is present, and returns the line.
    Pty* newWindowWithResendLine()
    {
        m_window.reset();
        Pty* line = &m_devices->add(QStringLiteral("ttyUSB4"));
        m_pty = &m_devices->add(QStringLiteral("ttyO1"));
        m_window = std::make_unique<MainWindow>();
        return line;
    }

    const SerialLine* resendLine() const
    {
        for (const SerialLine* line : m_window->findChildren<SerialLine*>()) {
            if (line->name() == QLatin1String("ttyUSB4")) {
                return line;
            }
        }
        return nullptr;
    }
};

QN740_TEST_MAIN(tst_ResentMessages)
#include "tst_ResentMessages.moc"

#include "scopes/PlotView.h"
#include "scopes/ScopeMessages.h"
#include "scopes/ScopesPage.h"
#include "scopes/Streams.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QLabel>
#include <QLoggingCategory>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

#include <array>
#include <map>

using namespace Qt::StringLiterals;

class tst_ScopeMessages : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        for (int n = 1; n <= 3; ++n) {
            m_scopeLines[n] = &m_devices->add(QStringLiteral("ttyUSB%1").arg(n));
        }
        m_page = std::make_unique<ScopesPage>();
        m_messages = std::make_unique<ScopeMessages>(*m_page);
    }

    void cleanup()
    {
        m_messages.reset();
        m_page.reset();
        m_devices.reset();
    }

    void sm_sets_a_demodulator_s_display_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("plotType");
        QTest::addColumn<int>("stored");
        QTest::newRow("off after SDI") << 3 << 0 << "Demod %1 Off" << 1 << 0;
        QTest::newRow("off after constellation") << 1 << 0 << "Demod %1 Off" << 1 << 0;
        QTest::newRow("constellation") << 3 << 1 << "Demod %1 Constellation" << 2 << 2;
        QTest::newRow("eye") << 1 << 2 << "Demod %1 Eye Pattern" << 1 << 1;
        QTest::newRow("SDI") << 2 << 3 << "Demod %1 SDI" << 0 << 3;
    }

    void sm_sets_a_demodulator_s_display()
    {
        QFETCH(int, before);
        QFETCH(int, mode);
        QFETCH(QString, text);
        for (const int demodulator : {1, 2, 3}) {
            for (const int each : {1, 2, 3}) {
                send("SM," + QByteArray::number(each) + ',' + QByteArray::number(before));
            }
            const QStringList displays = scopeDisplays();
            send("SM," + QByteArray::number(demodulator) + ',' + QByteArray::number(mode));
            QCOMPARE(m_page->modeButton(demodulator)->text(), text.arg(demodulator));
            QTEST(m_page->scope(demodulator)->plotType(), "plotType");
            QTEST(m_page->storedMode(demodulator), "stored");
            for (const int other : {1, 2, 3}) {
                if (other != demodulator) {
                    QCOMPARE(scopeDisplays().at(other - 1), displays.at(other - 1));
                }
            }
        }
    }

    void an_sm_of_no_demodulator_or_mode_changes_nothing_data()
    {
        QTest::addColumn<QByteArray>("message");
        for (const char* none : {"SM,4,1", "SM,0,1", "SM,-1,1", "SM,1,4", "SM,2,4", "SM,3,-1",
                 "SM,1", "SM,2", "SM,3", "SM", "SM,x,1", "SM,1,x", "SM,2,x", "SM,3,1.5", "SM,2,",
                 "SM,,", "SM,,1", "SM,99999999999,1", "SM,1,99999999999"}) {
            QTest::newRow(none) << QByteArray(none);
        }
    }

    void an_sm_of_no_demodulator_or_mode_changes_nothing()
    {
        QFETCH(QByteArray, message);
        for (const auto& modes : {std::array{3, 2, 2}, std::array{2, 3, 3}}) {
            for (const int demodulator : {1, 2, 3}) {
                m_page->setMode(
                    demodulator, *ScopeMode::ofMessage(modes.at(size_t(demodulator) - 1)));
            }
            const QStringList before = scopeDisplays();
            send(message);
            QCOMPARE(scopeDisplays(), before);
        }
    }

    void sq_hides_and_shows_a_demodulator_s_plots()
    {
        const auto shown = [this] {
            QList<bool> all;
            for (const int demodulator : {1, 2, 3}) {
                all += m_page->scope(demodulator)->plotsShown();
            }
            return all;
        };
        for (const int demodulator : {1, 2, 3}) {
            const QByteArray message = "SQ," + QByteArray::number(demodulator) + ',';
            QList<bool> expected{true, true, true};
            QCOMPARE(shown(), expected);
            send(message + '0');
            expected[demodulator - 1] = false;
            QCOMPARE(shown(), expected);
            expected[demodulator - 1] = true;
            for (const char* something : {"7", "-1", "1"}) {
                send(message + something);
                QCOMPARE(shown(), expected);
                send(message + '0');
            }
            // what it shows not, it receives all the same
            QSignalSpy blocks(m_page->scope(demodulator), &Scope::rcv_eye_msg);
            QVERIFY(m_scopeLines[demodulator]->write(steady(1, 1)));
            QTRY_COMPARE(blocks.size(), 1);
            send(message + '1');
        }
    }

    void an_sq_of_no_demodulator_or_number_changes_nothing_data()
    {
        QTest::addColumn<QByteArray>("message");
        for (const char* none : {"SQ,1", "SQ,2", "SQ,3", "SQ", "SQ,1,x", "SQ,2,x", "SQ,3,x",
                 "SQ,2,", "SQ,1,0.5", "SQ,x,1", "SQ,x,0", "SQ,,0", "SQ,4,0", "SQ,4,1", "SQ,0,0",
                 "SQ,0,1", "SQ,-1,0", "SQ,2,99999999999"}) {
            QTest::newRow(none) << QByteArray(none);
        }
    }

    void an_sq_of_no_demodulator_or_number_changes_nothing()
    {
        QFETCH(QByteArray, message);
        for (const bool shown : {true, false}) {
            for (const int demodulator : {1, 2, 3}) {
                m_page->scope(demodulator)->setPlotsShown(shown);
            }
            send(message);
            for (const int demodulator : {1, 2, 3}) {
                QCOMPARE(m_page->scope(demodulator)->plotsShown(), shown);
            }
        }
    }

    void pm_shows_phase_and_magnitudes()
    {
        send("PM,0.375,40,60");
        QCOMPARE(bar("ch0Bar"), 40);
        QCOMPARE(bar("ch1Bar"), 60);
        QCOMPARE(lamp(3), QStringLiteral("QLabel{background:yellow;}"));
        for (const char* none :
            {"PM", "PM,0", "PM,0,1", "PM,x,1,2", "PM,0,x,2", "PM,0,1,x", "PM,,,"}) {
            send(none);
            QCOMPARE(bar("ch0Bar"), 40);
            QCOMPARE(bar("ch1Bar"), 60);
            QCOMPARE(lamp(3), QStringLiteral("QLabel{background:yellow;}"));
        }
        send("PM,1e300,99999,-4,extra");
        QCOMPARE(bar("ch0Bar"), 100);
        QCOMPARE(bar("ch1Bar"), 0);
        QCOMPARE(lamp(3), QStringLiteral("QLabel{background:black;}"));
    }

    void the_colour_of_a_trace_is_that_of_its_scope()
    {
        const QColor before = m_page->scope(1)->lineColor();
        for (const int trace : {-2147483647 - 1, -1, 3, 1000, 2147483647}) {
            m_messages->setLineColor(6, trace);
        }
        m_messages->setLineColor(8, 1); // no colour
        for (const int demodulator : {1, 2, 3}) {
            QCOMPARE(m_page->scope(demodulator)->lineColor(), before);
        }
        m_messages->setLineColor(6, 1);
        QCOMPARE(m_page->scope(2)->lineColor(), QColor(Qt::white));
        QCOMPARE(m_page->scope(1)->lineColor(), before);
        QCOMPARE(m_page->scope(3)->lineColor(), before);
    }

    void the_choice_of_a_mode_is_asked_for_with_its_items()
    {
        const QSignalSpy asked(m_messages.get(), &ScopeMessages::choiceWanted);
        const QSignalSpy sent(m_messages.get(), &ScopeMessages::response);
        m_messages->chooseMode(2);
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked.at(0).at(0).toInt(), 2);
        QCOMPARE(asked.at(0).at(1).toString(), ScopeMode::choices());
        QVERIFY(sent.isEmpty());
    }

    void a_choice_sets_the_scope_and_tells_the_demodulator_data()
    {
        QTest::addColumn<QString>("choice");
        QTest::addColumn<int>("stored");
        QTest::addColumn<QString>("sent");
        QTest::newRow("eye pattern") << "0" << 1
                                     << "\x02"
                                        "D3:DSDM:2\x04";
        QTest::newRow("constellation") << "1" << 2
                                       << "\x02"
                                          "D3:DSDM:1\x04";
        QTest::newRow("off") << "2" << 0
                             << "\x02"
                                "D3:DSDM:0\x04";
        QTest::newRow("none of the list") << "3" << 3 << "\x02\x04";
        QTest::newRow("cancelled") << "" << 3 << QString();
    }

    void a_choice_sets_the_scope_and_tells_the_demodulator()
    {
        QFETCH(QString, choice);
        QFETCH(QString, sent);
        send("SM,3,3");
        const QSignalSpy responses(m_messages.get(), &ScopeMessages::response);
        m_messages->applyChoice(3, choice);
        QCOMPARE(responses.size(), sent.isEmpty() ? 0 : 1);
        QCOMPARE(responses.value(0).value(0).toString(), sent);
        QTEST(m_page->storedMode(3), "stored");
        QCOMPARE(m_page->storedMode(1), 0);
    }

    void a_message_that_is_ignored_is_logged_with_the_reason()
    {
        QLoggingCategory::setFilterRules(u"qn740.scopes.debug=true"_s);
        QTest::ignoreMessage(QtDebugMsg, "SM: no demodulator 4");
        send("SM,4,1");
        QTest::ignoreMessage(QtDebugMsg, "SM: no mode 9");
        send("SM,1,9");
        QTest::ignoreMessage(QtDebugMsg, "SQ: no demodulator 0");
        send("SQ,0,1");
        QLoggingCategory::setFilterRules(u""_s);
    }

private:
    static QByteArray steady(int i, int q)
    {
        return streams::block(QVector<int>(256, i), QVector<int>(256, q));
    }

    // Carries out a message, given without its frame characters.
    void send(const QByteArray& body)
    {
        QStringList fields = QString::fromLatin1(body).split(u',');
        const QString word = fields.takeFirst();
        if (word == u"SM"_s) {
            m_messages->setMode(fields);
        } else if (word == u"SQ"_s) {
            m_messages->setPlotsShown(fields);
        } else if (word == u"PM"_s) {
            m_messages->setMagnitudesAndPhase(fields);
        } else {
            QFAIL("unknown word");
        }
    }

    // What button, scope and stored mode are of each demodulator.
    QStringList scopeDisplays() const
    {
        QStringList displays;
        for (const int demodulator : {1, 2, 3}) {
            displays += QStringLiteral("%1, type %2, mode %3")
                            .arg(m_page->modeButton(demodulator)->text())
                            .arg(m_page->scope(demodulator)->plotType())
                            .arg(m_page->storedMode(demodulator));
        }
        return displays;
    }

    int bar(const char* name) const
    {
        return m_page->findChild<QProgressBar*>(QLatin1String(name))->value();
    }

    QString lamp(int number) const
    {
        return m_page->findChild<QLabel*>(QStringLiteral("phaseLabel%1").arg(number))->styleSheet();
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    std::map<int, Pty*> m_scopeLines;
    std::unique_ptr<ScopesPage> m_page;
    std::unique_ptr<ScopeMessages> m_messages;
};

QN740_TEST_MAIN(tst_ScopeMessages)
#include "tst_ScopeMessages.moc"

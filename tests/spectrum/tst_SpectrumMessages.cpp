#include "spectrum/CardSide.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QLoggingCategory>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_SpectrumMessages : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        for (const char* name : {"ttyUSB11", "ttyUSB12", "ttyUSB13"}) {
            m_devices->add(QString::fromUtf8(name));
        }
        m_parent = std::make_unique<QWidget>();
        m_messages = new SpectrumMessages(false, m_parent.get(), m_parent.get());
    }

    void cleanup()
    {
        m_parent.reset();
        m_devices.reset();
    }

    void the_page_is_made_once_and_before_its_ports_are_opened()
    {
        int made = 0;
        connect(m_messages, &SpectrumMessages::pageMade, this, [&](SpectralCard* page) {
            ++made;
            QVERIFY(!page->k7150Type());
        });
        QVERIFY(card() == nullptr);
        m_messages->setUp();
        m_messages->setUp();
        QCOMPARE(made, 1);
        QVERIFY(card()->k7150Type() && card()->isOpen());
        QCOMPARE(card()->objectName(), u"spectralCard"_s);
    }

    void a_panel_for_the_older_card_takes_the_first_port_that_opens()
    {
        m_devices->remove(u"ttyUSB11"_s);
        QWidget parent;
        SpectrumMessages messages(true, &parent);
        messages.setUp();
        QVERIFY(!messages.card()->k7150Type() && messages.card()->isOpen());
        QCOMPARE(messages.card()->findChild<Rs422Bus*>()->portName(), u"ttyUSB12"_s);
    }

    void the_start_sends_three_texts_without_frames()
    {
        const QSignalSpy texts(m_messages, &SpectrumMessages::unframedResponse);
        const QSignalSpy started(m_messages, &SpectrumMessages::started);
        for (const char* ignored : {"ST", "ST,", "ST,0", "ST,01", "ST,2"}) {
            tell(ignored);
        }
        QVERIFY(texts.isEmpty() && started.isEmpty() && card() == nullptr);
        tell("ST,1");
        QStringList sent;
        for (const auto& text : texts) {
            sent += text.at(0).toString();
        }
        QCOMPARE(sent, (QStringList{u"D1:SPEN:1"_s, u"D2:SPEN:1"_s, u"D2:SPEN:1"_s}));
        QCOMPARE(started.size(), 1);
        QVERIFY(card() != nullptr);
    }

    void a_span_is_told_to_the_demodulator_once_however_often_it_was_started()
    {
        tell("ST,1");
        tell("ST,1");
        const QSignalSpy responses(m_messages, &SpectrumMessages::response);
        card()->SetSpan(1, 9);
        QTRY_COMPARE(responses.size(), 1);
        QCOMPARE(responses.at(0).at(0).toString(),
            u"\x02"_s
            u"D2:NFFT:10\x04"_s);
    }

    void sh_without_a_page_says_that_there_is_none_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<int>("missed");
        for (const char* message : {"SH,0,0", "SH,0,1", "SH,99,0", "SH,-1,1"}) {
            QTest::newRow(message) << QByteArray(message) << 1;
        }
        for (const char* message : {"SH,0,2", "SH,0,-1", "SH,0", "SH,x,0", "SH"}) {
            QTest::newRow(message) << QByteArray(message) << 0;
        }
    }

    void sh_without_a_page_says_that_there_is_none()
    {
        QFETCH(QByteArray, message);
        const QSignalSpy missed(m_messages, &SpectrumMessages::pageMissed);
        tell(message);
        QTEST(int(missed.size()), "missed");
        m_messages->setUp();
        tell(message);
        QTEST(int(missed.size()), "missed");
    }

    void lc_names_the_trace_whether_or_not_there_is_a_page()
    {
        const QSignalSpy set(m_messages, &SpectrumMessages::lineColorSet);
        for (const char* none : {"LC", "LC,2", "LC,2,0", "LC,2,4", "LC,2,-1", "LC,2,x", "LC,x,1"}) {
            tell(none);
        }
        QVERIFY(set.isEmpty());
        tell("LC,2,3");
        QCOMPARE(set.size(), 1);
        QCOMPARE(set.at(0).at(0).toInt(), 2);
        QCOMPARE(set.at(0).at(1).toInt(), 2);
    }

    void sf_sets_the_frequency_in_the_middle_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<double>("centre");
        QTest::newRow("channel 1") << QByteArray("SF,1,2250.5") << 2250.5;
        QTest::newRow("no frequency") << QByteArray("SF,1") << 70.0;
        QTest::newRow("no number") << QByteArray("SF,1,x") << 70.0;
        QTest::newRow("no channel") << QByteArray("SF,,2250.5") << 70.0;
        QTest::newRow("another channel") << QByteArray("SF,7,2250.5") << 70.0;
        QTest::newRow("negative channel") << QByteArray("SF,-1,2250.5") << 70.0;
        QTest::newRow("huge channel") << QByteArray("SF,2147483647,2250.5") << 70.0;
        QTest::newRow("channel beyond") << QByteArray("SF,4294967297,2250.5") << 70.0;
        QTest::newRow("negative") << QByteArray("SF,1,-2250.5") << 70.0;
        QTest::newRow("infinite") << QByteArray("SF,1,inf") << 70.0;
        QTest::newRow("not a number") << QByteArray("SF,1,nan") << 70.0;
        QTest::newRow("enormous") << QByteArray("SF,1,1e300") << 70.0;
    }

    void sf_sets_the_frequency_in_the_middle()
    {
        QFETCH(QByteArray, message);
        tell("ST,1");
        tell(message);
        QTEST(card()->centre(1), "centre");
        QCOMPARE(card()->centre(0), 70.0);
    }

    void sp_chooses_a_span_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<int>("span");
        QTest::newRow("channel 2") << QByteArray("SP,2,9") << 9;
        QTest::newRow("no span") << QByteArray("SP,2") << 0;
        QTest::newRow("no number") << QByteArray("SP,2,a") << 0;
        QTest::newRow("too high") << QByteArray("SP,2,10") << 0;
        QTest::newRow("negative") << QByteArray("SP,2,-1") << 0;
        QTest::newRow("another channel") << QByteArray("SP,3,9") << 0;
        QTest::newRow("negative channel") << QByteArray("SP,-1,9") << 0;
        QTest::newRow("lowest channel") << QByteArray("SP,-2147483648,9") << 0;
        QTest::newRow("huge channel") << QByteArray("SP,2147483647,9") << 0;
        QTest::newRow("channel beyond") << QByteArray("SP,4294967298,9") << 0;
        QTest::newRow("huge span") << QByteArray("SP,2,2147483647") << 0;
        QTest::newRow("lowest span") << QByteArray("SP,2,-2147483648") << 0;
    }

    void sp_chooses_a_span()
    {
        QFETCH(QByteArray, message);
        tell("ST,1");
        tell(message);
        QTEST(card()->getSpan(2), "span");
        QCOMPARE(card()->getSpan(0), 0);
        QCOMPARE(card()->getSpan(1), 0);
    }

    void sh_shows_and_hides_a_chart_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<bool>("shown");
        QTest::newRow("hide") << QByteArray("SH,1,0") << false;
        QTest::newRow("show") << QByteArray("SH,1,1") << true;
        QTest::newRow("neither") << QByteArray("SH,1,2") << true;
        QTest::newRow("no second field") << QByteArray("SH,1") << true;
        QTest::newRow("no number") << QByteArray("SH,1,x") << true;
        QTest::newRow("another chart") << QByteArray("SH,3,0") << true;
    }

    void sh_shows_and_hides_a_chart()
    {
        QFETCH(QByteArray, message);
        QFETCH(bool, shown);
        tell("ST,1");
        tell(message);
        QCOMPARE(card()->chartAreaVisible(1), shown);
        tell("SH,1,1");
        QVERIFY(card()->chartAreaVisible(1));
    }

    void lc_sets_the_colour_of_a_trace_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QList<int>>("colours"); // of the three charts
        QTest::newRow("trace 1") << QByteArray("LC,0,1") << QList<int>{0, 3, 1};
        QTest::newRow("trace 3") << QByteArray("LC,6,3") << QList<int>{5, 3, 6};
        QTest::newRow("no trace: all") << QByteArray("LC,4") << QList<int>{4, 4, 4};
        QTest::newRow("trace 4") << QByteArray("LC,4,4") << QList<int>{5, 3, 1};
        QTest::newRow("trace 0: all") << QByteArray("LC,4,0") << QList<int>{4, 4, 4};
        QTest::newRow("lowest number") << QByteArray("LC,4,-2147483648") << QList<int>{5, 3, 1};
        QTest::newRow("unknown colour") << QByteArray("LC,8,1") << QList<int>{5, 3, 1};
        QTest::newRow("no colour") << QByteArray("LC") << QList<int>{5, 3, 1};
        QTest::newRow("no number") << QByteArray("LC,1,x") << QList<int>{5, 3, 1};
    }

    void lc_sets_the_colour_of_a_trace()
    {
        QFETCH(QByteArray, message);
        QFETCH(QList<int>, colours);
        tell("ST,1");
        tell(message);
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(
                card()->chart(channel)->lineColor(), SpectralCard::lineColor(colours.at(channel)));
        }
    }

    void hm_sets_the_horizontal_markers_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QList<double>>("levels");
        QTest::newRow("two") << QByteArray("HM,0,-20.5,-80") << QList<double>{-20.5, -80.0};
        QTest::newRow("none") << QByteArray("HM,0") << QList<double>{};
        QTest::newRow("no number") << QByteArray("HM,0,-20,x") << QList<double>{-1.0};
        QTest::newRow("no channel") << QByteArray("HM") << QList<double>{-1.0};
        QTest::newRow("another channel") << QByteArray("HM,5,-20") << QList<double>{-1.0};
        QTest::newRow("wild") << QByteArray("HM,0,nan,inf,1e300,-30") << QList<double>{-30.0};
    }

    void hm_sets_the_horizontal_markers()
    {
        QFETCH(QByteArray, message);
        tell("ST,1");
        card()->setHMarkers(0, {-1.0});
        tell(message);
        QFETCH(QList<double>, levels);
        const QList<double> shown = card()->chart(0)->hMarkers();
        QCOMPARE(shown.size(), levels.size());
        for (qsizetype i = 0; i < levels.size(); ++i) {
            QCOMPARE(shown.at(i), levels.at(i));
        }
    }

    void the_choice_of_a_span_is_asked_for_and_set()
    {
        const QSignalSpy asked(m_messages, &SpectrumMessages::choiceWanted);
        m_messages->chooseSpan();
        m_messages->applyChoice(u"3"_s);
        QVERIFY(asked.isEmpty());
        m_messages->setUp();
        m_messages->chooseSpan();
        QCOMPARE(asked.size(), 1);
        QVERIFY(asked.at(0).at(0).toString().startsWith(u"0 1 MHz:1 3 MHz:2 5 MHz:3 7.5 Mhz:"_s));
        m_messages->applyChoice(u"3"_s);
        QCOMPARE(card()->getSpan(0), 3);
        for (const char* none : {"", "x", "10", "-1"}) {
            m_messages->applyChoice(QString::fromUtf8(none));
            QCOMPARE(card()->getSpan(0), 3);
        }
    }

    void a_message_that_is_ignored_is_logged_with_the_reason()
    {
        QLoggingCategory::setFilterRules(u"qn740.spectrum.debug=true"_s);
        QTest::ignoreMessage(QtDebugMsg, "SF: no spectrum yet");
        tell("SF,0,2250.5");
        QTest::ignoreMessage(QtDebugMsg, "LC: no trace -1");
        tell("LC,0,-1");
        QTest::ignoreMessage(QtDebugMsg, "SH: neither 0 nor 1");
        tell("SH,0,2");
        m_messages->setUp();
        QTest::ignoreMessage(QtDebugMsg, "SP: no channel 3");
        tell("SP,3,1");
        QLoggingCategory::setFilterRules(u""_s);
    }

private:
    SpectralCard* card() const { return m_messages->card(); }

    // Carries out a message, given without its frame characters.
    void tell(const QByteArray& body)
    {
        using Handler = void (SpectrumMessages::*)(const QStringList&);
        static const QHash<QString, Handler> Handlers{{u"ST"_s, &SpectrumMessages::start},
            {u"SF"_s, &SpectrumMessages::setFrequency}, {u"SP"_s, &SpectrumMessages::setSpan},
            {u"SH"_s, &SpectrumMessages::setChartShown}, {u"LC"_s, &SpectrumMessages::setLineColor},
            {u"HM"_s, &SpectrumMessages::setMarkers}};
        QStringList fields = QString::fromLatin1(body).split(u',');
        const Handler handler = Handlers.value(fields.takeFirst());
        QVERIFY(handler != nullptr);
        (m_messages->*handler)(fields);
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    std::unique_ptr<QWidget> m_parent;
    SpectrumMessages* m_messages = nullptr;
};

QN740_TEST_MAIN(tst_SpectrumMessages)
#include "tst_SpectrumMessages.moc"

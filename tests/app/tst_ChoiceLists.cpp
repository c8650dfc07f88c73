#include "app/ChoiceLists.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {
const QString Choices(u"0 Eye Pattern:1 Constellation:2 Off:"_s);
const QString Spans(u"0 1 MHz:1 3 MHz:2 5 MHz:3 7.5 Mhz"_s);
} // namespace

class tst_ChoiceLists : public QObject
{
    Q_OBJECT

private slots:
    void a_chosen_scope_mode_is_answered_with_its_demodulator_data()
    {
        QTest::addColumn<int>("demodulator");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("choice");
        QTest::newRow("first choice") << 1 << "Eye Pattern"
                                      << "0";
        QTest::newRow("last choice") << 3 << "Off"
                                     << "2";
        QTest::newRow("cancelled") << 2 << "Cancel"
                                   << "";
    }

    void a_chosen_scope_mode_is_answered_with_its_demodulator()
    {
        QFETCH(int, demodulator);
        QFETCH(QString, button);
        ChoiceLists lists;
        const QSignalSpy modes(&lists, &ChoiceLists::scopeModeChosen);
        const QSignalSpy spans(&lists, &ChoiceLists::spanChosen);
        QString title;
        whenModal([&](QWidget* dialog) {
            title = dialog->windowTitle();
            QVERIFY(modes.isEmpty());
            popUps::press(dialog, button);
        });
        lists.askScopeMode(demodulator, Choices);
        QCOMPARE(title, u"Select Scope Mode value"_s);
        QCOMPARE(modes.size(), 1);
        QCOMPARE(modes.at(0).at(0).toInt(), demodulator);
        QTEST(modes.at(0).at(1).toString(), "choice");
        QVERIFY(spans.isEmpty());
    }

    void a_chosen_span_is_answered_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("choice");
        QTest::newRow("first choice") << "1 MHz"
                                      << "0";
        QTest::newRow("last choice") << "7.5 Mhz"
                                     << "3";
        QTest::newRow("cancelled") << "Cancel"
                                   << "";
    }

    void a_chosen_span_is_answered()
    {
        QFETCH(QString, button);
        ChoiceLists lists;
        const QSignalSpy modes(&lists, &ChoiceLists::scopeModeChosen);
        const QSignalSpy spans(&lists, &ChoiceLists::spanChosen);
        QString title;
        whenModal([&](QWidget* dialog) {
            title = dialog->windowTitle();
            popUps::press(dialog, button);
        });
        lists.askSpan(Spans);
        QCOMPARE(title, u"Select Span value"_s);
        QCOMPARE(spans.size(), 1);
        QTEST(spans.at(0).at(0).toString(), "choice");
        QVERIFY(modes.isEmpty());
    }

    void nothing_is_answered_when_the_panel_goes_while_a_list_is_open()
    {
        for (const bool isSpan : {false, true}) {
            auto lists = std::make_unique<ChoiceLists>();
            int answers = 0;
            connect(lists.get(), &ChoiceLists::scopeModeChosen, this, [&] { ++answers; });
            connect(lists.get(), &ChoiceLists::spanChosen, this, [&] { ++answers; });
            whenModal([&](QWidget* dialog) {
                lists.reset();
                popUps::press(dialog, isSpan ? u"1 MHz"_s : u"Off"_s);
            });
            if (isSpan) {
                lists->askSpan(Spans);
            } else {
                lists->askScopeMode(1, Choices);
            }
            QVERIFY(lists == nullptr);
            QCOMPARE(answers, 0);
        }
    }
};

QN740_TEST_MAIN(tst_ChoiceLists)
#include "tst_ChoiceLists.moc"

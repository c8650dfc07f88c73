// The pages of keys of a chart: what is on them, and how they are shown and pressed.
#include "spectrum/ChartKeys.h"

#include "support/Screen.h"
#include "support/TestMain.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

#include <QSet>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

using chartKeys::Key;
using chartKeys::Kind;
using chartKeys::Page;

class tst_ChartKeys : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_keys = std::make_unique<ChartKeys>(chartKeys::Place::BesideChart);
        m_keys->resize(188, 373); // beside an enlarged chart
        m_keys->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_keys.get()));
    }

    void cleanup() { m_keys.reset(); }

    void every_key_stands_on_a_page()
    {
        QSet<int> found;
        for (const Page page : chartKeys::pages()) {
            QVERIFY(!chartKeys::title(page).isEmpty());
            for (const chartKeys::Entry& entry : chartKeys::entries(page)) {
                QVERIFY(!entry.text.isEmpty());
                found += static_cast<int>(entry.key);
            }
        }
        for (int key = 0; key <= static_cast<int>(Key::Close); ++key) {
            QVERIFY2(found.contains(key), qPrintable(QString::number(key)));
        }
    }

    void the_pages_have_their_keys_data()
    {
        QTest::addColumn<Page>("page");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("first") << Page::First
                               << QStringList{u"Average"_s, u"Max Hold"_s, u"Trace"_s, u"Scale"_s,
                                      u"Markers"_s, u"Measure"_s, u"Close"_s};
        QTest::newRow("trace") << Page::Trace
                               << QStringList{u"No Avg"_s, u"Clear"_s, u"Power 4"_s, u"Log 4"_s,
                                      u"Power 16"_s, u"Log 16"_s, u"Power 64"_s, u"Log 64"_s,
                                      u"Max Hold"_s, u"Min Hold"_s, u"Back"_s};
        QTest::newRow("scale") << Page::Scale
                               << QStringList{u"Ref ▲"_s, u"Ref ▼"_s, u"10 dB"_s, u"5 dB"_s,
                                      u"2 dB"_s, u"1 dB"_s, u"Auto"_s, u"Full"_s, u"Back"_s};
        QTest::newRow("markers") << Page::Markers
                                 << QStringList{u"Peak"_s, u"Next peak"_s, u"◀"_s, u"▶"_s,
                                        u"Delta"_s, u"Off"_s, u"Back"_s};
        QTest::newRow("measure") << Page::Measure
                                 << QStringList{u"Channel power"_s, u"Occupied BW"_s, u"-3 dB BW"_s,
                                        u"C/N"_s, u"Frequency error"_s, u"Off"_s, u"BW −"_s,
                                        u"BW +"_s, u"BW auto"_s, u"Back"_s};
    }

    void the_pages_have_their_keys()
    {
        QFETCH(Page, page);
        QFETCH(QStringList, texts);
        m_keys->open(page);
        QCOMPARE(m_keys->page(), page);
        QStringList found;
        for (const TextButton* button : shownKeys()) {
            found += button->text();
        }
        QCOMPARE(found, texts);
        for (const TextButton* button : shownKeys()) {
            const QRect at(button->mapTo(m_keys.get(), QPoint(0, 0)), button->size());
            QVERIFY2(m_keys->rect().contains(at), qPrintable(button->text()));
            QVERIFY2(at.height() >= touch::MinTarget && at.width() >= touch::MinTarget,
                qPrintable(button->text()));
        }
    }

    void a_window_of_its_own_has_no_measurements()
    {
        QStringList texts;
        for (const auto& entry : chartKeys::entries(Page::First, chartKeys::Place::OwnWindow)) {
            texts += entry.text;
        }
        QCOMPARE(texts,
            QStringList(
                {u"Average"_s, u"Max Hold"_s, u"Trace"_s, u"Scale"_s, u"Markers"_s, u"Close"_s}));
    }

    void every_page_is_opened_and_left_by_touches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Page>("page");
        QTest::newRow("trace") << u"Trace"_s << Page::Trace;
        QTest::newRow("scale") << u"Scale"_s << Page::Scale;
        QTest::newRow("markers") << u"Markers"_s << Page::Markers;
        QTest::newRow("measure") << u"Measure"_s << Page::Measure;
    }

    void every_page_is_opened_and_left_by_touches()
    {
        QFETCH(QString, text);
        QFETCH(Page, page);
        QSignalSpy pressed(m_keys.get(), &ChartKeys::pressed);
        touchKey(text);
        QCOMPARE(m_keys->page(), page);
        QCOMPARE(title(), text);
        touchKey(u"Back"_s);
        QCOMPARE(m_keys->page(), Page::First);
        QCOMPARE(title(), u"Chart"_s);
        QCOMPARE(pressed.count(), 0);
    }

    void a_press_is_announced()
    {
        QSignalSpy pressed(m_keys.get(), &ChartKeys::pressed);
        touchKey(u"Close"_s);
        m_keys->open(Page::Markers);
        touchKey(u"Next peak"_s);
        QCOMPARE(pressed.count(), 2);
        QCOMPARE(pressed.at(0).at(0).value<Key>(), Key::Close);
        QCOMPARE(pressed.at(1).at(0).value<Key>(), Key::MarkNextPeak);
    }

    void a_press_alone_puts_nothing_into_effect()
    {
        touchKey(u"Average"_s);
        QVERIFY(!key(u"Average"_s)->isChecked());
    }

    void what_is_in_effect_is_seen_on_every_page()
    {
        m_keys->setInEffect({Key::MaxHold, Key::Log16});
        QVERIFY(key(u"Max Hold"_s)->isChecked());
        QCOMPARE(key(u"Max Hold"_s)->marks().lamp, keyMarks::Lamp::On);
        QCOMPARE(key(u"Average"_s)->marks().lamp, keyMarks::Lamp::Off);
        m_keys->open(Page::Trace);
        QCOMPARE(lit(), QStringList({u"Log 16"_s, u"Max Hold"_s}));
        m_keys->setInEffect({Key::NoAverage});
        QCOMPARE(lit(), QStringList{u"No Avg"_s});
        m_keys->open(Page::First);
        QVERIFY(!key(u"Max Hold"_s)->isChecked());
    }

    void a_key_that_steps_repeats_while_it_is_held()
    {
        m_keys->open(Page::Markers);
        QVERIFY(key(u"◀"_s)->autoRepeat() && key(u"▶"_s)->autoRepeat());
        QVERIFY(!key(u"Peak"_s)->autoRepeat());
        m_keys->open(Page::Scale);
        QVERIFY(key(u"Ref ▲"_s)->autoRepeat());
    }

private:
    QList<TextButton*> shownKeys() const
    {
        QList<TextButton*> list;
        for (TextButton* button : m_keys->findChildren<TextButton*>()) {
            if (button->isVisible()) {
                list += button;
            }
        }
        return list;
    }

    TextButton* key(const QString& text) const
    {
        return qobject_cast<TextButton*>(buttonWithText(m_keys.get(), text));
    }

    void touchKey(const QString& text) const
    {
        QVERIFY2(key(text) != nullptr, qPrintable(text));
        clickOn(key(text));
    }

    QString title() const { return m_keys->findChild<QLabel*>(u"chartKeysTitle"_s)->text(); }

    QStringList lit() const
    {
        QStringList texts;
        for (const TextButton* button : shownKeys()) {
            if (button->isChecked() && button->marks().lamp == keyMarks::Lamp::On) {
                texts += button->text();
            }
        }
        return texts;
    }

    std::unique_ptr<ChartKeys> m_keys;
};

QN740_TEST_MAIN(tst_ChartKeys)
#include "tst_ChartKeys.moc"

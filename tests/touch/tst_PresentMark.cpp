#include "touch/PresentMark.h"

#include "support/Screen.h"
#include "support/TestMain.h"

#include <QPushButton>
#include <QSignalSpy>

#include <cmath>

using namespace Qt::StringLiterals;

class tst_PresentMark : public QObject
{
    Q_OBJECT

    static double channel(double value)
    {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    }

    static double luminance(const QColor& colour)
    {
        return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) +
            0.0722 * channel(colour.blueF());
    }

    // Returns the contrast that the Web Content Accessibility Guidelines define.
    static double contrast(const QColor& one, const QColor& two)
    {
        const double high = qMax(luminance(one), luminance(two));
        const double low = qMin(luminance(one), luminance(two));
        return (high + 0.05) / (low + 0.05);
    }

    static QString sheet(const QString& colour)
    {
        return u"QPushButton {background-color: "_s + colour + u"; color:black; border: none;}"_s;
    }

private slots:
    void it_covers_the_button_at_every_size()
    {
        QPushButton button(u"QPSK"_s);
        button.resize(150, 80);
        const auto* mark = new PresentMark(&button);
        button.show();
        QCOMPARE(mark->geometry(), button.rect());
        button.resize(300, 40);
        QCOMPARE(mark->geometry(), button.rect());
    }

    void it_lets_every_touch_through()
    {
        QPushButton button(u"QPSK"_s);
        button.resize(150, 80);
        new PresentMark(&button);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QSignalSpy clicked(&button, &QPushButton::clicked);
        clickOn(&button);
        QCOMPARE(clicked.size(), 1);
        QVERIFY(button.childAt(button.rect().center()) == nullptr);
    }

    void text_and_style_sheet_stay_as_they_are()
    {
        QPushButton button(u"QPSK"_s);
        button.setStyleSheet(sheet(u"#919191"_s));
        new PresentMark(&button);
        QCOMPARE(button.text(), u"QPSK"_s);
        QCOMPARE(button.styleSheet(), sheet(u"#919191"_s));
    }

    void its_ring_is_seen_on_every_colour_data()
    {
        QTest::addColumn<QString>("colour");
        for (const char* colour : {"#919191", "#2f4f4f", "#4169e1", "blue", "white", "black"}) {
            QTest::newRow(colour) << QString::fromUtf8(colour);
        }
    }
    void its_ring_is_seen_on_every_colour()
    {
        QFETCH(QString, colour);
        QPushButton button;
        button.resize(150, 80);
        button.setStyleSheet(sheet(colour));
        new PresentMark(&button);
        const QImage picture = button.grab().toImage();
        double best = 0.0;
        for (int x = 0; x < 6; ++x) {
            best = qMax(best, contrast(picture.pixelColor(x, 40), QColor(colour)));
        }
        QVERIFY2(best >= 3.0, qPrintable(QString::number(best)));
    }

    void the_middle_of_the_button_is_left_to_its_text()
    {
        QPushButton button;
        button.resize(150, 80);
        button.setStyleSheet(sheet(u"#919191"_s));
        new PresentMark(&button);
        const QImage picture = button.grab().toImage();
        for (int x = 8; x < 120; ++x) {
            QCOMPARE(picture.pixelColor(x, 40), QColor("#919191"));
        }
    }
};

QN740_TEST_MAIN(tst_PresentMark)
#include "tst_PresentMark.moc"

#include "popups/FitButton.h"
#include "support/TestMain.h"

class tst_FitButton : public QObject
{
    Q_OBJECT

    static QFont font(int pixels)
    {
        QFont font = QApplication::font();
        font.setPixelSize(pixels);
        return font;
    }

    static bool isInside(const FitButton::Fit& fit, const QSize& room)
    {
        const int wrap = fit.anywhere ? Qt::TextWrapAnywhere : Qt::TextWordWrap;
        const QRect taken =
            QFontMetrics(font(fit.pixelSize))
                .boundingRect(QRect(QPoint(0, 0), room), Qt::AlignCenter | wrap, fit.text);
        return taken.width() <= room.width() && taken.height() <= room.height();
    }

private slots:
    void a_short_text_keeps_its_size()
    {
        const FitButton::Fit fit = FitButton::fit("Off", font(28), {180, 90});
        QCOMPARE(fit.text, QString("Off"));
        QCOMPARE(fit.pixelSize, 28);
        QVERIFY(!fit.anywhere);
    }

    void a_text_that_does_not_fit_gets_smaller_before_words_are_broken()
    {
        const FitButton::Fit fit = FitButton::fit("Constellation", font(28), {120, 33});
        QCOMPARE(fit.text, QString("Constellation"));
        QVERIFY(fit.pixelSize < 28);
        QVERIFY(!fit.anywhere);
        QVERIFY(isInside(fit, {120, 33}));
    }

    void a_word_too_wide_at_every_size_is_broken()
    {
        const FitButton::Fit fit = FitButton::fit(QString(40, 'W'), font(18), {180, 90});
        QCOMPARE(fit.text, QString(40, 'W'));
        QVERIFY(fit.anywhere);
        QVERIFY(isInside(fit, {180, 90}));
    }

    void what_fits_at_no_size_is_elided()
    {
        for (const QSize& room : {QSize(120, 33), QSize(41, 20), QSize(30, 16)}) {
            const FitButton::Fit fit = FitButton::fit(QString(500, 'W'), font(28), room);
            QVERIFY(fit.text.endsWith(QChar(0x2026)));
            QCOMPARE(fit.pixelSize, FitButton::SmallestFont);
            QVERIFY(isInside(fit, room));
        }
    }

    void no_room_at_all_ends()
    {
        QCOMPARE(FitButton::fit("abc", font(28), {0, 0}).text, QString(QChar(0x2026)));
        QCOMPARE(FitButton::fit("abc", font(28), {-6, -6}).text, QString(QChar(0x2026)));
    }

    void blanks_and_breaks_at_the_end_do_not_move_the_text()
    {
        QCOMPARE(
            FitButton::fit("ten chars!     \n", font(18), {180, 90}).text, QString("ten chars!"));
    }

    void the_text_stays_what_it_was_set_to()
    {
        FitButton button(QString(300, 'W'));
        button.resize(60, 47);
        button.grab();
        QCOMPARE(button.text(), QString(300, 'W'));
    }

    void it_paints_in_the_colour_of_its_sheet()
    {
        FitButton button("M");
        button.setStyleSheet(
            "QPushButton {background-color:red; color:white; font-size: 26px; border: 1px solid black}");
        button.resize(60, 60);
        const QImage picture = button.grab().toImage();
        int white = 0;
        for (int y = 5; y < 55; ++y) {
            for (int x = 5; x < 55; ++x) {
                white += picture.pixelColor(x, y) == QColor(Qt::white) ? 1 : 0;
            }
        }
        QVERIFY(white > 40);
        QCOMPARE(picture.pixelColor(6, 6), QColor(Qt::red));
    }

    void it_asks_for_the_size_of_a_finger()
    {
        QCOMPARE(FitButton(QString(60, 'W')).minimumSizeHint(), QSize(47, 47));
    }
};

QN740_TEST_MAIN(tst_FitButton)
#include "tst_FitButton.moc"

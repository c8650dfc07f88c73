#include "touch/TextFit.h"

#include "support/TestMain.h"
#include "touch/FittedLabel.h"
#include "touch/TextButton.h"

#include <QElapsedTimer>
#include <QFontMetrics>

using namespace Qt::StringLiterals;

// The tests use the limits of a label and those of a button, the two kinds that the panel uses.
class tst_TextFit : public QObject
{
    Q_OBJECT

    static constexpr QSize TitleRoom{780, 45};
    static constexpr QChar Ellipsis{0x2026};

    static QFont font(int pixels)
    {
        QFont font = QApplication::font();
        font.setPixelSize(pixels);
        return font;
    }

    static TextFit::Fit fitLabel(const QString& text, const QSize& room = TitleRoom)
    {
        return TextFit::fit(text, font(18), room, FittedLabel::Limits);
    }

    static TextFit::Fit fitButton(const QString& text, int pixels, const QSize& room)
    {
        return TextFit::fit(text, font(pixels), room, TextButton::Limits);
    }

    static bool isInside(const TextFit::Fit& fit, const QSize& room)
    {
        const QRect taken = QFontMetrics(fit.font).boundingRect(
            QRect(QPoint(0, 0), room), Qt::AlignCenter | fit.flags, fit.text);
        return taken.width() <= room.width() && taken.height() <= room.height();
    }

    static int heightOf(const TextFit::Fit& fit, int width)
    {
        return QFontMetrics(fit.font)
            .boundingRect(QRect(0, 0, width, 0), fit.flags, fit.text)
            .height();
    }

private slots:
    void label_text_that_fits_is_left_alone()
    {
        const auto fit = fitLabel(u"Bit Rate"_s);
        QCOMPARE(fit.text, u"Bit Rate"_s);
        QCOMPARE(fit.font, font(18));
        QCOMPARE(fit.flags, 0);
    }

    void label_text_that_is_too_wide_is_broken_at_blanks()
    {
        const auto fit = fitLabel(u"Tuner centre frequency "_s.repeated(5));
        QCOMPARE(fit.font.pixelSize(), 18);
        QCOMPARE(fit.flags, static_cast<int>(Qt::TextWordWrap));
        QVERIFY(heightOf(fit, TitleRoom.width()) <= TitleRoom.height());
    }

    void label_text_without_blanks_is_drawn_smaller()
    {
        const QString text(60, u'W');
        const auto fit = fitLabel(text);
        QVERIFY(fit.font.pixelSize() < 18);
        QVERIFY(fit.font.pixelSize() > 9);
        QVERIFY(QFontMetrics(fit.font).horizontalAdvance(text) <= TitleRoom.width());
    }

    void label_word_that_would_be_tiny_is_broken_instead()
    {
        const QString text(73, u'W');
        const auto fit = fitLabel(text);
        QCOMPARE(fit.font.pixelSize(), 18);
        QCOMPARE(fit.flags, static_cast<int>(Qt::TextWrapAnywhere));
        QCOMPARE(fit.text, text);
        QVERIFY(heightOf(fit, TitleRoom.width()) <= TitleRoom.height());
    }

    void label_text_that_fits_at_no_size_ends_with_an_ellipsis_in_the_smallest_font()
    {
        const auto fit = fitLabel(QString(3000, u'W'));
        QCOMPARE(fit.font.pixelSize(), 9);
        QVERIFY(fit.text.endsWith(Ellipsis));
        QVERIFY(heightOf(fit, TitleRoom.width()) <= TitleRoom.height());
        QVERIFY(fit.text.size() > 200);
    }

    void label_without_room_gets_the_smallest_font()
    {
        QCOMPARE(fitLabel(u"W"_s, QSize(0, 0)).font.pixelSize(), 9);
    }

    void short_button_text_is_not_shrunk()
    {
        const auto fit = fitButton(u"Off"_s, 28, {180, 90});
        QCOMPARE(fit.text, u"Off"_s);
        QCOMPARE(fit.font.pixelSize(), 28);
        QCOMPARE(fit.flags, static_cast<int>(Qt::TextWordWrap));
    }

    void button_text_gets_smaller_before_its_words_are_broken()
    {
        const auto fit = fitButton(u"Constellation"_s, 28, {120, 33});
        QCOMPARE(fit.text, u"Constellation"_s);
        QVERIFY(fit.font.pixelSize() < 28);
        QCOMPARE(fit.flags, static_cast<int>(Qt::TextWordWrap));
        QVERIFY(isInside(fit, {120, 33}));
    }

    void button_word_that_is_too_wide_at_every_size_is_broken()
    {
        const auto fit = fitButton(QString(40, u'W'), 18, {180, 90});
        QCOMPARE(fit.text, QString(40, u'W'));
        QCOMPARE(fit.flags, static_cast<int>(Qt::TextWrapAnywhere));
        QVERIFY(isInside(fit, {180, 90}));
    }

    void button_text_that_fits_at_no_size_is_shortened()
    {
        for (const QSize& room : {QSize(120, 33), QSize(41, 20), QSize(30, 16)}) {
            const auto fit = fitButton(QString(500, u'W'), 28, room);
            QVERIFY(fit.text.endsWith(Ellipsis));
            QCOMPARE(fit.font.pixelSize(), 12);
            QVERIFY(isInside(fit, room));
        }
    }

    void button_without_room_shows_the_ellipsis_alone()
    {
        QCOMPARE(fitButton(u"abc"_s, 28, {0, 0}).text, QString(Ellipsis));
        QCOMPARE(fitButton(u"abc"_s, 28, {-6, -6}).text, QString(Ellipsis));
    }

    void a_shortened_text_is_the_longest_start_that_fits()
    {
        const QSize room(90, 30);
        const QString text = u"Wi"_s.repeated(100);
        const auto fit = fitButton(text, 28, room);
        QVERIFY(isInside(fit, room));
        const auto start = fit.text.size() - 1;
        QCOMPARE(fit.text.left(start), text.left(start));
        TextFit::Fit longer = fit;
        longer.text = text.left(start + 1) + Ellipsis;
        QVERIFY(!isInside(longer, room));
    }

    void a_font_below_the_smallest_size_keeps_its_size()
    {
        const auto fit = fitButton(u"Off"_s, 8, {180, 90});
        QCOMPARE(fit.text, u"Off"_s);
        QCOMPARE(fit.font.pixelSize(), 8);
    }

    void a_font_set_in_points_is_shrunk_too()
    {
        QFont points = QApplication::font();
        points.setPointSize(20);
        const QSize room(60, 20);
        const auto fit = TextFit::fit(u"Constellation"_s, points, room, TextButton::Limits);
        QVERIFY(fit.font.pixelSize() >= 12);
        QVERIFY(isInside(fit, room));
    }

    void an_empty_text_stays_empty()
    {
        QCOMPARE(fitLabel(QString()).text, QString());
        QCOMPARE(fitButton(QString(), 28, {-6, -6}).text, QString());
    }

    void an_endless_text_takes_no_longer_than_a_long_one()
    {
        const auto timeOf = [](qsizetype characters) {
            QElapsedTimer time;
            time.start();
            fitLabel(QString(characters, u'W'), QSize(400, 60));
            return time.nsecsElapsed();
        };
        timeOf(2000); // the first one also loads the font
        const auto usual = timeOf(2000);
        QVERIFY(timeOf(50'000'000) < 20 * usual + 100'000'000);
    }

    void the_last_answer_is_remembered_until_the_question_changes()
    {
        TextFit fitter(TextButton::Limits);
        const QString text(300, u'W');
        const QSize room(120, 33);
        const QString shown = fitter.fit(text, font(28), room).text;
        // The text shares its QString data, so nothing was computed again.
        QVERIFY(fitter.fit(text, font(28), room).text.isSharedWith(shown));
        QVERIFY(fitter.fit(text, font(28), QSize(240, 66)).text.size() > shown.size());
        QCOMPARE(fitter.fit(u"Off"_s, font(28), room).text, u"Off"_s);
        QCOMPARE(fitter.fit(u"Off"_s, font(20), room).font.pixelSize(), 20);
    }
};

QN740_TEST_MAIN(tst_TextFit)
#include "tst_TextFit.moc"

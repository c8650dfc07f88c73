#include "support/TestMain.h"
#include "touch/FittedLabel.h"

namespace {
const QSize Room(780, 45);

QFont eighteen()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(18);
    return font;
}

int heightOf(const QString& text, const FittedLabel::Fit& fit, int width)
{
    return QFontMetrics(fit.font).boundingRect(QRect(0, 0, width, 0), fit.flags, text).height();
}
} // namespace

class tst_FittedLabel : public QObject
{
    Q_OBJECT

private slots:
    void a_text_that_fits_stays_as_it_is()
    {
        const auto fit = FittedLabel::fit("Bit Rate", eighteen(), Room);
        QCOMPARE(fit.font, eighteen());
        QCOMPARE(fit.flags, 0);
    }

    void a_text_that_is_too_wide_is_broken_at_blanks()
    {
        const QString text = QString("Tuner centre frequency ").repeated(5);
        const auto fit = FittedLabel::fit(text, eighteen(), Room);
        QCOMPARE(fit.font.pixelSize(), 18);
        QCOMPARE(fit.flags, static_cast<int>(Qt::TextWordWrap));
        QVERIFY(heightOf(text, fit, Room.width()) <= Room.height());
    }

    void a_text_without_blanks_is_drawn_smaller()
    {
        const QString text(60, 'W');
        const auto fit = FittedLabel::fit(text, eighteen(), Room);
        QVERIFY(fit.font.pixelSize() < 18);
        QVERIFY(fit.font.pixelSize() > 9);
        QVERIFY(QFontMetrics(fit.font).horizontalAdvance(text) <= Room.width());
    }

    void a_word_that_would_be_tiny_is_broken_instead()
    {
        const QString text(73, 'W');
        const auto fit = FittedLabel::fit(text, eighteen(), Room);
        QCOMPARE(fit.font.pixelSize(), 18);
        QCOMPARE(fit.flags, static_cast<int>(Qt::TextWrapAnywhere));
        QCOMPARE(fit.text, text);
        QVERIFY(heightOf(text, fit, Room.width()) <= Room.height());
    }

    void a_text_that_never_fits_ends_in_the_smallest_font_and_an_ellipsis()
    {
        const auto fit = FittedLabel::fit(QString(3000, 'W'), eighteen(), Room);
        QCOMPARE(fit.font.pixelSize(), 9);
        QVERIFY(fit.text.endsWith(QChar(0x2026)));
        QVERIFY(heightOf(fit.text, fit, Room.width()) <= Room.height());
        QVERIFY(fit.text.size() > 200);
    }

    void no_room_at_all_ends_too()
    {
        QCOMPARE(FittedLabel::fit("W", eighteen(), QSize(0, 0)).font.pixelSize(), 9);
    }

    void the_text_decides_nothing_of_the_size()
    {
        FittedLabel label;
        label.setText(QString(2000, 'W'));
        QCOMPARE(label.sizeHint(), QSize(0, 0));
        QCOMPARE(label.minimumSizeHint(), QSize(0, 0));
    }

    void markup_is_plain_text()
    {
        FittedLabel label;
        label.setText("<b>A</b>");
        QCOMPARE(label.textFormat(), Qt::PlainText);
    }
};

QN740_TEST_MAIN(tst_FittedLabel)
#include "tst_FittedLabel.moc"

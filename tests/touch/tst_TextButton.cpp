#include "touch/TextButton.h"

#include "support/TestMain.h"
#include "touch/KeyMarks.h"
#include "touch/KeyStyle.h"

#include <QPainter>
#include <QStyleOptionButton>

using namespace Qt::StringLiterals;

namespace {

// Returns the picture of a menu page's key with the style sheet of an enabled key.
QImage keyPicture(const QString& label, const QSize& size, const keyMarks::Marks& marks)
{
    TextButton button(label);
    button.setStyleSheet(keyStyle::enabled(false));
    button.resize(size);
    button.setMarks(marks);
    return button.grab().toImage();
}

constexpr QRect LeftCorner(0, 0, keyMarks::CornerSize, keyMarks::CornerSize);

QRect rightCorner(const QSize& size)
{
    return {size.width() - keyMarks::CornerSize, 0, keyMarks::CornerSize, keyMarks::CornerSize};
}

// Returns how many rows of the picture hold letters, which are nearly black pixels outside the
// border and the corners.
int rowsOfLetters(QImage image)
{
    QPainter painter(&image);
    painter.fillRect(LeftCorner, Qt::gray);
    painter.fillRect(rightCorner(image.size()), Qt::gray);
    painter.end();
    int rows = 0;
    for (int y = 3; y < image.height() - 3; ++y) {
        bool letters = false;
        for (int x = 3; x < image.width() - 3; ++x) {
            letters = letters || qGray(image.pixel(x, y)) < 60;
        }
        rows += letters ? 1 : 0;
    }
    return rows;
}

constexpr keyMarks::Marks BothMarks{keyMarks::Lamp::Off, true};

} // namespace

class tst_TextButton : public QObject
{
    Q_OBJECT

    static QFont font(int pixels)
    {
        QFont font = QApplication::font();
        font.setPixelSize(pixels);
        return font;
    }

private slots:
    void text_that_fits_is_left_alone()
    {
        const QFontMetrics metrics(QApplication::font());
        QCOMPARE(TextButton::fitted(u"Gain"_s, metrics, 200, 60), u"Gain"_s);
        QCOMPARE(TextButton::fitted(u"Gain\n12 dB"_s, metrics, 200, 60), u"Gain\n12 dB"_s);
        QCOMPARE(TextButton::fitted(u""_s, metrics, 200, 60), QString());
    }

    void long_text_is_broken_at_blanks()
    {
        const QFontMetrics metrics(QApplication::font());
        const int width = metrics.horizontalAdvance(u"Loop Bandwidth"_s);
        QCOMPARE(TextButton::fitted(u"Loop Bandwidth of Demodulator"_s, metrics, width, 100),
            u"Loop Bandwidth\nof Demodulator"_s);
    }

    void every_line_fits_and_no_more_lines_than_the_height_has_room_for_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("60 characters without a blank") << QString(60, u'W');
        QTest::newRow("60 characters with blanks") << u"modulation "_s.repeated(6).left(60);
        QTest::newRow("200 kB") << QString(200 * 1024, u'x');
        QTest::newRow("blanks") << QString(60, u' ');
        QTest::newRow("line breaks") << QString(60, u'\n');
    }

    void every_line_fits_and_no_more_lines_than_the_height_has_room_for()
    {
        QFETCH(QString, text);
        QFont font = QApplication::font();
        font.setPixelSize(16);
        const QFontMetrics metrics(font);
        const QStringList lines = TextButton::fitted(text, metrics, 116, 51).split(u'\n');
        QVERIFY(lines.size() * metrics.lineSpacing() <= 51);
        for (const QString& line : lines) {
            QVERIFY2(metrics.horizontalAdvance(line) <= 116, qPrintable(line));
        }
    }

    void a_text_that_is_too_long_ends_in_an_ellipsis()
    {
        const QFontMetrics metrics(QApplication::font());
        QVERIFY(TextButton::fitted(QString(300, u'W'), metrics, 100, 40).endsWith(QChar(0x2026)));
    }

    void a_button_without_room_does_not_hang()
    {
        const QFontMetrics metrics(QApplication::font());
        TextButton::fitted(u"Gain"_s, metrics, 0, 0);
        TextButton::fitted(u"Gain"_s, metrics, -8, -8);
        QCOMPARE(TextButton::fitted(u""_s, metrics, -8, -8), QString());
    }

    void an_ampersand_is_shown_as_it_is()
    {
        class Painted : public TextButton
        {
        public:
            using TextButton::initStyleOption;
            using TextButton::TextButton;
        };
        Painted button(u"Clock & Data"_s);
        button.resize(200, 60);
        QStyleOptionButton option;
        button.initStyleOption(&option);
        QCOMPARE(option.text, u"Clock && Data"_s); // which the style draws with one "&"
        QCOMPARE(button.text(), u"Clock & Data"_s);
        button.setText(u"Clock && Data"_s);
        button.initStyleOption(&option);
        QCOMPARE(option.text, u"Clock && Data"_s);
    }

    void the_text_of_the_button_stays_what_it_was_set_to()
    {
        const std::unique_ptr<QPushButton> button(
            new TextButton(u"Loop Bandwidth of Demodulator 1"_s));
        button->resize(60, 60);
        button->grab();
        QCOMPARE(button->text(), u"Loop Bandwidth of Demodulator 1"_s);
    }

    void text_of_a_menu_key_gets_smaller_only_when_it_would_be_cut()
    {
        // Returns how high the text is in the key's picture, counted in rows with dark pixels.
        const auto rowsOfText = [](const QString& label) {
            const std::unique_ptr<QPushButton> button(new TextButton(label));
            button->setStyleSheet(keyStyle::enabled(false));
            button->resize(124, 63);
            const QImage image = button->grab().toImage().copy(4, 4, 116, 55);
            int rows = 0;
            for (int y = 0; y < image.height(); ++y) {
                int dark = 0;
                for (int x = 0; x < image.width(); ++x) {
                    dark += qGray(image.pixel(x, y)) < 60 ? 1 : 0;
                }
                rows += dark > 0 ? 1 : 0;
            }
            return rows;
        };
        const int one = rowsOfText(u"Gain"_s);
        QVERIFY(rowsOfText(u"Mask: 1.0.0.0"_s) <= one + 4); // one line of the same size
        // Two lines at the key's own size have no room for this text, but four smaller ones have.
        QVERIFY(rowsOfText(u"A label of more characters than one key can hold"_s) > 2 * one + 4);
    }

    void blanks_and_breaks_at_the_ends_do_not_move_the_text()
    {
        const auto picture = [](const QString& text) {
            TextButton button(text, nullptr, TextButton::Shrinking);
            button.setFont(font(18));
            button.resize(180, 90);
            return button.grab().toImage();
        };
        QCOMPARE(picture(u"  ten chars!     \n"_s), picture(u"ten chars!"_s));
        QVERIFY(picture(u"ten chars!"_s) != picture(QString()));
    }

    void a_shrunk_text_stays_what_it_was_set_to()
    {
        TextButton button(QString(300, u'W'), nullptr, TextButton::Shrinking);
        button.resize(60, 47);
        button.grab();
        QCOMPARE(button.text(), QString(300, u'W'));
    }

    void a_shrunk_text_has_the_colour_of_its_sheet()
    {
        TextButton button(u"M"_s, nullptr, TextButton::Shrinking);
        button.setStyleSheet(
            u"QPushButton {background-color:red; color:white; font-size: 26px; border: 1px solid black}"_s);
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

    void a_shrinking_button_asks_for_the_size_of_a_finger()
    {
        QCOMPARE(TextButton(QString(60, u'W'), nullptr, TextButton::Shrinking).minimumSizeHint(),
            QSize(47, 47));
    }

    void an_ampersand_is_shown_in_a_shrinking_text_too()
    {
        const auto picture = [](const QString& text) {
            TextButton button(text, nullptr, TextButton::Shrinking);
            button.setStyleSheet(u"QPushButton {color: white; background: black; border: 0px}"_s);
            button.resize(200, 60);
            return button.grab().toImage();
        };
        QVERIFY(picture(u"Clock & Data"_s) != picture(u"Clock  Data"_s));
        QCOMPARE(picture(u"Clock && Data"_s), picture(u"Clock & Data"_s));
    }

    void a_button_has_no_marks_by_default()
    {
        QVERIFY(!TextButton(u"AGC"_s).marks().any());
        QCOMPARE(keyPicture(u"AGC"_s, {124, 59}, {}), keyPicture(u"AGC"_s, {124, 59}, {}));
    }

    void marks_change_neither_sheet_nor_text()
    {
        TextButton button(u"AGC"_s);
        button.setStyleSheet(keyStyle::enabled(false));
        button.resize(124, 59);
        button.setMarks(BothMarks);
        button.grab();
        QCOMPARE(button.styleSheet(), keyStyle::enabled(false));
        QCOMPARE(button.text(), u"AGC"_s);
    }

    void a_text_that_does_not_reach_the_corners_stays_where_it_is_data()
    {
        QTest::addColumn<QString>("label");
        QTest::newRow("one line") << u"AGC"_s;
        QTest::newRow("one wide line") << u"Loop Bandwidt"_s;
        QTest::newRow("two short lines") << u"AGC\nhold"_s;
    }
    void a_text_that_does_not_reach_the_corners_stays_where_it_is()
    {
        QFETCH(QString, label);
        const QSize size(124, 59);
        QImage marked = keyPicture(label, size, BothMarks);
        const QImage plain = keyPicture(label, size, {});
        QVERIFY(marked != plain);
        QPainter painter(&marked);
        for (const QRect& corner : {LeftCorner, rightCorner(size)}) {
            painter.drawImage(corner, plain, corner);
        }
        painter.end();
        QCOMPARE(marked, plain);
    }

    void no_text_comes_under_a_mark_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QSize>("size");
        const QString line = u"Bit Sync Lock"_s; // reaches the corners, but not the edges
        const QString two = line + u'\n' + line;
        const QString words = u"Automatic gain of channel 1"_s;
        QTest::newRow("two wide lines") << two << QSize(124, 59);
        QTest::newRow("two wide lines, low key") << two << QSize(124, 46);
        QTest::newRow("one wide line, low key") << line << QSize(124, 30);
        QTest::newRow("words that do not fit") << words << QSize(124, 59);
        QTest::newRow("words that do not fit, low key") << words << QSize(124, 40);
        QTest::newRow("a label that is cut") << QString(300, u'W') << QSize(124, 59);
        QTest::newRow("a very small key") << words << QSize(47, 30);
    }
    void no_text_comes_under_a_mark()
    {
        QFETCH(QString, label);
        QFETCH(QSize, size);
        const QImage marked = keyPicture(label, size, BothMarks);
        const QImage empty = keyPicture(QString(), size, BothMarks);
        for (const QRect& corner : {LeftCorner, rightCorner(size)}) {
            QCOMPARE(marked.copy(corner), empty.copy(corner));
        }
        QVERIFY(marked != empty);
    }

    void two_lines_keep_their_size_under_the_marks()
    {
        const QSize size(124, 59);
        const QString label = u"Bit Sync Lock\nBit Sync Lock"_s;
        const int plain = rowsOfLetters(keyPicture(label, size, {}));
        QVERIFY(plain > 20);
        QCOMPARE(rowsOfLetters(keyPicture(label, size, BothMarks)), plain);
    }

    void a_dark_look_when_disabled_needs_no_sheet()
    {
        TextButton button(u"Span"_s, nullptr, TextButton::DarkWhenDisabled);
        button.setStyleSheet(keyStyle::enabled(true));
        button.resize(150, 60);
        const QImage enabled = button.grab().toImage();
        button.setEnabled(false);
        const QImage disabled = button.grab().toImage();
        QCOMPARE(button.styleSheet(), keyStyle::enabled(true));
        QCOMPARE(disabled.pixelColor(6, 6), QColor(0x2f, 0x4f, 0x4f));
        QCOMPARE(disabled.pixelColor(75, 0), QColor(0xff, 0xfa, 0xcd));
        int white = 0;
        for (int y = 6; y < 54; ++y) {
            for (int x = 6; x < 144; ++x) {
                white += disabled.pixelColor(x, y) == QColor(Qt::white) ? 1 : 0;
            }
        }
        QVERIFY(white > 50);
        // This style sheet is the same as the disabled one, except for the border's corners.
        TextButton other(u"Span"_s);
        other.setStyleSheet(keyStyle::disabled(true));
        other.setEnabled(false);
        other.resize(150, 60);
        const QRect inside(4, 4, 142, 52);
        QCOMPARE(disabled.copy(inside), other.grab().toImage().copy(inside));
        button.setEnabled(true);
        QCOMPARE(button.grab().toImage(), enabled);
    }

    void a_text_on_one_line_gets_smaller_instead_of_broken()
    {
        const auto lines = [](TextButton::Looks looks) {
            TextButton button(u"< -128"_s, nullptr, looks);
            button.setStyleSheet(u"QPushButton {color: white; background: black; border: 0px}"_s);
            QFont large = font(40);
            button.setFont(large);
            button.resize(100, 100);
            const QImage picture = button.grab().toImage();
            int inked = 0;
            for (int y = 0; y < 100; ++y) {
                bool ink = false;
                for (int x = 0; x < 100; ++x) {
                    ink = ink || picture.pixelColor(x, y).lightness() > 128;
                }
                inked += ink ? 1 : 0;
            }
            return inked;
        };
        QVERIFY(lines(TextButton::OneLine) < 35);
        QVERIFY(lines(TextButton::Shrinking) > 45);
    }
};

QN740_TEST_MAIN(tst_TextButton)
#include "tst_TextButton.moc"

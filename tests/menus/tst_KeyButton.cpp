#include "menus/Key.h"
#include "menus/KeyButton.h"
#include "support/TestMain.h"

#include <QStyleOptionButton>

class tst_KeyButton : public QObject
{
    Q_OBJECT

private slots:
    void text_that_fits_is_left_alone()
    {
        const QFontMetrics metrics(QApplication::font());
        QCOMPARE(KeyButton::fitted("Gain", metrics, 200, 60), QString("Gain"));
        QCOMPARE(KeyButton::fitted("Gain\n12 dB", metrics, 200, 60), QString("Gain\n12 dB"));
        QCOMPARE(KeyButton::fitted("", metrics, 200, 60), QString());
    }

    void long_text_is_broken_at_blanks()
    {
        const QFontMetrics metrics(QApplication::font());
        const int width = metrics.horizontalAdvance("Loop Bandwidth");
        QCOMPARE(KeyButton::fitted("Loop Bandwidth of Demodulator", metrics, width, 100),
            QString("Loop Bandwidth\nof Demodulator"));
    }

    void every_line_fits_and_no_more_lines_than_the_height_has_room_for_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("60 characters without a blank") << QString(60, 'W');
        QTest::newRow("60 characters with blanks") << QString("modulation ").repeated(6).left(60);
        QTest::newRow("200 kB") << QString(200 * 1024, 'x');
        QTest::newRow("blanks") << QString(60, ' ');
        QTest::newRow("line breaks") << QString(60, '\n');
    }

    void every_line_fits_and_no_more_lines_than_the_height_has_room_for()
    {
        QFETCH(QString, text);
        QFont font = QApplication::font();
        font.setPixelSize(16);
        const QFontMetrics metrics(font);
        const QStringList lines = KeyButton::fitted(text, metrics, 116, 51).split('\n');
        QVERIFY(lines.size() * metrics.lineSpacing() <= 51);
        for (const QString& line : lines) {
            QVERIFY2(metrics.horizontalAdvance(line) <= 116, qPrintable(line));
        }
    }

    void a_text_that_is_too_long_ends_in_an_ellipsis()
    {
        const QFontMetrics metrics(QApplication::font());
        QVERIFY(KeyButton::fitted(QString(300, 'W'), metrics, 100, 40).endsWith(QChar(0x2026)));
    }

    void no_room_at_all_is_no_harm()
    {
        const QFontMetrics metrics(QApplication::font());
        KeyButton::fitted("Gain", metrics, 0, 0);
        KeyButton::fitted("Gain", metrics, -8, -8);
        QCOMPARE(KeyButton::fitted("", metrics, -8, -8), QString());
    }

    void an_ampersand_is_shown_as_it_is()
    {
        class Painted : public KeyButton
        {
        public:
            using KeyButton::initStyleOption;
            using KeyButton::KeyButton;
        };
        Painted button("Clock & Data");
        button.resize(200, 60);
        QStyleOptionButton option;
        button.initStyleOption(&option);
        QCOMPARE(option.text, QString("Clock && Data")); // which the style draws with one "&"
        QCOMPARE(button.text(), QString("Clock & Data"));
    }

    void the_text_of_the_button_stays_what_it_was_set_to()
    {
        const std::unique_ptr<QPushButton> button(
            Key::newButton("Loop Bandwidth of Demodulator 1"));
        button->resize(60, 60);
        button->grab();
        QCOMPARE(button->text(), QString("Loop Bandwidth of Demodulator 1"));
    }
};

QN740_TEST_MAIN(tst_KeyButton)
#include "tst_KeyButton.moc"

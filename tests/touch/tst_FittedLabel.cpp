#include "touch/FittedLabel.h"

#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_FittedLabel : public QObject
{
    Q_OBJECT

private slots:
    void the_text_does_not_decide_the_size()
    {
        FittedLabel label;
        label.setText(QString(2000, u'W'));
        QCOMPARE(label.sizeHint(), QSize(0, 0));
        QCOMPARE(label.minimumSizeHint(), QSize(0, 0));
    }

    void what_does_not_fit_is_painted_inside_the_label()
    {
        FittedLabel label;
        label.setStyleSheet(u"background: white; color: black; font-size: 26px"_s);
        label.setText(QString(300, u'W'));
        label.resize(120, 40);
        const QImage picture = label.grab().toImage();
        int ink = 0;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 120; ++x) {
                ink += picture.pixelColor(x, y).lightness() < 128 ? 1 : 0;
            }
            QCOMPARE(picture.pixelColor(119, y).lightness() < 128, false);
        }
        QVERIFY(ink > 200);
        QCOMPARE(label.text(), QString(300, u'W'));
    }

    void markup_is_plain_text()
    {
        FittedLabel label;
        label.setText(u"<b>A</b>"_s);
        QCOMPARE(label.textFormat(), Qt::PlainText);
    }
};

QN740_TEST_MAIN(tst_FittedLabel)
#include "tst_FittedLabel.moc"

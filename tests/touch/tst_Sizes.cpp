#include "touch/Sizes.h"

#include "support/TestMain.h"

class tst_Sizes : public QObject
{
    Q_OBJECT

private slots:
    void sizes_are_those_of_the_panel()
    {
        QCOMPARE(touch::MinTarget, 47);
        QCOMPARE(touch::MaxKeyHeight, 100);
        QCOMPARE(touch::ScrollBarWidth, 50);
    }

    void the_sheet_of_a_scroll_bar_has_its_width()
    {
        QCOMPARE(touch::scrollBarSheet(), QString("QScrollBar:vertical {width: 50px}"));
    }
};

QN740_TEST_MAIN(tst_Sizes)
#include "tst_Sizes.moc"

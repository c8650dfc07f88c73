#include "touch/Sizes.h"

#include "support/TestMain.h"

using namespace Qt::StringLiterals;

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
        QCOMPARE(touch::scrollBarSheet(), u"QScrollBar:vertical {width: 50px}"_s);
    }
};

QN740_TEST_MAIN(tst_Sizes)
#include "tst_Sizes.moc"

#include "touch/Sizes.h"

#include "support/TestMain.h"
#include "touch/Picture.h"

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

    void a_picture_that_is_not_there_is_null()
    {
        QVERIFY(touch::picture(u":/MyFiles/nothing.png"_s).isNull());
    }
};

QN740_TEST_MAIN(tst_Sizes)
#include "tst_Sizes.moc"

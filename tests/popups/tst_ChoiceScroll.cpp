#include "popups/ChoiceScroll.h"

#include "support/TestMain.h"

#include <QGridLayout>
#include <QPushButton>
#include <QScrollBar>

class tst_ChoiceScroll : public QObject
{
    Q_OBJECT

    static constexpr int Rows = 20;
    static constexpr int ShownRows = 4;
    static constexpr int Columns = 2;
    static constexpr int Spacing = 4;

    std::unique_ptr<ChoiceScroll> m_view;
    QList<QPushButton*> m_buttons;

    void show(QSize size)
    {
        m_view->resize(size);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }

private slots:
    void init()
    {
        m_view = std::make_unique<ChoiceScroll>(Rows, ShownRows, Columns, Spacing);
        m_buttons.clear();
        for (int i = 0; i < Rows * Columns; ++i) {
            m_buttons += new QPushButton(QString::number(i));
            m_buttons.last()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
            m_view->cells()->addWidget(m_buttons.last(), i / Columns, i % Columns);
        }
    }
    void cleanup() { m_view.reset(); }

    void the_shown_rows_fill_the_view_and_all_are_equally_high()
    {
        show({700, 412});
        QCOMPARE(m_buttons.at(0)->height(), 100);
        for (const QPushButton* button : std::as_const(m_buttons)) {
            QCOMPARE(button->height(), m_buttons.at(0)->height());
        }
        QCOMPARE(m_buttons.at(ShownRows * Columns)->y(), 416);
        QCOMPARE(m_view->verticalScrollBar()->maximum(), Rows * 104 - 4 - 412);
    }

    void the_last_column_ends_a_gap_before_the_bar()
    {
        show({700, 412});
        QCOMPARE(m_buttons.at(1)->geometry().right() + 1 + Spacing, m_view->viewport()->width());
    }

    void it_begins_at_its_start()
    {
        show({700, 412});
        QCOMPARE(m_view->verticalScrollBar()->value(), 0);
    }

    void a_button_that_is_shown_first_is_in_the_view_data()
    {
        QTest::addColumn<int>("index");
        for (const int index : {0, 1, 7, 8, 20, 38, 39}) {
            QTest::addRow("%d", index) << index;
        }
    }
    void a_button_that_is_shown_first_is_in_the_view()
    {
        QFETCH(int, index);
        m_view->setFirstShown(m_buttons.at(index));
        show({700, 412});
        const QPushButton* button = m_buttons.at(index);
        const QRect place(button->mapTo(m_view->viewport(), QPoint()), button->size());
        QVERIFY(m_view->viewport()->rect().contains(place));
    }
};

QN740_TEST_MAIN(tst_ChoiceScroll)
#include "tst_ChoiceScroll.moc"

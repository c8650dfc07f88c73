#include "plot/CachedPlot.h"
#include "support/TestMain.h"

#include <QPainter>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb FrameColor = 0xff203040;
constexpr QRgb DataColor = 0xffffff00;

// A plot that counts what it is asked for: a ground of one colour, and a square of data.
class CountingPlot : public CachedPlot
{
public:
    explicit CountingPlot(int minPauseMs = 0)
        : CachedPlot(minPauseMs)
    {
    }

    using CachedPlot::schedulePaint;
    using CachedPlot::setFrameStale;

    int frames = 0;
    QVector<QRect> dirty; // of each paint
    QRect changed;        // null: the whole plot
    QRect opaque;
    int paintMs = 0; // how long a paint takes

protected:
    QPixmap drawFrame() override
    {
        ++frames;
        QPixmap frame(size());
        frame.fill(QColor::fromRgb(FrameColor));
        return frame;
    }

    void paintData(QPainter& painter, const QRect& part) override
    {
        dirty += part;
        painter.fillRect(square, QColor::fromRgb(DataColor));
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < paintMs) {
        }
    }

    QRect changedRect() const override { return changed.isNull() ? rect() : changed; }
    QRect opaqueRect() const override { return opaque; }

private:
    const QRect square{20, 20, 10, 10};
};

} // namespace

class tst_CachedPlot : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_plot = std::make_unique<CountingPlot>();
        m_plot->resize(200, 100);
        m_plot->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_plot.get()));
        QTRY_VERIFY(m_plot->paintCount() > 0);
        QTest::qWait(50); // The plot library asks for a replot of its own at first.
        m_plot->dirty.clear();
        m_plot->frames = 0;
    }

    void the_frame_is_drawn_once_for_many_paints()
    {
        for (int i = 0; i < 5; ++i) {
            m_plot->repaint();
        }
        QCOMPARE(m_plot->frames, 0);
        QCOMPARE(m_plot->dirty.size(), 5);
    }

    void a_stale_frame_is_drawn_anew_at_the_next_paint()
    {
        m_plot->setFrameStale();
        QCOMPARE(m_plot->frames, 0);
        m_plot->repaint();
        m_plot->repaint();
        QCOMPARE(m_plot->frames, 1);
    }

    void a_replot_of_the_library_makes_the_frame_stale_and_paints_it()
    {
        m_plot->replot(QCustomPlot::rpQueuedReplot);
        QTRY_COMPARE(m_plot->frames, 1);
    }

    void a_new_frame_is_shown_everywhere_though_only_a_part_was_to_be_painted()
    {
        m_plot->setFrameStale();
        m_plot->repaint(QRect(0, 0, 10, 10));
        QCOMPARE(m_plot->dirty.first(), QRect(0, 0, 10, 10));
        QTRY_COMPARE(m_plot->dirty.last(), m_plot->rect());
        QCOMPARE(m_plot->frames, 1);
    }

    void new_data_are_painted_over_the_frame()
    {
        m_plot->schedulePaint();
        QTRY_COMPARE(m_plot->dirty.size(), 1);
        const QImage shown = m_plot->screen()->grabWindow(m_plot->winId()).toImage();
        QCOMPARE(shown.pixelColor(25, 25), QColor::fromRgb(DataColor));
        QCOMPARE(shown.pixelColor(5, 5), QColor::fromRgb(FrameColor));
        QCOMPARE(shown.pixelColor(195, 95), QColor::fromRgb(FrameColor));
    }

    void much_new_data_is_painted_once()
    {
        for (int i = 0; i < 100; ++i) {
            m_plot->schedulePaint();
        }
        QTRY_COMPARE(m_plot->dirty.size(), 1);
        QTest::qWait(50);
        QCOMPARE(m_plot->dirty.size(), 1);
    }

    void only_what_new_data_change_is_painted()
    {
        m_plot->changed = QRect(10, 10, 50, 40);
        m_plot->schedulePaint();
        QTRY_COMPARE(m_plot->dirty, QVector<QRect>{m_plot->changed});
    }

    void the_frame_is_not_copied_where_the_data_cover_it()
    {
        m_plot->opaque = QRect(10, 10, 50, 40);
        m_plot->setFrameStale();
        m_plot->repaint(); // around the data the frame is needed
        QImage image(m_plot->size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        m_plot->render(&image, QPoint(15, 15), QRect(15, 15, 20, 20), {});
        QCOMPARE(image.pixelColor(16, 16), QColor(Qt::white));
        QCOMPARE(image.pixelColor(25, 25), QColor::fromRgb(DataColor));
        m_plot->render(&image, QPoint(5, 5), QRect(5, 5, 20, 20), {});
        QCOMPARE(image.pixelColor(6, 6), QColor::fromRgb(FrameColor));
    }

    void the_next_paint_waits_at_least_as_long_as_the_last_one_took()
    {
        const auto* timer = m_plot->findChild<QTimer*>(u"paintTimer"_s);
        QVERIFY(timer != nullptr);
        m_plot->paintMs = 20;
        m_plot->repaint();
        m_plot->schedulePaint();
        QVERIFY(timer->isActive());
        QVERIFY2(timer->interval() >= 20, qPrintable(QString::number(timer->interval())));
    }

    void a_paint_waits_for_the_shortest_pause()
    {
        CountingPlot plot(500);
        plot.resize(50, 50);
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        plot.schedulePaint();
        const auto* timer = plot.findChild<QTimer*>(u"paintTimer"_s);
        QVERIFY(timer->isActive());
        QVERIFY(timer->interval() >= 500);
    }

    void data_that_come_long_after_the_last_paint_wait_for_no_timer()
    {
        constexpr int PauseMs = 40;
        CountingPlot plot(PauseMs);
        plot.resize(50, 50);
        plot.show();
        QTRY_VERIFY(plot.paintCount() > 0);
        plot.repaint();
        const int before = plot.paintCount();
        const auto* timer = plot.findChild<QTimer*>(u"paintTimer"_s);
        plot.schedulePaint();
        QVERIFY(timer->isActive()); // too early
        QTRY_COMPARE(plot.paintCount(), before + 1);
        QTest::qWait(2 * PauseMs + 1);
        plot.schedulePaint();
        plot.schedulePaint();
        QVERIFY(!timer->isActive());
        QTRY_COMPARE(plot.paintCount(), before + 2);
        plot.schedulePaint();
        QVERIFY(timer->isActive());
    }

    void a_hidden_plot_is_not_painted()
    {
        m_plot->hide();
        const int before = m_plot->paintCount();
        m_plot->schedulePaint();
        QVERIFY(!m_plot->findChild<QTimer*>(u"paintTimer"_s)->isActive());
        QTest::qWait(50);
        QCOMPARE(m_plot->paintCount(), before);
        m_plot->show();
        QTRY_VERIFY(m_plot->paintCount() > before);
    }

    void what_lies_under_the_plot_is_painted_first()
    {
        QVERIFY(!m_plot->testAttribute(Qt::WA_OpaquePaintEvent));
    }

private:
    std::unique_ptr<CountingPlot> m_plot;
};

QN740_TEST_MAIN(tst_CachedPlot)
#include "tst_CachedPlot.moc"

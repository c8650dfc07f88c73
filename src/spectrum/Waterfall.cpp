#include "spectrum/Waterfall.h"

#include "spectrum/ChartLook.h"

#include <QPainter>

#include <array>

namespace {

constexpr int MinTickDistance = 26;  // Two texts are not nearer than this, in pixels.
constexpr int MaxTickDistance = 110; // With larger gaps, a finer step is chosen.
constexpr int TickLength = 4;
constexpr int TextGap = 2; // between a text and its tick
constexpr int MaxTexts = 100;
constexpr qint64 MsPerSecond = 1000;

// The steps that are easily counted, in seconds.
constexpr std::array Steps{1, 2, 5, 10, 20, 30, 60, 120, 300, 600, 1200, 1800, 3600};

} // namespace

Waterfall::Waterfall(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_paintTimer.setObjectName(QStringLiteral("paintTimer"));
    m_paintTimer.setSingleShot(true);
    connect(&m_paintTimer, &QTimer::timeout, this, [this] { update(); });
    m_clock.start();
}

void Waterfall::setPlot(int left, int right)
{
    if (left != m_left || right != m_right) {
        m_left = left;
        m_right = right;
        fitPicture();
    }
}

void Waterfall::setRange(double lowest, double highest)
{
    m_picture.setRange(lowest, highest);
    schedulePaint();
}

void Waterfall::fitPicture()
{
    m_picture.setSize({qMax(0, m_right - m_left + 1), height()});
    update();
}

void Waterfall::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fitPicture();
}

void Waterfall::addSpectrum(const QByteArray& points, qint64 ms)
{
    if (isVisible()) {
        m_picture.add(points, ms);
        schedulePaint();
    }
}

void Waterfall::clear()
{
    m_picture.clear();
    schedulePaint();
}

void Waterfall::schedulePaint()
{
    if (!isVisible() || m_paintTimer.isActive()) {
        return;
    }
    if (m_lastPaintMs > 0) {
        m_paintTimer.start(m_lastPaintMs);
    } else {
        update(); // All updates of a turn of the event loop are painted together.
    }
}

// Keeps the step while its ticks are neither too near to each other nor too far apart.
void Waterfall::chooseStep()
{
    const int lines = m_picture.lines();
    const qint64 oldest = lines > 1 ? m_picture.ageMs(lines - 1) : 0;
    if (oldest <= 0) {
        return;
    }
    const auto distance = [lines, oldest](int step) { return step * MsPerSecond * lines / oldest; };
    const qint64 now = distance(m_step);
    if (now >= MinTickDistance && (now <= MaxTickDistance || m_step == Steps.front())) {
        return;
    }
    int chosen = Steps.back();
    for (auto step = Steps.crbegin(); step != Steps.crend(); ++step) {
        if (distance(*step) >= MinTickDistance) {
            chosen = *step;
        }
    }
    m_step = chosen;
}

QVector<Waterfall::Tick> Waterfall::ticks() const
{
    QVector<Tick> list;
    const int lines = m_picture.lines();
    const qint64 step = m_step * MsPerSecond;
    const qint64 oldest = lines > 0 ? m_picture.ageMs(lines - 1) : -1;
    for (qint64 age = 0; age <= oldest; age += step) {
        const int row = m_picture.lineOfAge(age);
        age = m_picture.ageMs(row) / step * step; // more than asked for behind a gap
        if (list.isEmpty() || row - list.constLast().row >= MinTickDistance / 2) {
            list += {static_cast<int>(age / MsPerSecond), row};
        }
    }
    return list;
}

QString Waterfall::tickText(int seconds)
{
    return seconds == 0 ? QStringLiteral("0 s") : QString::number(seconds);
}

QStringList Waterfall::secondTexts() const
{
    QStringList texts;
    for (const Tick& tick : ticks()) {
        texts += tickText(tick.seconds);
    }
    return texts;
}

const QStaticText& Waterfall::preparedText(int seconds)
{
    auto found = m_texts.find(seconds);
    if (found == m_texts.end()) {
        if (m_texts.size() >= MaxTexts) {
            m_texts.clear();
        }
        found = m_texts.insert(seconds, chartLook::preparedText(tickText(seconds)));
    }
    return *found;
}

void Waterfall::paintTicks(QPainter& painter)
{
    chooseStep();
    painter.setFont(chartLook::font());
    painter.setPen(chartLook::Text);
    const int right = m_left - TickLength - TextGap;
    for (const Tick& tick : ticks()) {
        const QStaticText& text = preparedText(tick.seconds);
        const QSize size = text.size().toSize();
        const int top = qBound(0, tick.row - size.height() / 2, height() - size.height());
        painter.drawStaticText(right - size.width(), top, text);
        painter.drawLine(m_left - TickLength, tick.row, m_left - 1, tick.row);
    }
}

void Waterfall::paintEvent(QPaintEvent* /*event*/)
{
    QElapsedTimer elapsed;
    elapsed.start();
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, m_left, height()), chartLook::Background);
    painter.fillRect(QRect(m_right + 1, 0, width() - m_right - 1, height()), chartLook::Background);
    m_picture.paint(painter, {m_left, 0});
    paintTicks(painter);
    ++m_paintCount;
    m_lastPaintMs = static_cast<int>(elapsed.elapsed());
}

#include "scopes/StcMagPhasePlot.h"

#include "plot/NoData.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double StepsOfScale = 8.0;
constexpr double Rounding = 0.5;
constexpr double StepDegrees = 22.5;
constexpr int LampsPerCaption = 2; // More captions would overlap.
constexpr int LampHeight = 22;
constexpr int LampColumn = 1; // Right of the bar of channel 1.
constexpr int BarColumn1 = LampColumn + StcMagPhasePlot::ScaleLabels;

QString unlit()
{
    return QStringLiteral("QLabel{background:black;}");
}

constexpr QColor BarLine(0xc8, 0xc8, 0xc8);
constexpr QColor BarChunk(0x2e, 0x6f, 0xb8);
constexpr QColor OldText(0xa8, 0xa8, 0xa8); // also readable on a dimmed chunk

// Lies over the display and dims it, without a change of any style sheet. The bars are painted
// again, because their texts could not be read on a ground that is dimmed like them.
class Veil : public QWidget
{
public:
    explicit Veil(QWidget* parent)
        : QWidget(parent)
    {
        setObjectName(QStringLiteral("veil"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        // The style sheet of the window gives every plain widget a black ground.
        setStyleSheet(QStringLiteral("background: transparent;"));
        hide();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        constexpr int Darkness = 102; // of 255: three fifths of the light remain
        QPainter painter(this);
        painter.fillRect(rect(), QColor(0, 0, 0, Darkness));
        for (const QProgressBar* bar :
            parentWidget()->findChildren<QProgressBar*>(Qt::FindDirectChildrenOnly)) {
            paintBar(painter, *bar);
        }
    }

private:
    static void paintBar(QPainter& painter, const QProgressBar& bar)
    {
        const QRect outside = bar.geometry();
        const QRect inside = outside.adjusted(1, 1, -1, -1);
        painter.fillRect(outside, noData::dimmed(BarLine));
        painter.fillRect(inside, Qt::black);
        QRect chunk = inside;
        chunk.setWidth(inside.width() * bar.value() / StcMagPhasePlot::FullMagnitude);
        painter.fillRect(chunk, noData::dimmed(BarChunk));
        painter.setFont(bar.font());
        painter.setPen(OldText);
        painter.drawText(outside, Qt::AlignCenter, bar.text());
    }
};

} // namespace

StcMagPhasePlot::StcMagPhasePlot(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral(
        "StcMagPhasePlot {background: black;} QLabel {color: #f0f0f0; font-size: 16px;} "
        "QLabel[lamp=\"true\"] {border: 1px solid #919191;} "
        "QProgressBar {background: black; color: white; border: 1px solid #c8c8c8; "
        "font-size: 16px; font-weight: bold; text-align: center;} "
        "QProgressBar::chunk {background: #2e6fb8;}"));

    m_bar0 = newBar(QStringLiteral("ch0Bar"));
    m_bar1 = newBar(QStringLiteral("ch1Bar"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(6, 2, 6, 2);
    grid->setHorizontalSpacing(3);
    grid->setVerticalSpacing(1);
    grid->addWidget(caption(QStringLiteral("Channel 1 magnitude")), 1, 0);
    grid->addWidget(m_bar0, 0, 0);
    for (int lamp = 0; lamp < ScaleLabels; ++lamp) {
        auto* label = new QLabel(this);
        label->setObjectName(QStringLiteral("phaseLabel%1").arg(lamp));
        label->setProperty("lamp", true);
        label->setMinimumHeight(LampHeight);
        label->setStyleSheet(unlit());
        m_lamps.append(label);
        grid->addWidget(label, 0, LampColumn + lamp);
        if (lamp % LampsPerCaption == 0) {
            const QString degrees = QString::number(lamp * StepDegrees) + QChar(0x00b0);
            grid->addWidget(caption(degrees), 1, LampColumn + lamp);
        }
        grid->setColumnStretch(LampColumn + lamp, 2);
    }
    grid->addWidget(m_bar1, 0, BarColumn1);
    grid->addWidget(caption(QStringLiteral("Channel 2 magnitude")), 1, BarColumn1);
    grid->setColumnStretch(0, 7);
    grid->setColumnStretch(BarColumn1, 7);
    m_veil = new Veil(this);
    updateDisplay();
}

void StcMagPhasePlot::setDimmed(bool dimmed)
{
    if (m_dimmed != dimmed) {
        m_dimmed = dimmed;
        m_veil->setGeometry(rect());
        m_veil->setVisible(dimmed);
        m_veil->raise();
    }
}

void StcMagPhasePlot::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_veil->setGeometry(rect());
}

QLabel* StcMagPhasePlot::caption(const QString& text)
{
    auto* label = new QLabel(text, this);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QProgressBar* StcMagPhasePlot::newBar(const QString& name)
{
    auto* bar = new QProgressBar(this);
    bar->setObjectName(name);
    bar->setRange(0, FullMagnitude);
    bar->setFormat(QStringLiteral("%v of %m"));
    bar->setMinimumHeight(LampHeight);
    return bar;
}

int StcMagPhasePlot::lampOf(double difference)
{
    const double place = difference * StepsOfScale + Rounding;
    // The cast below truncates towards zero, so a little below 0 is still the first lamp.
    if (!(place > -1.0 && place < ScaleLabels)) {
        return -1;
    }
    return static_cast<int>(place);
}

QString StcMagPhasePlot::colorOf(int lamp)
{
    // Quirk: the fifth name is misspelt and shows no colour. See "Quirks" in docs/architecture.md.
    static const std::array<QString, ScaleLabels> colors{QStringLiteral("green"),
        QStringLiteral("green"), QStringLiteral("green"), QStringLiteral("yellow"),
        QStringLiteral("yelow"), QStringLiteral("yellow"), QStringLiteral("red"),
        QStringLiteral("red"), QStringLiteral("red")};
    return lamp >= 0 && lamp < ScaleLabels ? colors[static_cast<size_t>(lamp)] : QString();
}

QString StcMagPhasePlot::sheet(const QString& color)
{
    return QStringLiteral("QLabel{background:") + color + QStringLiteral(";}");
}

void StcMagPhasePlot::updateDisplay()
{
    m_bar0->setValue(std::clamp(m_magnitude0, 0, FullMagnitude));
    m_bar1->setValue(std::clamp(m_magnitude1, 0, FullMagnitude));
    const int lit = lampOf(m_phase);
    for (int lamp = 0; lamp < ScaleLabels; ++lamp) {
        const QString wanted = lamp == lit ? sheet(colorOf(lamp)) : unlit();
        if (m_lamps.at(lamp)->styleSheet() != wanted) {
            m_lamps.at(lamp)->setStyleSheet(wanted);
        }
    }
}

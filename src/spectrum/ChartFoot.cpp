#include "spectrum/ChartFoot.h"

#include "spectrum/MeasurementPanel.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/Waterfall.h"

#include <QVBoxLayout>

namespace {

constexpr int WaterfallHeight = 150;
constexpr int Spacing = 2;

} // namespace

ChartFoot::ChartFoot(QWidget* parent)
    : QWidget(parent)
    , m_panel(new MeasurementPanel(this))
    , m_waterfall(new Waterfall(this))
{
    setObjectName(QStringLiteral("chartFoot"));
    m_panel->hide();
    m_waterfall->setFixedHeight(WaterfallHeight);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Spacing);
    column->addWidget(m_panel);
    column->addWidget(m_waterfall);
}

void ChartFoot::follow(SpectrumChart* chart)
{
    m_chart = chart;
    connect(chart, &QObject::destroyed, this, [this, chart] {
        if (m_chart == chart) {
            m_chart = nullptr;
        }
    });
    connect(chart, &SpectrumChart::spectrumAdded, m_waterfall,
        qOverload<const QByteArray&>(&Waterfall::addSpectrum));
    connect(chart, &SpectrumChart::readoutChanged, this, &ChartFoot::measure);
    connect(chart, &SpectrumChart::settingsChanged, this, &ChartFoot::fitRange);
    connect(chart, &SpectrumChart::afterLayout, this, &ChartFoot::fitPlot);
    fitPlot();
    fitRange();
}

void ChartFoot::setMeasurement(const chartMeasurement::Choice& choice, double nominal)
{
    m_choice = choice;
    m_nominal = nominal;
    m_panel->setVisible(choice.kind != chartMeasurement::Kind::None);
    measure();
}

void ChartFoot::clear()
{
    m_waterfall->clear();
    fitPlot();
    measure();
}

void ChartFoot::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    measure(); // What has come meanwhile was not measured.
}

void ChartFoot::fitPlot()
{
    if (m_chart == nullptr) {
        return;
    }
    const QRect plot = m_chart->axisRect()->rect();
    m_waterfall->setPlot(plot.left(), plot.right());
    m_panel->setPlot(plot.left(), plot.right(), m_chart->axis().scale(plot.left(), plot.right()));
}

void ChartFoot::fitRange()
{
    if (m_chart != nullptr) {
        m_waterfall->setRange(m_chart->scale().lowest(), m_chart->scale().reference());
    }
}

void ChartFoot::measure()
{
    if (m_chart == nullptr || !m_panel->isVisibleTo(this) || !isVisible()) {
        return;
    }
    const SpectrumTrace& trace = m_chart->trace();
    const MeasuredSpectrum spectrum{trace.powers(), m_chart->centre(), m_chart->spanMHz(),
        qMax(1.0, trace.independentSpectra())};
    m_panel->setReading(chartMeasurement::measure(
        m_choice, spectrum, m_nominal, m_chart->axis().decimals(trace.size())));
}

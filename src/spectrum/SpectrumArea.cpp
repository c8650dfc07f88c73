#include "spectrum/SpectrumArea.h"

#include "spectrum/SpectrumChart.h"
#include "touch/Sizes.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int SpanPoints = 24;
constexpr int ControlsWidth = 176;
constexpr int AverageDepth = 16;

QString suffix(int channel)
{
    switch (channel) {
    case 0:
        return QStringLiteral("(CH.1)");
    case 1:
        return QStringLiteral("(CH.2)");
    default:
        return QStringLiteral("(CH.3)");
    }
}
} // namespace

SpectrumArea::SpectrumArea(int channel, QWidget* parent)
    : QWidget(parent)
    , m_channel(channel)
    , m_spanBox(new QComboBox(this))
    , m_average(newSwitch(QStringLiteral("Average"), QStringLiteral("averageButton")))
    , m_maxHold(newSwitch(QStringLiteral("Max Hold"), QStringLiteral("maxHoldButton")))
    , m_vbox(new QVBoxLayout)
{
    m_spanBox->setObjectName(QStringLiteral("cboSpan%1").arg(channel + 1));
    setUpSpanBox();
    connect(m_average, &QPushButton::toggled, this,
        [this](bool on) { chart()->setAveraging(on ? AverageDepth : 1); });
    connect(m_maxHold, &QPushButton::toggled, this, [this](bool on) { chart()->setMaxHold(on); });

    auto* switches = new QHBoxLayout;
    switches->setSpacing(4);
    switches->addWidget(m_average);
    switches->addWidget(m_maxHold);
    auto* controls = new QVBoxLayout;
    controls->setSpacing(6);
    controls->addWidget(m_spanBox);
    controls->addLayout(switches);
    controls->addStretch();

    m_vbox->setContentsMargins(0, 0, 0, 0);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 2, 4, 2);
    layout->setSpacing(4);
    layout->addLayout(m_vbox, 1);
    layout->addLayout(controls);
    newChart();
}

SpectrumArea::~SpectrumArea()
{
    // A lent chart belongs to another page, but must not outlive its card.
    delete m_chart;
}

void SpectrumArea::setUpSpanBox()
{
    for (const SpanInfo& span : spanTable()) {
        m_spanBox->addItem(QLatin1String(span.label));
    }
    QFont font = m_spanBox->font();
    font.setPointSize(SpanPoints);
    m_spanBox->setFont(font);
    m_spanBox->setFixedWidth(ControlsWidth);
    m_spanBox->setMinimumHeight(touch::MinTarget);
    m_spanBox->setMaxVisibleItems(static_cast<int>(spanTable().size()));
}

QPushButton* SpectrumArea::newSwitch(const QString& text, const QString& name)
{
    auto* button = new QPushButton(text, this);
    button->setObjectName(name + QString::number(m_channel + 1));
    button->setCheckable(true);
    button->setFixedWidth((ControlsWidth - 4) / 2);
    button->setMinimumHeight(touch::MinTarget);
    return button;
}

void SpectrumArea::newChart()
{
    m_chart = new SpectrumChart(this);
    m_chart->setObjectName(QStringLiteral("chart%1").arg(m_channel + 1));
    m_chart->setSpan(spanTable().at(m_spanBox->currentIndex()));
    m_chart->setCentre(m_centre);
    m_chart->setLineColor(m_color);
    m_chart->setHMarkers(m_hMarkers);
    m_chart->setAveraging(m_average->isChecked() ? AverageDepth : 1);
    m_chart->setMaxHold(m_maxHold->isChecked());
    m_chart->setPolled(m_polled);
    m_chart->setLeftOut(!m_shown);
    m_vbox->addWidget(m_chart);
}

SpectrumChart* SpectrumArea::chart()
{
    if (m_chart == nullptr) {
        newChart();
        setName(m_name);
    }
    return m_chart;
}

void SpectrumArea::setName(const QString& name)
{
    m_name = name;
    chart()->setTitle(name + QLatin1Char(' ') + suffix(m_channel));
}

void SpectrumArea::setCentre(double centre)
{
    chart()->setCentre(centre);
    m_centre = m_chart->centre();
}

void SpectrumArea::setLineColor(const QColor& color)
{
    m_color = color;
    chart()->setLineColor(color);
}

void SpectrumArea::setHMarkers(const QList<double>& levels)
{
    chart()->setHMarkers(levels);
    m_hMarkers = m_chart->hMarkers();
}

void SpectrumArea::setPolled(bool polled)
{
    m_polled = polled;
    chart()->setPolled(polled);
}

void SpectrumArea::setShown(bool shown)
{
    m_shown = shown;
    chart()->setLeftOut(!shown);
    setVisible(shown);
}

void SpectrumArea::takeChartBack()
{
    m_vbox->addWidget(chart());
    m_chart->show();
}

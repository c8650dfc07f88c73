#include "spectrum/SpectrumArea.h"

#include "spectrum/ChartFoot.h"
#include "spectrum/ChartKeyActions.h"
#include "spectrum/ChartKeyDialog.h"
#include "spectrum/ChartKeys.h"
#include "spectrum/SpectrumChart.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {
constexpr int SpanPoints = 24;
constexpr int ControlsWidth = 188;
constexpr int SwitchHeight = 84;
constexpr int SwitchGap = 4;
constexpr int ToolsWidth = 48;
constexpr int SwitchWidth = (ControlsWidth - ToolsWidth - 2 * SwitchGap) / 2;

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
    , m_span(spanTable().first())
    , m_spanBox(new QComboBox(this))
    , m_switches(newSwitches())
    , m_vbox(new QVBoxLayout)
    , m_controls(new QVBoxLayout)
{
    m_spanBox->setObjectName(QStringLiteral("cboSpan%1").arg(channel + 1));
    setUpSpanBox();
    m_controls->setSpacing(6);
    m_controls->addWidget(m_spanBox);
    m_controls->addWidget(m_switches);
    m_controls->addStretch();

    m_vbox->setContentsMargins(0, 0, 0, 0);
    m_vbox->setSpacing(2);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 2, 4, 2);
    layout->setSpacing(4);
    layout->addLayout(m_vbox, 1);
    layout->addLayout(m_controls);
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

QWidget* SpectrumArea::newSwitches()
{
    auto* row = new QWidget(this);
    row->setFixedSize(ControlsWidth, SwitchHeight);
    m_average = newSwitch(
        QStringLiteral("Average"), QStringLiteral("averageButton"), chartKeys::Key::Average);
    m_maxHold = newSwitch(
        QStringLiteral("Max Hold"), QStringLiteral("maxHoldButton"), chartKeys::Key::MaxHold);
    auto* tools = new TextButton(QStringLiteral("Tools"), this, TextButton::Shrinking);
    tools->setObjectName(QStringLiteral("toolsButton%1").arg(m_channel + 1));
    connect(tools, &TextButton::clicked, this, [this] { emit enlargeWanted(true); });

    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SwitchGap);
    for (TextButton* button : {m_average, m_maxHold, tools}) {
        button->setFixedSize(button == tools ? ToolsWidth : SwitchWidth, SwitchHeight);
        layout->addWidget(button);
    }
    return row;
}

TextButton* SpectrumArea::newSwitch(const QString& text, const QString& name, chartKeys::Key key)
{
    auto* button = new TextButton(text, this, TextButton::Shrinking);
    button->setObjectName(name + QString::number(m_channel + 1));
    button->setCheckable(true);
    button->setMarks({keyMarks::Lamp::Off, false});
    connect(button, &TextButton::toggled, this, [this, key] { press(key); });
    return button;
}

void SpectrumArea::newChart()
{
    m_chart = new SpectrumChart(this);
    m_chart->setObjectName(QStringLiteral("chart%1").arg(m_channel + 1));
    m_chart->setSpan(m_span);
    m_chart->setCentre(m_centre);
    m_chart->setLineColor(m_color);
    m_chart->setHMarkers(m_hMarkers);
    m_chart->setSettings(m_settings);
    m_chart->setPolled(m_polled);
    m_chart->setLeftOut(m_leftOut);
    connect(m_chart, &SpectrumChart::titleTapped, this, &SpectrumArea::touchTitle);
    connect(m_chart, &SpectrumChart::settingsChanged, this, &SpectrumArea::takeSettings);
    m_vbox->insertWidget(0, m_chart, 1);
    if (m_foot != nullptr) {
        m_foot->follow(m_chart);
    }
}

SpectrumChart* SpectrumArea::chart()
{
    if (m_chart == nullptr) {
        newChart();
        setName(m_name);
    }
    return m_chart;
}

bool SpectrumArea::isLent() const
{
    return m_chart != nullptr && !isAncestorOf(m_chart);
}

// A span's outer ticks stand where its label says.
double SpectrumArea::nominalSpan() const
{
    return m_span.ticks.isEmpty() ? m_span.spanMHz : m_span.ticks.last() - m_span.ticks.first();
}

void SpectrumArea::setName(const QString& name)
{
    m_name = name;
    chart()->setTitle(name + QLatin1Char(' ') + suffix(m_channel));
}

void SpectrumArea::setSpan(const SpanInfo& span)
{
    m_span = span;
    chart()->setSpan(span);
    if (m_foot != nullptr) {
        m_foot->clear();
        m_foot->setMeasurement(m_measurement, nominalSpan());
    }
}

void SpectrumArea::setCentre(double centre)
{
    chart()->setCentre(centre);
    if (m_centre != m_chart->centre() && m_foot != nullptr) {
        m_foot->clear();
    }
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

void SpectrumArea::setLeftOut(bool leftOut)
{
    m_leftOut = leftOut;
    chart()->setLeftOut(leftOut);
}

void SpectrumArea::setEnlarged(bool enlarged)
{
    if (enlarged == m_enlarged) {
        return;
    }
    m_enlarged = enlarged;
    m_switches->setVisible(!enlarged);
    if (!enlarged) {
        m_keys->hide(); // One of them may be the sender.
        m_keys->deleteLater();
        m_keys = nullptr;
        delete m_foot;
        m_foot = nullptr;
        return;
    }
    m_keys = new ChartKeys(chartKeys::Place::BesideChart, this);
    m_keys->setFixedWidth(ControlsWidth);
    connect(m_keys, &ChartKeys::pressed, this, &SpectrumArea::press);
    m_controls->insertWidget(1, m_keys, 1);
    m_foot = new ChartFoot(this);
    m_vbox->addWidget(m_foot);
    m_foot->follow(chart());
    m_foot->setMeasurement(m_measurement, nominalSpan());
    showInEffect();
}

void SpectrumArea::takeChartBack()
{
    if (m_dialog != nullptr) {
        m_dialog->close();
    }
    m_vbox->insertWidget(0, chart(), 1);
    m_chart->show();
}

void SpectrumArea::touchTitle()
{
    if (isLent()) {
        openKeys();
    } else {
        emit enlargeWanted(!m_enlarged);
    }
}

void SpectrumArea::openKeys()
{
    if (m_dialog != nullptr) {
        return;
    }
    m_dialog = new ChartKeyDialog(this);
    connect(m_dialog->keys(), &ChartKeys::pressed, this, &SpectrumArea::press);
    m_dialog->closeWith(m_chart);
    showInEffect();
    m_dialog->open();
}

void SpectrumArea::press(chartKeys::Key key)
{
    if (key == chartKeys::Key::Close) {
        if (m_dialog != nullptr) {
            m_dialog->close();
        }
        if (m_enlarged) {
            emit enlargeWanted(false);
        }
        return;
    }
    chartKeys::carryOut(key, *chart(), m_measurement, nominalSpan());
    if (m_foot != nullptr) {
        m_foot->setMeasurement(m_measurement, nominalSpan());
    }
    showInEffect();
}

void SpectrumArea::takeSettings()
{
    m_settings = m_chart->settings();
    showInEffect();
}

void SpectrumArea::showInEffect()
{
    const auto keys = chartKeys::inEffect(m_settings, m_measurement);
    const auto showSwitch = [&keys](TextButton* button, chartKeys::Key key) {
        const QSignalBlocker quiet(button);
        const bool on = keys.contains(key);
        button->setChecked(on);
        // A fitted text has the colour of a key that is off; the page's sheet cannot change it.
        const QString sheet = on ? QStringLiteral("color: white;") : QString();
        if (button->styleSheet() != sheet) {
            button->setStyleSheet(sheet);
        }
        button->setMarks({on ? keyMarks::Lamp::On : keyMarks::Lamp::Off, false});
    };
    showSwitch(m_average, chartKeys::Key::Average);
    showSwitch(m_maxHold, chartKeys::Key::MaxHold);
    if (m_keys != nullptr) {
        m_keys->setInEffect(keys);
    }
    if (m_dialog != nullptr) {
        m_dialog->keys()->setInEffect(keys);
    }
}

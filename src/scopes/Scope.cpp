#include "scopes/Scope.h"

#include "plot/NoData.h"
#include "scopes/PlotView.h"
#include "touch/LineColors.h"
#include "wire/Log.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr qint32 BaudRate = 115200;
constexpr qint64 ReadBufferBytes = 4096;
constexpr int Red = 0; // The first line colour.
constexpr QRgb NoteColor = 0xffc8c8c8;
constexpr int NotePixels = 16;
constexpr int FoldMs = 4000; // between two looks for the samples per symbol of a small eye
constexpr QLatin1String HiddenNote("Hidden by the main unit");

ScopeContents::View viewOf(int plotType)
{
    switch (plotType) {
    case Scope::Sdi:
        return ScopeContents::View::Strips;
    case Scope::Constellation:
        return ScopeContents::View::Constellation;
    default:
        return ScopeContents::View::Eyes;
    }
}

} // namespace

Scope::Scope(const QString& portName, int demodulator, QWidget* parent)
    : QWidget(parent)
    , m_demodulator(demodulator)
    , m_line(logScopes)
    , m_lineColor(lineColors::color(Red))
{
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);
    for (const PlotView* plot : m_plots.all()) {
        connect(plot, &QCustomPlot::mouseRelease, this, &Scope::touched);
    }
    m_contents.setLineColor(m_lineColor);
    layOutPlots();
    connect(&m_watch, &DataWatch::staleChanged, this, &Scope::staleChanged);
    m_watch.setExpecting(true);
    m_measureTimer.setObjectName(QStringLiteral("measureTimer"));
    m_measureTimer.setSingleShot(true);
    connect(&m_measureTimer, &QTimer::timeout, this, &Scope::measure);
    setReadPace();
    connect(&m_line.port(), &QSerialPort::readyRead, this, &Scope::serialDataReceived);
    connect(&m_line, &SerialLine::lost, this, &Scope::forgetUnfinished);
    m_line.open(portName, BaudRate, SerialLine::Reopen::EveryTwoSeconds, ReadBufferBytes);
}

Scope::~Scope()
{
    // The views are children and outlive the contents that they show.
    m_plots.setContents(nullptr, nullptr);
}

bool Scope::lowerIsShown() const
{
    return m_plotsShown && m_numOfPlots >= 2 && m_showQPlot &&
        m_contents.view() == ScopeContents::View::Eyes;
}

// Which content each of the two plots shows, and whether it is shown.
void Scope::layOutPlots()
{
    m_contents.setView(viewOf(m_plotType));
    const bool eyes = m_contents.view() == ScopeContents::View::Eyes;
    m_contents.setUpperTimeLabel(!(eyes && m_showQPlot && m_numOfPlots >= 2));
    m_plots.setContents(m_contents.upper(), m_contents.lower());
    m_plots.setShown(upperIsShown(), lowerIsShown());
    m_plots.update();
    fixIsize();
    m_plots.shareHeight();
}

void Scope::fixIsize()
{
    const bool square = m_plotType == Constellation && !m_disableFixIsize && !m_enlarged;
    const int side = square ? std::max(1, std::min(width(), height())) : QWIDGETSIZE_MAX;
    m_plots.setUpperSide(side);
}

void Scope::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fixIsize();
    m_plots.shareHeight();
}

void Scope::setPlotType(int type)
{
    if (m_plotType != type) {
        m_plotType = type;
        setFrozen(false);
        setReadPace();
        clearPlots();
        layOutPlots();
        emit figuresChanged();
        emit lookChanged();
    }
}

void Scope::setOff(bool off)
{
    const bool changed = m_off != off;
    m_off = off;
    if (off) {
        m_watch.setExpecting(false);
        setFrozen(false);
        clearPlots(); // The signal that was shown is gone.
    } else if (changed) {
        m_watch.setExpecting(false); // What came late ends here; the whole time starts.
        m_watch.setExpecting(true);
    }
    showStale();
}

void Scope::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    if (!m_plotsShown) {
        QPainter painter(this);
        QFont large(font());
        large.setPixelSize(NotePixels);
        painter.setFont(large);
        painter.setPen(QColor::fromRgb(NoteColor));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, HiddenNote);
    }
}

void Scope::clearPlots()
{
    m_contents.clear();
    showStale();
    m_plots.update();
}

void Scope::dataChanged()
{
    m_unmeasured = true;
    scheduleMeasurement();
    m_plots.dataChanged();
}

void Scope::togglePlotType()
{
    setPlotType(m_plotType == EyePattern ? Constellation : EyePattern);
}

void Scope::setNumOfPlots(int const& count)
{
    m_numOfPlots = count;
    layOutPlots();
}

void Scope::setShowQPlot(bool shown)
{
    m_showQPlot = shown;
    layOutPlots();
}

void Scope::setDisableFixIsize(bool disabled)
{
    m_disableFixIsize = disabled;
    fixIsize();
}

void Scope::setSdiStripCount(int count)
{
    m_contents.strips().setStripCount(count);
    m_plots.update();
}

void Scope::setLineColor(int color)
{
    const QColor wanted = lineColors::color(color);
    if (!wanted.isValid()) {
        return;
    }
    m_lineColor = wanted;
    m_contents.setLineColor(m_lineColor);
    m_plots.update();
}

void Scope::setPlotsShown(bool shown)
{
    m_plotsShown = shown;
    layOutPlots();
    update();
    m_measureTimer.stop();
    scheduleMeasurement();
    emit figuresChanged();
}

void Scope::touched()
{
    if (m_touch == Touch::IsPassedOn) {
        emit plotTouched();
    } else {
        plotClickSlot();
    }
}

void Scope::plotClickSlot()
{
    setFixedRange(!fixedRange());
}

void Scope::setFixedRange(bool fixed)
{
    if (fixedRange() != fixed) {
        m_contents.setRangeFixed(fixed);
        m_plots.update();
        emit lookChanged();
    }
}

void Scope::setEnlarged(bool enlarged)
{
    m_enlarged = enlarged;
    m_contents.setMarksShown(enlarged);
    layOutPlots();
    m_measureTimer.stop();
    if (enlarged) {
        measure();
    }
}

void Scope::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    setReadPace();
    scheduleMeasurement(); // of what has come meanwhile
}

void Scope::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    setReadPace();
    m_measureTimer.stop();
}

// Only what somebody sees is measured. The fold of a small eye follows the signal less often.
void Scope::scheduleMeasurement()
{
    const bool eyes = m_contents.view() == ScopeContents::View::Eyes;
    const bool due =
        m_unmeasured && isVisible() && m_plotsShown && (m_enlarged || eyes) && !isFrozen();
    if (due && !m_measureTimer.isActive()) {
        m_measureTimer.start(!m_enlarged ? FoldMs : eyes ? EyeFiguresMs : FiguresMs);
    }
}

void Scope::measure()
{
    if (isVisible() && m_plotsShown && !stale()) {
        m_unmeasured = false;
        m_contents.measure();
        m_plots.dataChanged();
    }
    emit figuresChanged();
}

QVector<ScopeFigure> Scope::figures() const
{
    return stale() || m_off || !m_plotsShown ? scopeFigures::withoutValues(m_contents.figures())
                                             : m_contents.figures();
}

void Scope::setFrozen(bool frozen)
{
    if (isFrozen() == frozen) {
        return;
    }
    m_measureTimer.stop();
    if (frozen && m_enlarged && m_unmeasured) {
        measure(); // so that the numbers are those of the picture that is held
    }
    m_unmeasured = true;
    m_contents.setFrozen(frozen);
    showStale(); // what was held has ended "NO DATA"
    m_plots.setFrozen(frozen);
    m_plots.update();
    scheduleMeasurement();
    emit lookChanged();
}

void Scope::setPersistence(DensityImage::Persistence persistence)
{
    m_contents.setPersistence(persistence);
    emit lookChanged();
}

void Scope::plotEyeConsData(QVector<double>& i, QVector<double>& q)
{
    dataCame();
    m_contents.addBlock(i, q);
    dataChanged();
}

void Scope::staleChanged()
{
    if (m_off && m_watch.isStale()) {
        m_watch.setExpecting(false);
        clearPlots(); // It was the block under way when the demodulator was switched off.
    }
    showStale();
}

void Scope::showStale()
{
    if (stale()) {
        m_contents.setBadge(noData::text());
    }
    m_plots.setStale(stale());
    emit figuresChanged();
}

QString Scope::readout() const
{
    if (!m_plotsShown) {
        return HiddenNote;
    }
    QStringList texts;
    const auto read = [&texts, this](const PlotContent& content) {
        texts += content.badge();
        texts += stale() ? QString() : content.note();
    };
    if (upperIsShown()) {
        read(*m_contents.upper());
    }
    if (lowerIsShown()) {
        read(*m_contents.lower());
    }
    if (isFrozen() && upperIsShown()) {
        texts += PlotView::frozenText();
    }
    if (m_enlarged) {
        texts += hasRange() ? m_contents.rangeText() : QString();
        for (const ScopeFigure& figure : figures()) {
            texts += figure.name + QLatin1Char(' ') + figure.value;
        }
    }
    texts.removeAll(QString());
    texts.removeDuplicates();
    return texts.join(QLatin1Char('\n'));
}

void Scope::plotSdiData(QByteArray& record)
{
    dataCame();
    m_contents.addRecord(record);
    dataChanged();
}

void Scope::setReadPace()
{
    m_pace.setPeriod(m_plotType == Sdi ? 0 : isVisible() ? ShownReadMs : HiddenReadMs);
}

void Scope::serialDataReceived()
{
    QSerialPort& port = m_line.port();
    qint64 read = 0;
    while (port.isOpen() && port.bytesAvailable() > 0) {
        const QByteArray bytes = port.readAll();
        if (bytes.isEmpty()) {
            break;
        }
        read += bytes.size();
        m_plotType == Sdi ? decodeSdi(bytes) : decodeIq(bytes);
    }
    m_pace.noteRead(read);
}

// A scope that is off expects nothing, but removes what comes when nothing follows it.
void Scope::dataCame()
{
    m_watch.setExpecting(true);
    m_watch.dataCame();
}

void Scope::decodeIq(const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        done += m_decoder.take(bytes.constData() + done, bytes.size() - done);
        if (m_decoder.blockReady()) {
            QVector<double> i = m_decoder.i();
            QVector<double> q = m_decoder.q();
            plotEyeConsData(i, q);
            emit rcv_eye_msg(i, q);
        }
    }
}

void Scope::decodeSdi(const QByteArray& bytes)
{
    QByteArray record = m_sdiDecoder.read(bytes);
    if (!record.isEmpty()) {
        plotSdiData(record);
        emit rcv_sdi_msg(record);
    }
}

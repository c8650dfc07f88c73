#include "scopes/Scope.h"

#include "scopes/Interpolator.h"
#include "scopes/PlotView.h"
#include "wire/Log.h"

#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr qint32 BaudRate = 115200;
constexpr qint64 ReadBufferBytes = 4096;
constexpr int SilenceMs = 2000; // the time of 15 blocks
constexpr QRgb NoteColor = 0xffc8c8c8;
constexpr int NotePixels = 16;

const std::array<QColor, 8> LineColors{QColor(255, 0, 0), QColor(0, 255, 0), QColor(64, 64, 255),
    QColor(0, 255, 255), QColor(255, 0, 255), QColor(255, 255, 0), QColor(255, 255, 255),
    QColor(160, 160, 160)};

// The outermost values that the line can carry: a sample there has been clipped.
constexpr double Clipped = 32767.0 * IqBlockDecoder::Scale;

double peakOf(const QVector<double>& samples)
{
    double peak = 0.0;
    for (const double sample : samples) {
        peak = std::max(peak, std::abs(sample));
    }
    return peak;
}

} // namespace

Scope::Scope(const QString& portName, int demodulator, QWidget* parent)
    : QWidget(parent)
    , m_demodulator(demodulator)
    , m_line(logScopes)
    , m_eyeI(QStringLiteral("I (% FS)"))
    , m_eyeQ(QStringLiteral("Q (% FS)"))
    , m_lineColor(LineColors[0])
{
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);
    setUpPlots();
    m_silence.setParent(this);
    m_silence.setObjectName(QStringLiteral("silence"));
    m_silence.setSingleShot(true);
    m_silence.setInterval(SilenceMs);
    connect(&m_silence, &QTimer::timeout, this, &Scope::markSilence);
    connect(&m_line.port(), &QSerialPort::readyRead, this, &Scope::serialDataReceived);
    m_line.open(portName, BaudRate, SerialLine::Reopen::EveryTwoSeconds, ReadBufferBytes);
}

Scope::~Scope()
{
    // the views outlive the contents that they show
    m_plotI->setContent(nullptr);
    m_plotQ->setContent(nullptr);
}

void Scope::setUpPlots()
{
    m_plotI = new PlotView(this);
    m_plotI->setObjectName(QStringLiteral("plotI"));
    m_plotQ = new PlotView(this);
    m_plotQ->setObjectName(QStringLiteral("plotQ"));
    auto* plots = new QVBoxLayout(this);
    plots->setContentsMargins(0, 0, 0, 0);
    plots->setSpacing(0);
    for (PlotView* plot : {m_plotI, m_plotQ}) {
        plots->addWidget(plot, 1);
        connect(plot, &QCustomPlot::mouseRelease, this, &Scope::plotClickSlot);
    }
    for (PlotContent* content : contents()) {
        content->setLineColor(m_lineColor);
    }
    layOutPlots();
}

std::array<PlotContent*, 4> Scope::contents()
{
    return {&m_eyeI, &m_eyeQ, &m_constellation, &m_sdi};
}

// Which content each of the two plots shows, and whether it is shown.
void Scope::layOutPlots()
{
    const bool eye = m_plotType != Sdi && m_plotType != Constellation;
    const bool withQ = eye && m_showQPlot && m_numOfPlots >= 2;
    m_eyeI.setTimeLabel(!withQ);
    if (m_plotType == Sdi) {
        m_plotI->setContent(&m_sdi);
    } else if (m_plotType == Constellation) {
        m_plotI->setContent(&m_constellation);
    } else {
        m_plotI->setContent(&m_eyeI);
    }
    m_plotQ->setContent(&m_eyeQ);
    m_plotI->setVisible(m_plotsShown && m_numOfPlots >= 1);
    m_plotQ->setVisible(m_plotsShown && withQ);
    m_plotI->update();
    fixIsize();
    shareHeight();
    layout()->activate();
}

// The two data areas are equally high, though the time stands under the lower one alone.
void Scope::shareHeight()
{
    auto* plots = qobject_cast<QBoxLayout*>(layout());
    const int frameI = m_plotI->frameHeight();
    const int frameQ = m_plotQ->frameHeight();
    const int left = std::max(0, height() - frameI - frameQ);
    plots->setSpacing(left % 2); // an odd pixel is nobody's
    plots->setStretchFactor(m_plotI, frameI + left / 2);
    plots->setStretchFactor(m_plotQ, frameQ + left / 2);
}

void Scope::fixIsize()
{
    QSize largest(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (m_plotType == Constellation && !m_disableFixIsize) {
        const int side = std::max(1, std::min(width(), height()));
        largest = QSize(side, side);
    }
    if (m_plotI->maximumSize() != largest) {
        m_plotI->setMaximumSize(largest);
    }
}

void Scope::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fixIsize();
    shareHeight();
    layout()->activate();
}

void Scope::setPlotType(int type)
{
    if (m_plotType != type) {
        m_plotType = type;
        clearPlots();
        layOutPlots();
    }
}

void Scope::setOff(bool off)
{
    m_off = off;
    if (off) {
        clearPlots(); // what was there before is not there any more
    } else {
        m_silence.start();
    }
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
        painter.drawText(
            rect(), Qt::AlignCenter | Qt::TextWordWrap, QStringLiteral("Hidden by the main unit"));
    }
}

void Scope::clearPlots()
{
    m_silence.stop();
    for (PlotContent* content : contents()) {
        content->clear();
    }
    m_plotI->update();
    m_plotQ->update();
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
    m_sdi.setStripCount(count);
    m_plotI->update();
}

void Scope::setLineColor(int color)
{
    if (color < 0 || color >= static_cast<int>(LineColors.size())) {
        return;
    }
    m_lineColor = LineColors[static_cast<size_t>(color)];
    for (PlotContent* content : contents()) {
        content->setLineColor(m_lineColor);
    }
    m_plotI->update();
    m_plotQ->update();
}

void Scope::setPlotsShown(bool shown)
{
    m_plotsShown = shown;
    layOutPlots();
    update();
}

void Scope::plotClickSlot()
{
    m_range.setFixed(!m_range.fixed());
    applyRange();
    m_plotI->update();
    m_plotQ->update();
}

void Scope::applyRange()
{
    m_eyeI.setLimit(m_range.limit());
    m_eyeQ.setLimit(m_range.limit());
    m_constellation.setLimit(m_range.limit());
}

void Scope::plotEyeConsData(QVector<double>& i, QVector<double>& q)
{
    const double peakI = peakOf(i);
    const double peakQ = peakOf(q);
    m_range.addPeak(std::max(peakI, peakQ));
    applyRange();
    const QString badge = QStringLiteral("CLIP");
    const bool clippedI = peakI >= Clipped;
    const bool clippedQ = peakQ >= Clipped;
    if (m_plotType == Constellation) {
        m_constellation.setBadge(clippedI || clippedQ ? badge : QString());
        m_constellation.addBlock(i, q);
    } else {
        m_eyeI.setBadge(clippedI ? badge : QString());
        m_eyeQ.setBadge(clippedQ ? badge : QString());
        m_eyeI.addBlock(i);
        m_eyeQ.addBlock(q);
    }
    m_plotI->dataChanged();
    m_plotQ->dataChanged();
}

void Scope::markSilence()
{
    if (m_off) {
        clearPlots(); // that was the block under way when it was switched off
        return;
    }
    for (PlotContent* content : contents()) {
        content->setBadge(QStringLiteral("NO DATA"));
    }
    m_plotI->dataChanged();
    m_plotQ->dataChanged();
}

void Scope::plotSdiData(QByteArray& record)
{
    m_sdi.setBadge({});
    m_sdi.addRecord(record);
    m_plotI->dataChanged();
}

QVector<double> Scope::interpolator(QVector<double> samples, int factor)
{
    const Interpolator filter(factor);
    const QVector<double>& taps = filter.taps();
    if (samples.isEmpty()) {
        return {};
    }
    QVector<double> delay(taps.size(), 0.0);
    int state = 0;
    const auto step = [&](double input) {
        return fir_double_z(
            input, static_cast<int>(taps.size()), taps.constData(), delay.data(), state);
    };
    // beyond both ends the outermost sample goes on
    QVector<double> extended(Interpolator::HalfTaps, samples.first());
    extended += samples;
    extended += QVector<double>(Interpolator::HalfTaps, samples.last());

    // the filter answers with a delay of half its length
    const qsizetype late = 2 * static_cast<qsizetype>(Interpolator::HalfTaps) * filter.factor();
    QVector<double> points;
    points.reserve(samples.size() * filter.factor());
    qsizetype done = 0;
    for (const double sample : std::as_const(extended)) {
        for (int phase = 0; phase < filter.factor(); ++phase) {
            const double point = step(phase == 0 ? sample : 0.0);
            if (done++ >= late) {
                points.append(point);
            }
        }
    }
    return points;
}

double Scope::fir_double_z(double input, int ntaps, double const* taps, double* delay, int& state)
{
    return firStep(input, ntaps, taps, delay, state);
}

void Scope::serialDataReceived()
{
    QSerialPort& port = m_line.port();
    while (port.isOpen() && port.bytesAvailable() > 0) {
        const QByteArray bytes = port.readAll();
        if (bytes.isEmpty()) {
            return;
        }
        if (m_plotType == Sdi) {
            decodeSdi(bytes);
        } else {
            decodeIq(bytes);
        }
    }
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
            m_silence.start();
            emit rcv_eye_msg(i, q);
        }
    }
}

void Scope::decodeSdi(const QByteArray& bytes)
{
    QByteArray record = m_sdiDecoder.read(bytes);
    if (!record.isEmpty()) {
        plotSdiData(record);
        m_silence.start();
        emit rcv_sdi_msg(record);
    }
}

#pragma once

#include "scopes/ConstellationPlot.h"
#include "scopes/EyePlot.h"
#include "scopes/IqBlockDecoder.h"
#include "scopes/RangeKeeper.h"
#include "scopes/SdiDecoder.h"
#include "scopes/SdiPlot.h"
#include "wire/SerialLine.h"

#include <QByteArray>
#include <QString>
#include <QTimer>
#include <QVector>
#include <QWidget>

#include <array>

class PlotView;
class QVBoxLayout;

// The display of one demodulator: reads its scope port, plots what comes and passes it on.
//
// What the port has goes in bulk to the decoder of the plot type, I/Q blocks or SDI records. A
// finished block or record is first plotted, then leaves by rcv_eye_msg or rcv_sdi_msg, whether or
// not anybody sees the plot. Two plots lie one above the other: the eyes of I and Q; constellation
// and SDI strips use the upper one alone. A broken block is dropped without a word. A plot that
// gets nothing for two seconds keeps what it has and says so ("NO DATA"), as it looks like a steady
// signal.
//
// Both signals leave while the port tells of its data: whoever gets one may have the scope deleted
// later (deleteLater()), but not at once, which would take the port away from under itself.
class Scope : public QWidget
{
    Q_OBJECT

public:
    // The plot types. SDI is the one with a wire format of its own; every other number receives
    // I/Q blocks, and those that are not named here are plotted as eye patterns.
    enum PLOT_TYPES { Sdi = 0, EyePattern = 1, Constellation = 2 };

    // portName: device without a directory, opened at once at 115200 baud and tried again every two
    // seconds while it is not there. demodulator: the number of the demodulator, 1 to 3.
    Scope(const QString& portName, int demodulator, QWidget* parent = nullptr);
    ~Scope() override;

    int demodulator() const { return m_demodulator; }
    QString portName() const { return m_line.name(); }
    bool portIsOpen() const { return m_line.isOpen(); }
    const QSerialPort& port() { return m_line.port(); }

    void setPlotType(int type);
    int plotType() const { return m_plotType; }

    // Whether the demodulator has been told to send nothing; false at first. What still comes is
    // plotted, and forgotten when nothing follows it for two seconds.
    void setOff(bool off);

    // Empties the plots, until the next data come. A change of the plot type does it, too: what was
    // received in another form is no use in the new one.
    void clearPlots();

    // How many of the two plots may be used, 2 at first.
    int numOfPlots() const { return m_numOfPlots; }
    void setNumOfPlots(int const& count);
    // Whether the eye of Q is shown under that of I, true at first.
    bool showQPlot() const { return m_showQPlot; }
    void setShowQPlot(bool shown);
    // Whether the upper plot may take any shape instead of being kept square for a constellation.
    bool disableFixIsize() const { return m_disableFixIsize; }
    void setDisableFixIsize(bool disabled);
    // How many of a record's five bytes are shown as strips, 5 at first.
    int sdiStripCount() const { return m_sdi.stripCount(); }
    void setSdiStripCount(int count);
    // color: 0 red, 1 green, 2 blue, 3 cyan, 4 magenta, 5 yellow, 6 white, 7 grey; others: ignored.
    void setLineColor(int color);
    QColor lineColor() const { return m_lineColor; }

    // Shows or hides the plots; the scope keeps its place, which tells why it is empty, and goes on
    // receiving.
    void setPlotsShown(bool shown);
    bool plotsShown() const { return m_plotsShown; }

    // Whether the axes span full scale; else they are fitted to the signal. False at first.
    bool fixedRange() const { return m_range.fixed(); }

    // Plots one block. i, q: samples in parts of full scale, -1 to 1.
    void plotEyeConsData(QVector<double>& i, QVector<double>& q);
    // Plots one record of five bytes.
    void plotSdiData(QByteArray& record);

    // Out: the samples with factor - 1 points between every two of them, factor times as many.
    QVector<double> interpolator(QVector<double> samples, int factor);
    // One step of a FIR filter over a circular delay line of `ntaps` values; see firStep().
    double fir_double_z(double input, int ntaps, double const* taps, double* delay, int& state);

    // Keeps the upper plot square while it shows a constellation, unless that is disabled.
    void fixIsize();

    const IqBlockDecoder& decoder() const { return m_decoder; }
    const ConstellationPlot& constellation() const { return m_constellation; }

public slots:
    // Reads and decodes everything that the port has.
    void serialDataReceived();
    // From eye pattern to constellation and back; from SDI to the eye pattern.
    void togglePlotType();
    // A touch on a plot: fixed range or range fitted to the signal.
    void plotClickSlot();

signals:
    void rcv_eye_msg(QVector<double> i, QVector<double> q);
    void rcv_sdi_msg(QByteArray record);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<PlotContent*, 4> contents();
    void setUpPlots();
    void layOutPlots();
    void shareHeight();
    void applyRange();
    void markSilence();
    void decodeIq(const QByteArray& bytes);
    void decodeSdi(const QByteArray& bytes);

    int m_demodulator;
    SerialLine m_line;
    IqBlockDecoder m_decoder;
    SdiDecoder m_sdiDecoder;
    RangeKeeper m_range;
    EyePlot m_eyeI;
    EyePlot m_eyeQ;
    ConstellationPlot m_constellation;
    SdiPlot m_sdi;
    PlotView* m_plotI = nullptr;
    PlotView* m_plotQ = nullptr;
    QColor m_lineColor;
    QTimer m_silence; // since the last block or record
    int m_plotType = EyePattern;
    int m_numOfPlots = 2;
    bool m_showQPlot = true;
    bool m_disableFixIsize = false;
    bool m_plotsShown = true;
    bool m_off = false;
};

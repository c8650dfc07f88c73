#pragma once

#include "plot/DataWatch.h"
#include "scopes/IqBlockDecoder.h"
#include "scopes/ScopeContents.h"
#include "scopes/SdiDecoder.h"
#include "wire/SerialLine.h"

#include <QByteArray>
#include <QString>
#include <QVector>
#include <QWidget>

class PlotView;

/// The display of one demodulator: reads its scope port, plots what comes and passes it on.
///
/// Everything that the port has goes in one piece to the decoder of the plot type, I/Q blocks or
/// SDI records. A finished block or record is first given to ScopeContents, which the two plots
/// show, then leaves by rcv_eye_msg() or rcv_sdi_msg(), whether or not anybody sees the plots. They
/// lie one above the other: the eyes of I and Q; constellation and SDI strips use the upper one
/// alone. A broken block is dropped and not reported. A scope that gets no block or record for
/// StaleMs keeps its picture, which looks like a steady signal otherwise, dims it and shows "NO
/// DATA" over it. Only data end that.
///
/// Both signals are emitted while the port reports its data. A slot may delete the scope later
/// (deleteLater()), but not at once: the port is still in use.
class Scope : public QWidget
{
    Q_OBJECT

public:
    /// The plot types. SDI has a wire format of its own. Every other number receives I/Q blocks,
    /// and those that are not named here are plotted as eye patterns.
    enum PLOT_TYPES {
        Sdi = 0,          ///< SDI records as strips.
        EyePattern = 1,   ///< The eyes of I and Q.
        Constellation = 2 ///< I over Q.
    };

    /// How long a scope that is on waits for a block or record before it is stale, in milliseconds:
    /// the time of 15 blocks.
    static constexpr int StaleMs = 2000;

    /// Opens the port at 115200 baud, and tries again every two seconds while that fails.
    /// \param portName device without a directory, such as "ttyUSB1".
    /// \param demodulator the number of the demodulator, 1 to 3.
    Scope(const QString& portName, int demodulator, QWidget* parent = nullptr);
    ~Scope() override;

    /// \return the number of the demodulator.
    int demodulator() const { return m_demodulator; }
    /// \return the device without a directory.
    QString portName() const { return m_line.name(); }
    /// \return whether the port is open.
    bool portIsOpen() const { return m_line.isOpen(); }
    /// \return the port, to look at its settings.
    const QSerialPort& port() { return m_line.port(); }

    /// Sets what is received and plotted, one of PLOT_TYPES or any other number. Another type than
    /// before empties the plots.
    void setPlotType(int type);
    /// \return the plot type; EyePattern at first.
    int plotType() const { return m_plotType; }

    /// Sets whether the demodulator has been told to send nothing; false at first. What still comes
    /// is plotted, and removed when nothing follows it for StaleMs. A value that is set already
    /// does not start the time anew.
    void setOff(bool off);

    /// Empties the plots until the next data come; a scope that is stale() stays so.
    void clearPlots();

    /// \return whether the scope is on and has got no block or record for StaleMs. Only a block or
    /// record ends that.
    bool stale() const { return !m_off && m_watch.isStale(); }
    /// \return what the operator reads on the scope beside the axes, line by line: the badges
    /// "CLIP" and "NO DATA", or the note that the plots are hidden; empty when there is nothing.
    QString readout() const;

    /// \return how many of the two plots may be used, 2 at first.
    int numOfPlots() const { return m_numOfPlots; }
    /// Sets how many of the two plots may be used: 0, 1 or 2.
    void setNumOfPlots(int const& count);
    /// \return whether the eye of Q is shown under that of I, true at first.
    bool showQPlot() const { return m_showQPlot; }
    /// Sets whether the eye of Q is shown under that of I.
    void setShowQPlot(bool shown);
    /// \return whether the upper plot may take any shape instead of being kept square for a
    /// constellation, false at first.
    bool disableFixIsize() const { return m_disableFixIsize; }
    /// Sets whether the upper plot may take any shape.
    void setDisableFixIsize(bool disabled);
    /// \return how many of a record's five bytes are shown as strips, 5 at first.
    int sdiStripCount() const { return m_contents.strips().stripCount(); }
    /// Sets how many of a record's bytes are shown as strips, 1 to 5.
    void setSdiStripCount(int count);
    /// Sets the colour of the signal.
    /// \param color a number of lineColors::color(); others are ignored.
    void setLineColor(int color);
    /// \return the colour of the signal, red at first.
    QColor lineColor() const { return m_lineColor; }

    /// Shows or hides the plots. The scope keeps its place, where a note says why it is empty, and
    /// goes on receiving.
    void setPlotsShown(bool shown);
    /// \return whether the plots are shown, true at first.
    bool plotsShown() const { return m_plotsShown; }

    /// \return whether the axes span full scale; otherwise they are fitted to the signal. False at
    /// first.
    bool fixedRange() const { return m_contents.rangeFixed(); }

    /// Plots one block.
    /// \param i, q samples in parts of full scale, -1 to 1.
    void plotEyeConsData(QVector<double>& i, QVector<double>& q);
    /// Plots one record of five bytes.
    void plotSdiData(QByteArray& record);

    /// \return \a samples with \a factor - 1 points between every two of them, \a factor times as
    /// many; see interpolateStepwise().
    QVector<double> interpolator(QVector<double> samples, int factor);
    /// One step of a FIR filter over a circular delay line of \a ntaps values; see firStep().
    double fir_double_z(double input, int ntaps, double const* taps, double* delay, int& state);

    /// Keeps the upper plot square while it shows a constellation, unless that is disabled.
    void fixIsize();

    /// \return the decoder of I/Q blocks.
    const IqBlockDecoder& decoder() const { return m_decoder; }
    /// \return what a constellation shows.
    const ConstellationPlot& constellation() const { return m_contents.constellation(); }

public slots:
    /// Reads and decodes everything that the port has.
    void serialDataReceived();
    /// Changes from eye pattern to constellation and back, and from SDI to the eye pattern.
    void togglePlotType();
    /// Changes between fixed range and range fitted to the signal, at a touch on a plot.
    void plotClickSlot();

signals:
    /// Emitted when a whole block was received, after it was given to the plots.
    /// \param i, q samples in parts of full scale, -1 to 1, 256 each.
    void rcv_eye_msg(QVector<double> i, QVector<double> q);
    /// Emitted when an SDI record of five bytes was received, after it was given to the plots.
    void rcv_sdi_msg(QByteArray record);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setUpPlots();
    void layOutPlots();
    void shareHeight();
    void updatePlots();
    void dataChanged();
    void dataCame();
    void staleChanged();
    void showStale();
    void decodeIq(const QByteArray& bytes);
    void decodeSdi(const QByteArray& bytes);

    int m_demodulator;
    SerialLine m_line;
    IqBlockDecoder m_decoder;
    SdiDecoder m_sdiDecoder;
    ScopeContents m_contents;
    PlotView* m_plotI = nullptr;
    PlotView* m_plotQ = nullptr;
    QColor m_lineColor;
    DataWatch m_watch{StaleMs, QStringLiteral("silence"), this}; // for blocks and records
    int m_plotType = EyePattern;
    int m_numOfPlots = 2;
    bool m_showQPlot = true;
    bool m_disableFixIsize = false;
    bool m_plotsShown = true;
    bool m_off = false;
};

#pragma once

#include "plot/DataWatch.h"
#include "scopes/Interpolator.h"
#include "scopes/IqBlockDecoder.h"
#include "scopes/PortPace.h"
#include "scopes/ScopeContents.h"
#include "scopes/ScopePlots.h"
#include "scopes/SdiDecoder.h"
#include "wire/SerialLine.h"

#include <QByteArray>
#include <QString>
#include <QTimer>
#include <QVector>
#include <QWidget>

#include <utility>

/// The display of one demodulator: reads its scope port, plots what comes and passes it on.
///
/// Everything that the port has goes in one piece to the decoder of the plot type, I/Q blocks or
/// SDI records. A stream of blocks is read every ShownReadMs or HiddenReadMs (PortPace), SDI
/// records as they come, because the unit of their decoder is one read. A finished block or record
/// is first given to ScopeContents, which the two plots show, then leaves by rcv_eye_msg() or
/// rcv_sdi_msg(), whether or not anybody sees the plots. They lie one above the other: the eyes of
/// I and Q; constellation and SDI strips use the upper one alone. A broken block is dropped and not
/// reported. A scope that gets no block or record for StaleMs keeps its picture, which looks like a
/// steady signal otherwise, dims it and shows "NO DATA" over it. Only data end that.
///
/// A scope may be enlarged: its page then gives it all the room. It can be frozen: what comes is
/// received and passed on, but not plotted until that ends. Its page decides what a touch does.
///
/// rcv_eye_msg() and rcv_sdi_msg() are emitted while the port reports its data. A slot may delete
/// the scope later (deleteLater()), but not at once: the port is still in use.
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

    /// What a touch on a plot does.
    enum class Touch {
        ChangesRange, ///< It calls plotClickSlot().
        IsPassedOn    ///< It emits plotTouched().
    };

    /// How long a scope that is on waits for a block or record before it is stale, in milliseconds:
    /// the time of 15 blocks.
    static constexpr int StaleMs = 2000;

    /// The time between two reads of a stream of blocks while the scope is shown, in milliseconds.
    static constexpr int ShownReadMs = 50;
    /// The same while the scope is hidden.
    static constexpr int HiddenReadMs = 100;

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
    /// \return what the operator reads on the scope beside the frame, line by line: the badges
    /// "CLIP" and "NO DATA", "FROZEN", what is assumed about an eye pattern, and the range and the
    /// numbers of an enlarged scope; or the note that the plots are hidden; empty when there is
    /// nothing.
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
    /// first. The frame says which it is.
    bool fixedRange() const { return m_contents.rangeFixed(); }
    /// Sets whether the axes span full scale or are fitted to the signal.
    void setFixedRange(bool fixed);
    /// \return whether the axes of the current plot type have a range that can be chosen: those of
    /// SDI strips have not.
    bool hasRange() const { return m_contents.view() != ScopeContents::View::Strips; }

    /// Sets what a touch on a plot does; it changes the range at first.
    void setTouch(Touch touch) { m_touch = touch; }

    /// Sets whether the scope has its page for itself: nothing keeps its plots square then, beside
    /// their axes.
    void setEnlarged(bool enlarged);
    /// \return whether the scope has its page for itself, false at first.
    bool isEnlarged() const { return m_enlarged; }

    /// Sets whether what is plotted is held. Data that come are received and passed on all the
    /// same, and the newest are plotted when that ends. Another plot type and "off" end it.
    void setFrozen(bool frozen);
    /// \return whether what is plotted is held, false at first.
    bool isFrozen() const { return m_contents.frozen(); }

    /// \return the numbers of an enlarged scope; "---" in place of those that are not certain, and
    /// of all while nothing is received and while the plots are hidden.
    QVector<ScopeFigure> figures() const;
    /// The shortest time between two readings of the numbers, in milliseconds.
    static constexpr int FiguresMs = 500;
    /// The same of an eye pattern, which costs more to measure.
    static constexpr int EyeFiguresMs = 1000;

    /// Sets how long the signal stays on the screen; Short at first. SDI strips have no
    /// persistence.
    void setPersistence(DensityImage::Persistence persistence);
    /// \return how long the signal stays on the screen.
    DensityImage::Persistence persistence() const { return m_contents.persistence(); }

    /// Plots one block.
    /// \param i, q samples in parts of full scale, -1 to 1.
    void plotEyeConsData(QVector<double>& i, QVector<double>& q);
    /// Plots one record of five bytes.
    void plotSdiData(QByteArray& record);

    /// \return \a samples with \a factor - 1 points between every two of them, \a factor times as
    /// many; see interpolateStepwise().
    QVector<double> interpolator(QVector<double> samples, int factor)
    {
        return interpolateStepwise(std::move(samples), factor);
    }
    /// One step of a FIR filter over a circular delay line of \a ntaps values; see firStep().
    double fir_double_z(double input, int ntaps, double const* taps, double* delay, int& state)
    {
        return firStep(input, ntaps, taps, delay, state);
    }

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
    /// Changes between fixed range and range fitted to the signal.
    void plotClickSlot();

signals:
    /// Emitted when a whole block was received, after it was given to the plots.
    /// \param i, q samples in parts of full scale, -1 to 1, 256 each.
    void rcv_eye_msg(QVector<double> i, QVector<double> q);
    /// Emitted when an SDI record of five bytes was received, after it was given to the plots.
    void rcv_sdi_msg(QByteArray record);
    /// Emitted at a touch on a plot, when setTouch() has it passed on.
    void plotTouched();
    /// Emitted when the plot type, the range, the persistence or whether the scope is frozen may
    /// have changed.
    void lookChanged();
    /// Emitted when figures() may have changed.
    void figuresChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    // What a lost port has left is not the beginning of what the next one sends.
    void forgetUnfinished()
    {
        m_decoder = IqBlockDecoder();
        m_sdiDecoder = SdiDecoder();
    }
    bool upperIsShown() const { return m_plotsShown && m_numOfPlots >= 1; }
    bool lowerIsShown() const;
    void setReadPace();
    void touched();
    void scheduleMeasurement();
    void measure();
    void layOutPlots();
    void dataChanged();
    void dataCame();
    void staleChanged();
    void showStale();
    void decodeIq(const QByteArray& bytes);
    void decodeSdi(const QByteArray& bytes);

    int m_demodulator;
    SerialLine m_line;
    PortPace m_pace{m_line.port(), this};
    IqBlockDecoder m_decoder;
    SdiDecoder m_sdiDecoder;
    ScopeContents m_contents;
    ScopePlots m_plots{this};
    QColor m_lineColor;
    DataWatch m_watch{StaleMs, QStringLiteral("silence"), this}; // for blocks and records
    QTimer m_measureTimer{this};
    int m_plotType = EyePattern;
    int m_numOfPlots = 2;
    bool m_showQPlot = true;
    bool m_disableFixIsize = false;
    bool m_plotsShown = true;
    bool m_off = false;
    bool m_enlarged = false;
    bool m_unmeasured = false; // data have come since the last measurement
    Touch m_touch = Touch::ChangesRange;
};

#pragma once

#include "spectrum/CardCommands.h"
#include "spectrum/Rs422Bus.h"
#include "wire/SpanTable.h"

#include <QList>
#include <QWidget>

#include <memory>

class CardSession;
class SpectrumArea;
class SpectrumChart;

/// The page of one spectral card: three channels, each with a chart and its span.
///
/// The page shows, its CardSession talks to the card. A spectrum in: the session passes the points
/// on, the channel's chart takes them, specUpdate() hands them to whoever forwards them. A span
/// out: the combo box, setSpanComboBox() and SetSpan() tell it to the session, which reports it
/// back to the chart, the box and spanChanged(). The card is polled while the page is on the
/// screen, or while setOverRideVisCheck() says that a chart of it is lent to another page, whether
/// that one is on the screen or not.
///
/// Channels are 0 to 2 and spans are indexes into m_spanTable throughout; others are ignored.
class SpectralCard : public QWidget
{
    Q_OBJECT

public:
    /// One span that the operator can choose.
    using SPANINFO = SpanInfo;
    /// All spans, narrowest first.
    static const QVector<SPANINFO> m_spanTable;

    /// \param parent the page's parent.
    /// \param window which pair of receivers the card serves: 0 for "CH.1/CH.2/CMB.1", others for
    /// "CH.3/CH.4/CMB.2".
    /// \param portName the card's port, without a directory.
    SpectralCard(QWidget* parent, int window, const QString& portName);
    ~SpectralCard() override;

    /// Whether the card's first port is open.
    bool isOpen() const;

    /// Sends one request through the first bus.
    /// \param command is filled up or cut to ten characters.
    /// \param timeout for the reply in ms; below 1 the bus's own.
    void sendSerialCmd(const QString& command, int timeout);
    /// Sends one request through the first bus, with the bus's own timeout.
    void sendSerialCmd(const QString& command);

    /// Asks for the next spectrum: of the next channel whose area is shown; of none, if none is.
    void UpdateCmds();

    /// Goes over to a card of the K7150 type on three ports.
    void setK7150(const QString& port1, const QString& port2, const QString& port3);
    /// Whether the card is of the K7150 type.
    bool k7150Type() const;

    /// Asks the card for its version, spans and trims, what of it has not been asked already. A
    /// K7150 is asked nothing: its demodulators are told to send spectra, they and it with which
    /// span.
    void initSA();
    /// Tells the demodulators of a K7150 their spans again, after the main unit was restarted.
    void tellDemodulatorsAgain();

    /// The span of a channel; -1 for no such channel.
    int getSpan(int channel) const;
    /// The labels of the span table.
    QStringList getSpanList() const;
    /// The tick positions of a span in MHz, for a chart around 70 MHz; empty for no such span.
    QVector<double> spanTicks(int span) const;
    /// What a channel's combo box offers; empty for no such channel.
    QStringList cboSpanItems(int channel) const;
    /// Chooses a span as the operator would in the combo box.
    void setSpanComboBox(int channel, int span);
    /// Chooses a span.
    void SetSpan(int channel, int span);
    /// Sets the frequency in the middle of a channel's chart.
    /// \param rf in MHz, above 0; others are ignored.
    /// \param channel 0 to 2; others are ignored.
    void setRf(double rf, int channel);
    /// The frequency in the middle of a channel's chart, in MHz; 0 for no such channel.
    double centre(int channel) const;
    /// Sets the horizontal markers of a channel's chart.
    /// \param channel 0 to 2; others are ignored.
    /// \param levels in dB; an empty list removes them.
    void setHMarkers(int channel, const QList<double>& levels);
    /// Sets the colour of a trace.
    /// \param colour 0 red, 1 green, 2 blue, 3 cyan, 4 magenta, 5 yellow, 6 white, 7 grey.
    /// \param trace that of the channel of this number; -1 for all.
    void setLineColor(int colour, int trace);
    /// The colour of a number as in setLineColor(); invalid for no such number.
    static QColor lineColor(int colour);
    /// Tells the card its own correction, which its levels contain: nothing is added here. No page
    /// has a key for it; it is there for whoever trims a card.
    /// \param channel 0 to 2; others are ignored.
    /// \param trim 0 to 9, in dB; others are ignored.
    void setTrim(int channel, int trim);
    /// The trim in dB, as the card or setTrim() said last; -1 for no such channel.
    int trim(int channel) const;

    /// A channel's chart, to be put into another page; nullptr for no such channel.
    SpectrumChart* chart(int channel) const;
    /// Puts a channel's chart back into this page.
    void returnChartToVbox(int channel);
    /// Sets the name in the title of a channel's chart.
    void SetChartAreaName(int channel, const QString& name);
    /// Shows or hides a channel. A hidden channel is not polled.
    void SetChartAreaVisible(int channel, bool on);
    /// Whether a channel is shown when the page is.
    bool chartAreaVisible(int channel) const;
    /// Gives one channel the whole page, with its keys beside the chart and measurement and
    /// waterfall under it. The others stay polled: their spectra are forwarded, and their averages
    /// and holds go on.
    /// \param channel 0 to 2; one that is hidden or does not exist gives the page back to all that
    /// are shown.
    void setEnlarged(int channel);
    /// The channel that has the whole page; -1 when none has. It no longer has it when it is
    /// hidden.
    int enlarged() const { return m_enlarged; }
    /// Sets the title of the window and the name in the titles of all charts.
    void WindowName(const QString& name);

    /// Whether the card is polled although its page is not on the screen.
    bool getOverRideVisCheck() const { return m_overRideVisCheck; }
    /// Sets whether the card is polled although its page is not on the screen.
    void setOverRideVisCheck(bool on);

    /// Builds the charts; later calls do nothing.
    void initCharts();

public slots:
    /// Takes a reply of the card.
    void CommSpectral_Command(const CmdMsg& message);
    /// Takes the bus's report that a request got no reply; after a spectrum request of this card,
    /// the next spectrum is asked for.
    void ComPortTimeOut(const QString& request, Rs422Bus::Results result);
    /// Takes a queue marker that has passed: from now on spectra of its channel have the new span.
    void queFlag(const QString& flag);
    /// Chooses the span that a channel's combo box shows.
    ///@{
    void cboSpan1_SelectedIndexChanged();
    void cboSpan2_SelectedIndexChanged();
    void cboSpan3_SelectedIndexChanged();
    ///@}
    /// Polls the card if it should be polled and no poll is under way.
    void timerTimeOut();

signals:
    /// Emitted when a card has said its name, or has been taken for a K7150.
    void cardDetected(QString name);
    /// Emitted when the card's version is known.
    /// \param text name and version, "NAME Ver:1.02".
    void cardVersionUpdated(QString text);
    /// Emitted when the main unit or a demodulator has to be told something.
    /// \param message with its frame characters.
    void updateDemodCh(QString message);
    /// Emitted when a spectrum has been shown.
    /// \param points one byte per point, level in dB = byte × 0.5 − 120.
    /// \param channel 0 to 2.
    void specUpdate(QByteArray points, int channel);
    /// Emitted when the span of a channel has become another one.
    void spanChanged(int channel, int span);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void connectCombos();
    void connectSession();
    void chooseFromBox(int channel);
    void pollWhenNeeded();
    void showAreas();

    std::unique_ptr<CardSession> m_session; // also a child, for those who look for its buses
    QList<SpectrumArea*> m_areas;           // one per channel
    int m_enlarged = -1;
    bool m_overRideVisCheck = false;
};

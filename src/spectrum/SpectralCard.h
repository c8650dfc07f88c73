#pragma once

#include "spectrum/CardCommands.h"
#include "spectrum/Rs422Bus.h"
#include "wire/SpanTable.h"

#include <QList>
#include <QTimer>
#include <QWidget>

#include <array>

class QComboBox;
class SpectrumArea;
class SpectrumChart;

// One spectral card and its page: three channels, each with a chart and its span.
//
// A poll out: the timer's turn, UpdateCmds() picks the next shown channel, sendSerialCmd() puts the
// address before the command, the bus carries it. A spectrum in: the bus hands over a CmdMsg,
// CommSpectral_Command() finds its channel, the channel's chart takes the points, specUpdate()
// passes them on. A poll is under way until its reply or for 2,500 ms, and as long as it waits in
// the bus's queue; the timer asks for the next one when none is, 20 times a second at most. It runs
// only while the page is on the screen, or while setOverRideVisCheck() says that a chart of it is
// lent to another page, whether that one is on the screen or not. Beside the timer, the older
// card's lost reply asks for the next spectrum, once, also when the page is hidden by then.
//
// A span out: the card is told by a request with a marker behind it. Until the marker has passed,
// spectra of that channel were measured with the span before, and are dropped; further choices
// wait, and the last one of them is told then: however fast they come, one is queued. A K7150's
// demodulator is told as well, by updateDemodCh(); what has not been told yet is before the first
// poll.
//
// Channels are 0 to 2 and spans are indexes into m_spanTable throughout; others are ignored.
class SpectralCard : public QWidget
{
    Q_OBJECT

public:
    using SPANINFO = SpanInfo;
    static const QVector<SPANINFO> m_spanTable;

    // window: which pair of receivers the card serves, 0 "CH.1/CH.2/CMB.1", others
    // "CH.3/CH.4/CMB.2". portName: the card's port, without a directory.
    SpectralCard(QWidget* parent, int window, const QString& portName);
    ~SpectralCard() override;

    // Whether the card's first port is open.
    bool isOpen() const { return m_buses[0] != nullptr && m_buses[0]->isOpen(); }

    // Sends one request through the first bus. command: is filled up or cut to ten characters.
    // timeout: of the reply in ms; below 1, and without it, the bus's own.
    void sendSerialCmd(const QString& command, int timeout);
    void sendSerialCmd(const QString& command);

    // Asks for the next spectrum: of the next channel whose area is shown; of none, if none is.
    void UpdateCmds();

    // Goes over to a card of the K7150 type on three ports.
    void setK7150(const QString& port1, const QString& port2, const QString& port3);
    bool k7150Type() const { return m_k7150Type; }

    // Asks the card for its version, spans and trims, what of it has not been asked already. A
    // K7150 is asked nothing: its demodulators are told to send spectra, they and it with which
    // span.
    void initSA();

    int getSpan(int channel) const; // -1 for no such channel
    QStringList getSpanList() const;
    QVector<double> spanTicks(int span) const; // in MHz around 70 MHz; empty for no such span
    QStringList cboSpanItems(int channel) const;
    // Chooses a span as the operator would in the combo box.
    void setSpanComboBox(int channel, int span);
    void SetSpan(int channel, int span);
    // rf: the frequency in the middle of the channel's chart, in MHz, above 0.
    void setRf(double rf, int channel);
    double centre(int channel) const; // in MHz; 0 for no such channel
    // levels: of the horizontal markers in dB; an empty list removes them.
    void setHMarkers(int channel, const QList<double>& levels);
    // colour: 0 red, 1 green, 2 blue, 3 cyan, 4 magenta, 5 yellow, 6 white, 7 grey. trace: of the
    // channel of that number; -1 for all.
    void setLineColor(int colour, int trace);
    static QColor lineColor(int colour); // invalid for no such number
    // trim: 0 to 9, in dB. It is the card's own correction: its levels have it in them, nothing is
    // added here. No page has a key for it; it is there for whoever trims a card.
    void setTrim(int channel, int trim);
    int trim(int channel) const; // as the card or setTrim() said last; -1 for no such channel

    // The channel's chart, to be put into another page; nullptr for no such channel.
    SpectrumChart* chart(int channel) const;
    // Puts it back into this page.
    void returnChartToVbox(int channel);
    void SetChartAreaName(int channel, const QString& name);
    void SetChartAreaVisible(int channel, bool on);
    bool chartAreaVisible(int channel) const;
    // The name in the titles of all charts.
    void WindowName(const QString& name);

    // Whether the card is polled although its page is not on the screen.
    bool getOverRideVisCheck() const { return m_overRideVisCheck; }
    void setOverRideVisCheck(bool on);

    // Builds the charts; once.
    void initCharts();

public slots:
    void CommSpectral_Command(const CmdMsg& message);
    void ComPortTimeOut(const QString& request, Rs422Bus::Results result);
    void queFlag(const QString& flag);
    void cboSpan1_SelectedIndexChanged();
    void cboSpan2_SelectedIndexChanged();
    void cboSpan3_SelectedIndexChanged();
    void timerTimeOut();

signals:
    // A card is there; its name.
    void cardDetected(QString name);
    // "NAME Ver:1.02"
    void cardVersionUpdated(QString text);
    // A message for the main unit, with its frame characters.
    void updateDemodCh(QString message);
    // points: one byte a point, level in dB = byte × 0.5 − 120.
    void specUpdate(QByteArray points, int channel);
    void spanChanged(int channel, int span);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    static bool isChannel(int channel) { return channel >= 0 && channel < card::Channels; }
    Rs422Bus* newBus(const QString& portName, int baudRate);
    Rs422Bus* newK7150Bus(const QString& portName);
    void busOpened();
    void connectCombos();
    void ask(const QString& command);
    void tellCard(int channel);
    void tellDemodulator(int channel);
    void tellSpansBeforePoll();
    void skipHidden();
    void countOn();
    int askedChannel() const;
    void takeSpectrum(const CmdMsg& message);
    void takeSpans(const QString& text);
    void takeTrims(const QString& text);
    void showSpan(int channel, int span);
    bool pollUnderWay() const;
    void runTimerWhenNeeded();
    void tell(const QString& body);

    std::array<Rs422Bus*, card::Channels> m_buses{}; // the first one carries all requests
    QList<SpectrumArea*> m_areas;                    // one a channel
    std::array<int, card::Channels> m_spans{};
    std::array<int, card::Channels> m_toldSpans{}; // what the card was told last
    std::array<bool, card::Channels> m_demodulatorTold{};
    std::array<bool, card::Channels> m_cardTold{}; // since the K7150 is there
    std::array<int, card::Channels> m_trims{};
    std::array<bool, card::Channels> m_shown{};
    std::array<bool, card::Channels> m_averageClearPending{}; // the marker has not passed
    QTimer m_timer{this};
    QTimer m_replyDue{this}; // runs while the poll under way may still be answered
    QString m_address;
    QString m_name;
    QString m_askedCommand;
    int m_askedChannel = -1;   // of the poll under way, -1 when none is
    int m_lastChannel = 0;     // whose poll was queued last
    bool m_askedStale = false; // its frequency was changed meanwhile
    quint8 m_channel = 0;      // polling counters
    quint8 m_pass = 0;
    bool m_k7150Type = false;
    bool m_overRideVisCheck = false;
};

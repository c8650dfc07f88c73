#pragma once

#include "spectrum/CardCommands.h"
#include "spectrum/Rs422Bus.h"

#include <QObject>
#include <QTimer>
#include <QVector>

#include <array>

/// The conversation with one spectral card, without a widget: its buses, what it is asked and told,
/// and what of its replies is passed on.
///
/// A poll out: the timer's turn, poll() picks the next shown channel, send() puts the address
/// before the command, the bus carries it. A spectrum in: the bus hands over a CmdMsg, takeReply()
/// finds its channel, spectrumReceived() passes the points on. A poll is under way until its reply
/// or for 2,500 ms, and as long as it waits in the bus's queue; the timer asks for the next one
/// when none is, 20 times a second at most, while setPolling() is on. Beside the timer, a reply
/// that the older card has lost makes takeTimeout() ask for the next spectrum, once, also when
/// polling is off by then.
///
/// A span out: the card is told by a request with a marker behind it. Until the marker has passed,
/// spectra of that channel were measured with the span before, and are dropped. Further choices
/// wait, and the last one of them is told then: however fast they come, one is queued. A K7150's
/// demodulator is told as well, by demodulatorMessage(); what has not been told yet is told before
/// the first poll.
///
/// Channels are 0 to 2 and spans are indexes into spanTable() throughout; others are ignored.
class CardSession : public QObject
{
    Q_OBJECT

public:
    /// Opens the port of an older card and asks it for its name. An absent port is tried again, and
    /// the name asked for when it comes.
    /// \param portName the card's port, without a directory.
    /// \param parent owns the session.
    explicit CardSession(const QString& portName, QObject* parent = nullptr);

    /// Whether \a channel is one of the card's.
    static bool isChannel(int channel) { return channel >= 0 && channel < card::Channels; }

    /// Whether the port that carries all requests is open.
    bool isOpen() const { return m_buses[0]->isOpen(); }

    /// Sends one request.
    /// \param command is filled up or cut to ten characters.
    /// \param timeout for the reply in ms; below 1 the bus's own.
    void send(const QString& command, int timeout = 0);

    /// Asks for the next spectrum: of the next channel that is shown; of none, if none is.
    void poll();
    /// Sets whether the timer polls the card. It runs while the port is open and any channel is
    /// shown.
    void setPolling(bool on);

    /// Goes over to a card of the K7150 type on three ports. A second call replaces the first port
    /// only.
    void setK7150(const QString& port1, const QString& port2, const QString& port3);
    /// Whether the card is of the K7150 type.
    bool isK7150() const { return m_k7150; }

    /// Asks the card for its version, spans and trims, what of it has not been asked already. A
    /// K7150 is asked nothing: its demodulators are told to send spectra, they and it with which
    /// span.
    void setUpCard();
    /// Tells the demodulators of a K7150 their spans again: a main unit that was restarted has
    /// forgotten them. Does nothing with an older card, whose demodulators are told none.
    void tellDemodulatorsAgain();

    /// The span of a channel; -1 for no such channel.
    int span(int channel) const;
    /// Chooses a span and tells it to the card.
    void setSpan(int channel, int span);
    /// The trim of a channel in dB, as the card or setTrim() said last; -1 for no such channel.
    int trim(int channel) const;
    /// Tells the card its correction.
    /// \param channel 0 to 2; others are ignored.
    /// \param trim 0 to 9, in dB; others are ignored.
    void setTrim(int channel, int trim);

    /// Whether a channel is polled.
    bool isShown(int channel) const;
    /// Sets whether a channel is polled.
    void setShown(int channel, bool on);
    /// The frequency of a channel was changed: a spectrum of it that is being measured now is still
    /// of the frequency before, and will be dropped.
    void dropSpectrumUnderWay(int channel);

public slots:
    /// Takes a reply of the port that carries the requests.
    void takeReply(const CmdMsg& message);
    /// Takes the bus's report that a request got no reply: after a spectrum request of this card,
    /// the next spectrum is asked for.
    void takeTimeout(const QString& request, Rs422Bus::Results result);
    /// Takes a queue marker that has passed: from now on spectra of its channel have the new span.
    void takeMarker(const QString& flag);
    /// Polls the card if it should be polled and no poll is under way.
    void pollIfDue();

signals:
    /// Emitted when a card has said its name, or has been taken for a K7150.
    void detected(QString name);
    /// Emitted when the card's version is known.
    /// \param text name and version, "NAME Ver:1.02".
    void versionKnown(QString text);
    /// Emitted when the main unit or a demodulator has to be told something.
    /// \param message with its frame characters.
    void demodulatorMessage(QString message);
    /// Emitted when a spectrum has come that was measured as its channel is set now.
    /// \param points one byte per point, level in dB = byte × 0.5 − 120.
    /// \param channel 0 to 2.
    void spectrumReceived(QByteArray points, int channel);
    /// Emitted when the span of a channel has become another one.
    void spanChanged(int channel, int span);
    /// Emitted when a span was chosen or read from the card, also when it is the same as before.
    void spanConfirmed(int channel, int span);
    /// Emitted when the card has been told a span: an average over spectra before that means
    /// nothing.
    void averageOutdated(int channel);

private:
    struct Channel
    {
        int span = 0;
        int toldSpan = 0;             // what the card was told last
        int trim = 0;                 // dB
        bool shown = true;            // polled
        bool spanPending = false;     // the marker behind the last told span has not passed
        bool demodulatorTold = false; // its span, since the K7150 is there
        bool cardTold = false;        // its span, since the K7150's port is open
    };

    Channel& at(int channel) { return m_channels.at(static_cast<size_t>(channel)); }
    const Channel& at(int channel) const { return m_channels.at(static_cast<size_t>(channel)); }
    Rs422Bus* newBus(const QString& portName, int baudRate);
    Rs422Bus* newK7150Bus(const QString& portName);
    void setUpTimers();
    void updatePollTimer();
    void connectFirstBus();
    void forgetWhatWasTold();
    void ask(const QString& command);
    void tell(const QString& body);
    void tellCard(int channel);
    void tellDemodulator(int channel);
    void tellSpansBeforePoll();
    void skipHidden();
    void countOn();
    bool pollUnderWay() const;
    int requestedChannel() const;
    void takeSideReply(const CmdMsg& message);
    void handle(const CmdMsg& message, bool endsPoll);
    void takeSpectrum(const CmdMsg& message, bool endsPoll);
    int takeK7150Channel(QByteArray& points, bool asked);
    void takeSpans(const QString& text);
    void takeTrims(const QString& text);
    void takeVersion(const QString& version);
    void changeSpan(int channel, int span);

    std::array<Rs422Bus*, card::Channels> m_buses{}; // the first one carries all requests
    std::array<Channel, card::Channels> m_channels{};
    QTimer m_pollTimer{this};
    QTimer m_replyDue{this}; // runs while the poll under way may still be answered
    QString m_address;
    QString m_name;
    QString m_polledCommand;
    int m_polledChannel = -1;   // of the poll under way, -1 when none is
    int m_lastChannel = 0;      // whose poll was queued last
    bool m_polledStale = false; // the frequency of the poll under way was changed meanwhile
    int m_nextChannel = 0;      // polling counters
    int m_pass = 0;
    bool m_polling = false;
    bool m_pollTimerWanted = false;
    bool m_k7150 = false;
    bool m_warnedOfNoChannel = false; // a K7150 does not name the channels of its spectra
};

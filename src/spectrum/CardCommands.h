#pragma once

#include <QString>
#include <QVector>

/// The words that the panel and a spectral card say to each other, and what the panel tells the
/// main unit and its demodulators about the card. Channels are 0 to 2.
namespace card {

/// The number of channels of a card.
constexpr int Channels = 3;

/// The speed of the older card's port, in bits per second.
constexpr int BaudRate = 921600;

/// The address of the one card on its bus, the prefix of every request: "0190".
QString address();

/// The request as the bus carries it: the address, then the command filled up with "0" to ten
/// characters, or cut to ten.
/// \param address four characters.
/// \param command the word and its arguments.
QString request(const QString& address, const QString& command);

/// "RNME": asks for the card's name.
QString readName();
/// "RVER": asks for the card's version.
QString readVersion();
/// "RNFT": asks for the span index of each channel. The reply has one digit per channel.
QString readSpans();
/// "RTRM": asks for the trim of each channel. The reply has one digit per channel, in dB.
QString readTrims();
/// The word of a request for a spectrum and of its reply: "RFFT".
QString spectrumWord();
/// "RFFT%1%2": asks for the spectrum of a channel.
/// \param channel 0 to 2.
/// \param pass 0 to 2, counts the rounds over the channels.
QString readSpectrum(int channel, int pass);
/// \param request with its address.
/// \return whether it asks for a spectrum, of whatever channel.
bool isSpectrumRequest(const QString& request);
/// \param request with its address.
/// \return the channel whose spectrum it asks for; -1 when it asks for something else.
int spectrumChannel(const QString& request);
/// "CNFT%1%2": sets the span of a channel.
/// \param channel 0 to 2.
/// \param span an index into the span table.
QString setSpan(int channel, int span);
/// "CTRM%1%2": sets the trim of a channel.
/// \param channel 0 to 2.
/// \param trim 0 to 9, in dB.
QString setTrim(int channel, int trim);

/// "ClrAvg%1": the queue marker behind which the spectra of a channel have the new span.
QString clearAverage(int channel);
/// \return the channel of a clear-average marker; -1 for another marker, and for one that names
/// no channel.
int clearAverageChannel(const QString& marker);

/// Reads the data of a reply to readSpans() or readTrims().
/// \return one number per channel; empty when the data do not begin with three digits.
QVector<int> digits(const QString& data);

/// "D%1:NFFT:%2": tells a demodulator its span, without frame characters.
/// \param demodulator 1 to 3.
/// \param fftParam of the span table.
QString demodulatorSpan(int demodulator, const QString& fftParam);
/// "D%1:SPEN:1": tells a demodulator to send spectra, without frame characters.
/// \param demodulator 1 to 3.
QString demodulatorSpectrumOn(int demodulator);

/// Tells the main unit, which does not see the card's bus, that the card is there.
QString listEntry();
/// Tells the main unit the card's version.
QString versionEntry(const QString& version);

/// How a card is shown: "NAME Ver:1.02".
QString nameAndVersion(const QString& name, const QString& version);
/// How a K7150 is shown, which cannot be asked for its version: "SDU Ver:1.23".
QString k7150Version();
/// The name of a K7150, which cannot be asked for it: "K7150_Spectrum".
QString k7150Name();

} // namespace card

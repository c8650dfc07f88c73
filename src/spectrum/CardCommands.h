#pragma once

#include <QString>
#include <QVector>

// The words that the panel and a spectral card (or, about a card, the main unit) say to each other.
namespace card {

constexpr int Channels = 3;

// The address of the one card on its bus, the prefix of every request.
QString address(); // "0190"

// In: the four characters of the address, a command. Out: the request as the bus carries it: the
// command is filled up with "0" to ten characters, or cut to ten.
QString request(const QString& address, const QString& command);

QString readName();    // "RNME"
QString readVersion(); // "RVER"
QString readSpans();   // "RNFT": answered by one digit a channel, its span index
QString readTrims();   // "RTRM": answered by one digit a channel, its trim in dB
// channel: 0 to 2. pass: 0 to 2, counts the rounds over the channels.
QString readSpectrum(int channel, int pass); // "RFFT%1%2"
// In: a request with its address. Out: the channel whose spectrum it asks for, 0 to 2, or -1 when
// it asks for something else.
int spectrumChannel(const QString& request);
// channel: 0 to 2. span: an index into the span table.
QString setSpan(int channel, int span); // "CNFT%1%2"
// channel: 0 to 2. trim: 0 to 9, in dB.
QString setTrim(int channel, int trim); // "CTRM%1%2"

// The queue marker behind which spectra have the new span. channel: 0 to 2.
QString clearAverage(int channel); // "ClrAvg%1"
// In: a queue marker. Out: its channel, 0 to 2, or -1 when it is no clear-average marker or names
// no such channel.
int clearAverageChannel(const QString& marker);

// In: the data of a reply to readSpans() or readTrims(). Out: one number a channel, or an empty
// list when it is not at least three digits.
QVector<int> digits(const QString& data);

// To a demodulator (1 to 3), without frame characters. fftParam: of the span table.
QString demodulatorSpan(int demodulator, const QString& fftParam); // "D%1:NFFT:%2"
QString demodulatorSpectrumOn(int demodulator);                    // "D%1:SPEN:1"

// To the main unit, which does not see the card's bus: that the card is there, and its version.
QString listEntry();
QString versionEntry(const QString& version);

// How a card is shown: "NAME Ver:1.02". A K7150 has no name and version of its own.
QString nameAndVersion(const QString& name, const QString& version);
QString k7150Version();
QString k7150Name(); // "K7150_Spectrum"

} // namespace card

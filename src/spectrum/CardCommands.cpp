#include "spectrum/CardCommands.h"

namespace card {

namespace {
constexpr int CommandSize = 10;
constexpr int AddressSize = 4;
constexpr int WordSize = 4;
constexpr int MarkerSize = 6; // "ClrAvg"

QString withDigits(const QString& pattern, int first, int second)
{
    return pattern.arg(first).arg(second);
}
} // namespace

QString address()
{
    return QStringLiteral("0190");
}

QString request(const QString& address, const QString& command)
{
    return address + command.leftJustified(CommandSize, QLatin1Char('0'), true);
}

QString readName()
{
    return QStringLiteral("RNME");
}

QString readVersion()
{
    return QStringLiteral("RVER");
}

QString readSpans()
{
    return QStringLiteral("RNFT");
}

QString readTrims()
{
    return QStringLiteral("RTRM");
}

QString spectrumWord()
{
    return QStringLiteral("RFFT");
}

QString readSpectrum(int channel, int pass)
{
    return withDigits(QStringLiteral("RFFT%1%2"), channel, pass);
}

bool isSpectrumRequest(const QString& request)
{
    return request.mid(AddressSize, WordSize) == spectrumWord();
}

int spectrumChannel(const QString& request)
{
    constexpr int ChannelAt = AddressSize + WordSize;
    if (!isSpectrumRequest(request) || request.size() <= ChannelAt) {
        return -1;
    }
    const int channel = request.at(ChannelAt).unicode() - u'0';
    return channel >= 0 && channel < Channels ? channel : -1;
}

QString setSpan(int channel, int span)
{
    return withDigits(QStringLiteral("CNFT%1%2"), channel, span);
}

QString setTrim(int channel, int trim)
{
    return withDigits(QStringLiteral("CTRM%1%2"), channel, trim);
}

QString clearAverage(int channel)
{
    return QStringLiteral("ClrAvg%1").arg(channel);
}

int clearAverageChannel(const QString& marker)
{
    if (!marker.startsWith(QLatin1String("ClrAvg")) || marker.size() <= MarkerSize) {
        return -1;
    }
    const int channel = marker.at(MarkerSize).unicode() - u'0';
    return channel >= 0 && channel < Channels ? channel : -1;
}

QVector<int> digits(const QString& data)
{
    QVector<int> numbers;
    for (int channel = 0; channel < Channels && channel < data.size(); ++channel) {
        const int digit = data.at(channel).unicode() - u'0';
        if (digit < 0 || digit > 9) {
            return {};
        }
        numbers += digit;
    }
    return numbers.size() == Channels ? numbers : QVector<int>();
}

QString demodulatorSpan(int demodulator, const QString& fftParam)
{
    return QStringLiteral("D%1:NFFT:%2").arg(demodulator).arg(fftParam);
}

QString demodulatorSpectrumOn(int demodulator)
{
    return QStringLiteral("D%1:SPEN:1").arg(demodulator);
}

QString listEntry()
{
    return QStringLiteral("U0:CLST:0170 SpectralSWeep 0\r");
}

QString versionEntry(const QString& version)
{
    return QStringLiteral("U0:VER:0%1\r").arg(version);
}

QString nameAndVersion(const QString& name, const QString& version)
{
    return QStringLiteral("%1 Ver:%2").arg(name, version);
}

QString k7150Version()
{
    return QStringLiteral("SDU Ver:1.23");
}

QString k7150Name()
{
    return QStringLiteral("K7150_Spectrum");
}

} // namespace card

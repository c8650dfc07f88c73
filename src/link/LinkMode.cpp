#include "link/LinkMode.h"

#include <array>

namespace {

// Commands of one demodulator's own display and set-up.
constexpr std::array<QLatin1String, 18> LocalCommands{QLatin1String(":DSDM"),
    QLatin1String(":NFFT"), QLatin1String(":SCBE"), QLatin1String(":SRT0"), QLatin1String(":B0LB"),
    QLatin1String(":FCS0"), QLatin1String(":MFS0"), QLatin1String(":DC0E"), QLatin1String(":AG0E"),
    QLatin1String(":CF0E"), QLatin1String(":MF0E"), QLatin1String(":SEI0"), QLatin1String(":HI0Z"),
    QLatin1String(":BTEN"), QLatin1String(":BTMO"), QLatin1String(":BTTL"), QLatin1String(":REST"),
    QLatin1String(":BMUX")};

constexpr std::array<QLatin1String, 3> Demodulators{
    QLatin1String("D1:"), QLatin1String("D2:"), QLatin1String("D3:")};
constexpr QLatin1String AllDemodulators("D1 D2 D3:");

constexpr std::array<QLatin1String, 2> Receivers{QLatin1String("R1:"), QLatin1String("R2:")};
constexpr QLatin1String AllReceivers("R1 R2:");

bool isLocal(const QString& message)
{
    for (const QLatin1String command : LocalCommands) {
        if (message.contains(command)) {
            return true;
        }
    }
    return false;
}

// Quirk: only the first prefix that occurs is widened, but all its occurrences. See "Quirks" in
// docs/architecture.md.
template <std::size_t N>
void widenFirst(QString& message, const std::array<QLatin1String, N>& prefixes, QLatin1String all)
{
    for (const QLatin1String prefix : prefixes) {
        if (message.contains(prefix)) {
            message.replace(prefix, all);
            return;
        }
    }
}

} // namespace

namespace linkMode {

bool isKnown(int mode)
{
    return mode == None || mode == Diversity || mode == FrequencyDiversity;
}

QString label(int mode)
{
    switch (mode) {
    case Diversity:
        return QStringLiteral("Diversity Mode");
    case FrequencyDiversity:
        return QStringLiteral("Frequency Diversity Mode");
    default:
        return {};
    }
}

QString widened(const QString& message, int mode)
{
    QString text = message;
    if ((mode == Diversity || mode == FrequencyDiversity) && !isLocal(text)) {
        widenFirst(text, Demodulators, AllDemodulators);
    }
    if (mode == Diversity) {
        widenFirst(text, Receivers, AllReceivers);
    }
    return text;
}

} // namespace linkMode

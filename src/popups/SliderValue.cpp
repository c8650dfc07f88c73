#include "popups/SliderValue.h"

#include "wire/Log.h"
#include "wire/Message.h"

#include <QtNumeric>

#include <algorithm>

namespace {

constexpr float FullPercent = 100.0F;
constexpr int Decimals = 2;
constexpr int HexadecimalBase = 16;

int bound(const QString& text)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (!ok || qIsNaN(number)) {
        return 0;
    }
    return static_cast<int>(
        std::clamp<double>(number, SliderValue::LowestBound, SliderValue::HighestBound));
}

} // namespace

SliderValue::SliderValue(QString name, QString command, const QString& range, int type)
    : m_name(std::move(name))
    , m_command(std::move(command))
    , m_type(type)
{
    const QStringList bounds = range.split(QLatin1Char(' '));
    const int first = bound(bounds.value(0));
    const int second = bound(bounds.value(1));
    m_maximum = std::max(first, second);
    m_minimum = std::min(first, second);
    m_scale = m_maximum == 0 ? 0.0F : FullPercent / static_cast<float>(m_maximum);
}

double SliderValue::bounded(double value) const
{
    if (qIsNaN(value)) {
        return m_minimum;
    }
    return std::clamp<double>(value, m_minimum, m_maximum);
}

int SliderValue::position(double value) const
{
    return static_cast<int>(bounded(value));
}

QString SliderValue::readout(double value) const
{
    if (m_type == Hexadecimal) {
        const auto bits = static_cast<quint32>(position(value));
        return QStringLiteral("0x%1").arg(QString::number(bits, HexadecimalBase).toUpper());
    }
    if (m_type == Plain) {
        return QString::number(position(value));
    }
    if (m_name.contains(QStringLiteral("dB"))) {
        return QString::number(bounded(value), 'f', Decimals) + QStringLiteral("dB");
    }
    return QString::number(bounded(value) * static_cast<double>(m_scale), 'f', Decimals) +
        QStringLiteral("%");
}

QString SliderValue::message(int position) const
{
    return wire::frame(m_command + QString::number(position));
}

std::optional<int> SliderValue::stepped(int position, int step) const
{
    const qint64 next = qint64{position} + step;
    if (next < m_minimum || next > m_maximum) {
        return std::nullopt;
    }
    return static_cast<int>(next);
}

QList<int> SliderValue::steps(const QString& text)
{
    QList<int> steps;
    for (const QString& item : text.split(QLatin1Char(':'))) {
        // the lowest bound has no magnitude that is an int
        const int step = std::abs(std::max(bound(item.trimmed()), -HighestBound));
        if (step == 0) {
            continue;
        }
        if (steps.size() == MaxSteps) {
            qCDebug(logPopups) << "slider: the steps after" << MaxSteps << "are left out";
            break;
        }
        steps += step;
    }
    return steps;
}

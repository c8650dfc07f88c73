#include "app/ScreenSettings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtMath>

#include <algorithm>
#include <vector>

namespace {

constexpr auto ScaleName = "QN740_SCALE";
constexpr auto RotationName = "QN740_ROTATION";
constexpr auto QtScaleName = "QT_SCALE_FACTOR";
constexpr int StepsOfFit = 20; // for each whole factor
constexpr double Rounding = 1e-6;

QString printable(const QByteArray& text)
{
    constexpr int MaxChars = 40;
    QString shown = QString::fromLatin1(text.left(MaxChars));
    std::replace_if(
        shown.begin(), shown.end(), [](QChar c) { return !c.isPrint(); }, QLatin1Char('?'));
    return shown;
}

// Opens the platform and closes it again. The application that is made later gets all arguments.
QSize screenSize(int argc, char** argv)
{
    std::vector<char*> arguments(argv, argv + argc);
    arguments.push_back(nullptr);
    const QGuiApplication probe(argc, arguments.data());
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->size() : QSize();
}

} // namespace

ScreenSettings ScreenSettings::fromEnvironment()
{
    return {qgetenv(ScaleName), qgetenv(RotationName)};
}

ScreenSettings::ScreenSettings(const QByteArray& scale, const QByteArray& rotation)
{
    readScale(scale);
    readRotation(rotation);
}

void ScreenSettings::readScale(const QByteArray& text)
{
    if (text.isEmpty()) {
        return;
    }
    if (text == "fit") {
        m_fit = true;
        return;
    }
    bool ok = false;
    const double scale = text.toDouble(&ok);
    if (ok && scale >= MinScale && scale <= MaxScale) { // not for NaN
        m_scale = scale;
        return;
    }
    m_warnings +=
        QStringLiteral("%1 is ignored: \"%2\" is neither \"fit\" nor a number from %3 to %4")
            .arg(QLatin1String(ScaleName), printable(text))
            .arg(MinScale)
            .arg(MaxScale);
}

void ScreenSettings::readRotation(const QByteArray& text)
{
    if (text.isEmpty() || text == "0") {
        return;
    }
    if (text == "90" || text == "180" || text == "270") {
        m_rotation = text.toInt();
        return;
    }
    m_warnings += QStringLiteral("%1 is ignored: \"%2\" is not 0, 90, 180 or 270")
                      .arg(QLatin1String(RotationName), printable(text));
}

double ScreenSettings::scaleOn(const QSize& screen) const
{
    if (!m_fit) {
        return m_scale > 0 ? m_scale : 1.0;
    }
    if (screen.isEmpty()) {
        return 1.0;
    }
    const QSize turned = m_rotation % 180 == 0 ? screen : screen.transposed();
    const double largest = qMin(
        double(turned.width()) / PanelSize.width(), double(turned.height()) / PanelSize.height());
    return qBound(MinScale, qFloor(largest * StepsOfFit + Rounding) / double(StepsOfFit), MaxScale);
}

void ScreenSettings::apply(int argc, char** argv) const
{
    if (!hasScale()) {
        return;
    }
    // Otherwise Qt would multiply the scale with its own, from the screen's size in millimetres.
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    qunsetenv(QtScaleName);
    const double scale = scaleOn(m_fit ? screenSize(argc, argv) : QSize());
    qputenv(QtScaleName, QByteArray::number(scale));
}

#pragma once

#include <QByteArray>
#include <QString>

class MainUnit;
class UnitDevices;

/// What the user of the simulator types: a line of a menu file, or one of
///
///     raw \x02SK,Menu\x04     these bytes, as they are
///     refuse PATTERN          steer the confirmations from now on, as --refuse, --silent and
///     silent PATTERN          --delay do
///     delay MS[:PATTERN]
///     confirm                 confirm everything again, at once
///     unplug NAME             the device NAME hangs up and is gone
///     plug NAME               it comes back, as another device of that name
namespace typedLine {

/// Carries a line out. \param text without its line break, any bytes
/// \return why it is refused; empty when it is not
QString carryOut(MainUnit& unit, UnitDevices& devices, const QByteArray& text);

} // namespace typedLine

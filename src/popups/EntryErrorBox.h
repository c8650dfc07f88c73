#pragma once

class QString;
class QWidget;

/// The boxes in which a pad says what is wrong with an entry.
///
/// Each runs modally and returns when the operator has closed it; its parent, and the box with it,
/// may be deleted meanwhile.
namespace entryErrorBox {

/// Shows that an entry lies outside the valid ranges.
/// \param parent      the pad's window
/// \param invalidText what was entered, as rich text
/// \param ranges      the valid ranges, one on each line, separated by "\r\n"
void showOutOfRange(QWidget* parent, const QString& invalidText, const QString& ranges);

/// Shows that an entry is not an IPv4 address.
/// \param parent the pad's window
void showAddressFormat(QWidget* parent);

} // namespace entryErrorBox

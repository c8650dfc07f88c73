#pragma once

#include "sim/lint/Findings.h"

#include <QString>
#include <QStringList>

namespace lint {

/// Checks the numbers of the messages that are not about menus: "SM", "SP", "Slave", "LC", "HM",
/// "SH", "SQ", "SF", "PAX", "ST" and "PM". The panel ignores what is out of range.
/// \param word the command word \param fields what follows it
void checkNumbers(
    const QString& word, const QStringList& fields, const MenuPlace& place, Findings& findings);

/// Checks for fields behind those that the panel reads, and for a comma that cuts a text in two.
void checkSurplus(
    const QString& word, const QStringList& fields, const MenuPlace& place, Findings& findings);

/// Finds the comma that makes a message a faulty one.
/// \param body of a message that is not valid
/// \return the text that was meant, "RF, Frequency", when the message is valid without a comma in
/// it; empty otherwise
QString textWithComma(const QString& body);

} // namespace lint

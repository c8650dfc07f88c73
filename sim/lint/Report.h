#pragma once

#include "sim/lint/Findings.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace lint {

/// What the check has found in one file.
struct FileReport
{
    QString file;            ///< as it was named
    qsizetype messages = 0;  ///< how many messages it has
    QList<Finding> findings; ///< sorted by line

    /// \return how many findings there are of a severity.
    qsizetype count(Severity severity) const;
};

/// \return one line for each finding, as compilers write them, with its hint on the next one:
/// "my.menu:3: error: there is no menu "Tuner" [QN201]". After a hundred findings of a file it only
/// counts the rest.
QString findingsText(const FileReport& report);

/// \return how the file did, in one line: "my.menu: 12 messages, no fault", or with the numbers of
/// errors, warnings and notes.
QString summaryText(const FileReport& report);

/// \return the reports as JSON, every finding on a line of its own. docs/lint.md describes the
/// form.
QByteArray toJson(const QList<FileReport>& reports);

} // namespace lint

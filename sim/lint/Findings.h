#pragma once

#include "sim/menus/MenuStep.h"

#include <QList>
#include <QString>

/// The check of menu files: what it can find, and what it has found. docs/lint.md describes every
/// code.
namespace lint {

/// How bad a finding is.
enum class Severity {
    Error,   ///< the panel ignores it, or the key cannot do its work
    Warning, ///< the panel shows or does something else than what stands there
    Note     ///< works, and may be meant otherwise
};

/// A kind of finding.
struct Code
{
    const char* name;  ///< "QN201"; never used again for anything else
    Severity severity; ///< of all findings of this kind
    const char* title; ///< what is wrong, in a few words: the heading in docs/lint.md
};

/// \return all kinds of findings, in the order of their names.
const QList<Code>& codes();

/// \return the kind with this name; nullptr when there is none.
const Code* findCode(const QString& name);

/// \return "error", "warning" or "note".
QString severityName(Severity severity);

/// One thing that the check has found.
struct Finding
{
    MenuPlace place;   ///< where it stands
    Severity severity; ///< how bad it is
    QString code;      ///< of which kind it is
    QString text;      ///< what is wrong
    QString hint;      ///< how to mend it; empty when the text says it
};

/// Findings, as they are made.
class Findings
{
public:
    /// Adds one. \param code the name of one of codes()
    void add(
        const char* code, const MenuPlace& place, const QString& text, const QString& hint = {});

    /// \return what was found, sorted by line and, within a line, by code.
    /// \param silences those that they hit are left out
    QList<Finding> sorted(const QList<MenuSilence>& silences) const;

private:
    QList<Finding> m_all;
};

} // namespace lint

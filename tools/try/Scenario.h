#pragma once

#include "tools/try/Step.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// A scenario: what the main unit sends, what the operator does and what has to come of it, one
/// step per line. docs/try.md describes the steps.
///
/// Reading goes on after a line that is refused, so that all faults are reported at once.
class Scenario
{
public:
    /// Reads a file.
    static Scenario load(const QString& path);
    /// Parses the text of a file. \param path of the file, for errors() and for files beside it
    static Scenario parse(const QByteArray& text, const QString& path);

    /// \return the path that it was read from
    const QString& path() const { return m_path; }
    /// \return the file's name without folder and ending
    QString name() const;
    /// \return the path of a file that the scenario names; a relative one is beside the scenario
    QString beside(const QString& file) const;

    /// \return the steps in the order of the file
    const QList<Step>& steps() const { return m_steps; }
    /// \return "FILE:LINE: reason" in the order of the lines; empty when the file is good
    const QStringList& errors() const { return m_errors; }

private:
    void addLine(const QString& line, int number);
    void checkMenus(const Step& step);
    void addError(int line, const QString& reason);

    QString m_path;
    QList<Step> m_steps;
    QStringList m_errors;
};

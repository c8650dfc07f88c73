#pragma once

#include "tools/measure/MeasurementRow.h"

#include <QStringList>

/// The tables of docs/measurements.md: computed, and put into the document.
///
/// The document is written by hand, apart from the tables. A table stands between the lines
/// "<!-- table: NAME -->" and "<!-- end -->", which stay.
namespace tables {

/// \return the rows of all tables: to add some, add them here.
MeasurementRows allRows();

/// \return the names of the tables in \a rows, each once, in their order.
QStringList names(const MeasurementRows& rows);

/// \return the rows of the table \a name in Markdown; every line ends with a line feed.
QString markdown(const MeasurementRows& rows, const QString& name);

/// Puts the tables into a document in place of those that it holds.
/// \param[out] fault why the document is refused: it has no place for a table, or a place for one
/// that does not exist; empty when it is accepted.
/// \return the document with its tables; the document as it is when it is refused.
QString filledIn(const QString& document, const MeasurementRows& rows, QString& fault);

} // namespace tables

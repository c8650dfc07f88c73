#pragma once

#include "tools/try/Step.h"

/// Reading one step from the text of its line.
namespace stepParser {

/// What a line says.
struct Result
{
    Step step;     ///< the step, without its line number; only without a fault
    QString fault; ///< why the line is refused; empty when it is accepted
};

/// \param line neither blank nor a comment, without blanks around it
Result parse(const QString& line);

} // namespace stepParser

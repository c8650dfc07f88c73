#include "link/BoxMessages.h"

void BoxMessages::take(const QStringList& fields)
{
    if (fields.isEmpty()) {
        return;
    }
    if (fields.value(0) == QLatin1String("KILLBOX")) {
        emit closeWanted();
    } else {
        emit boxWanted(fields.value(0), fields.value(1) == QLatin1String("1"));
    }
}

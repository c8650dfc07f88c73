#include "LivePanel.h"
#include "Target.h"

void fuzz::takeLink(const QByteArray& input)
{
    // Not deleted: nothing of it may go after the application.
    static auto* const panel = new LivePanel;
    panel->take(input);
}

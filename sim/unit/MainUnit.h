#pragma once

#include "sim/line/PanelLink.h"
#include "sim/unit/MenuFile.h"
#include "sim/unit/UnitKeys.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTimer>

// Plays the main unit on the panel's line.
//
// When the panel opens the line it is asked for its version; at the answer, or a second later
// without one, the menus go out in their order, then what was typed meanwhile. What the panel sends
// is cut into messages and told by received(); a message of a key is answered as UnitKeys has it,
// ahead of menus that are still under way. Everything sent is told by sent(). A panel that goes and
// comes back gets all of it again.
class MainUnit final : public PanelLink
{
    Q_OBJECT

public:
    static constexpr qsizetype MaxTyped = 10000;

    // line: the unit's end of the line, which must live longer than this. menus: sent once each
    // time that the panel comes.
    MainUnit(PseudoTerminal& line, const QList<MenuStep>& menus, const LineFaults& faults = {},
        QObject* parent = nullptr);

    // Sends (or waits) after everything that is under way; before the panel is there: after the
    // menus. Out: false when MaxTyped steps wait already and this one was not taken.
    bool type(const MenuStep& step);

    // Sends a message of the unit's own, ahead of menus and typed ones; before the menus are out it
    // is dropped, for then they tell the same.
    void tell(const QString& body);

    // The mode that the panel last told by "Slave,n": 0 to 2, 0 before it told any.
    int linkMode() const { return m_linkMode; }
    // The version that the panel answered, empty before.
    QString panelVersion() const { return m_panelVersion; }
    const UnitKeys& keys() const { return m_keys; }

signals:
    // The last of the menus went out.
    void menusSent();

private:
    void panelCame() override;
    void panelWent() override;
    void handle(const QString& text, bool framed) override;
    void lineFree() override;
    void take(const QString& body);
    void begin();
    void pump();
    bool step();
    void send(const QString& body);

    const QList<MenuStep> m_menus;
    qsizetype m_nextMenu = 0;
    QList<MenuStep> m_typed;
    QStringList m_answers;
    UnitKeys m_keys;
    QTimer m_versionWait;
    QTimer m_pause;
    QString m_panelVersion;
    int m_linkMode = 0;
    bool m_begun = false;
    bool m_pumping = false;
};

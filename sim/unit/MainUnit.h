#pragma once

#include "sim/line/PanelLink.h"
#include "sim/unit/Confirmations.h"
#include "sim/unit/MenuFile.h"
#include "sim/unit/UnitKeys.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

/// Plays the main unit on the panel's line.
///
/// When the panel opens the line it is asked for its version. At the answer, or a second later
/// without one, the menus go out in their order, then what was typed meanwhile. A message of a key
/// is answered as UnitKeys and confirmations() say, ahead of menus that are still waiting. A panel
/// that closes the line and opens it again gets everything again. The menus can be replaced while
/// the panel shows them.
class MainUnit final : public PanelLink
{
    Q_OBJECT

public:
    static constexpr qsizetype MaxTyped = 10000; ///< typed steps that can wait

    /// \param line the unit's end of the line; must live longer than this
    /// \param menus sent once each time that the panel opens the line
    MainUnit(PseudoTerminal& line, const QList<MenuStep>& menus, const LineFaults& faults = {},
        QObject* parent = nullptr);

    /// Sends a message, or waits, after everything that is already waiting; when the panel is not
    /// there yet, after the menus.
    /// \return false when MaxTyped steps are already waiting and this one was not taken
    bool type(const MenuStep& step);

    /// Replaces the menus. A panel that is there gets "CLEAR", the new menus, and is led back to
    /// what it showed: the menu, if the new ones still have it, and the PAX main menu.
    void replaceMenus(const QList<MenuStep>& menus);

    /// Sends a message of the unit's own, ahead of menus and typed messages. Before the menus are
    /// sent it is dropped, because they then carry the same values.
    void tell(const QString& body);

    /// \return which messages of the panel are answered in another way than they should be
    Confirmations& confirmations() { return m_confirmations; }

    /// \return the mode of the panel's last "Slave,n", 0 to 2; 0 before the first one
    int linkMode() const { return m_linkMode; }
    /// \return the version that the panel answered; empty before that
    QString panelVersion() const { return m_panelVersion; }
    /// \return the keys of the menus that were sent
    const UnitKeys& keys() const { return m_keys; }

signals:
    /// Emitted when the last of the menus was sent.
    void menusSent();

private:
    void panelCame() override;
    void panelWent() override;
    void handle(const QString& text, bool framed) override;
    void lineFree() override;
    void take(const QString& body);
    void answer(const QString& body, Confirmations::Answer how);
    void takeLinkMode(const QStringList& message);
    void begin();
    void pump();
    bool step();
    void send(const QString& body);
    void noteShown(const QStringList& message);
    QList<MenuStep> wayBack() const;

    QList<MenuStep> m_menus;
    QList<MenuStep> m_sending; // the menus, or what replaces menus that the panel has
    qsizetype m_nextMenu = 0;
    QString m_shownMenu; // empty when it is not known
    bool m_paxShown = false;
    QList<MenuStep> m_typed;
    QStringList m_answers;
    UnitKeys m_keys;
    Confirmations m_confirmations;
    std::unique_ptr<QObject> m_visit; // of the panel; answers that are delayed end with it
    QTimer m_versionWait;
    QTimer m_pause;
    QString m_panelVersion;
    int m_linkMode = 0;
    bool m_begun = false;
    bool m_pumping = false;
};

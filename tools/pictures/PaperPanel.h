#pragma once

#include "sim/unit/MenuFile.h"
#include "tools/pictures/Paper.h"

#include <QSet>

#include <functional>
#include <memory>

class Key;
class KeyBoard;
class MainWindow;
class UnitSide;

/// Draws everything that a menu file makes visible.
///
/// The panel's window is real and in this process. It gets the messages of the file that make menus
/// and keys; those that would change what is on the screen meanwhile are left out or, message boxes
/// and editors of the unit, drawn at the end, one by one. An editor is opened by its key, also when
/// the key is disabled or hidden, and closed without an entry.
class PaperPanel
{
public:
    PaperPanel();
    ~PaperPanel();
    PaperPanel(const PaperPanel&) = delete;
    PaperPanel& operator=(const PaperPanel&) = delete;

    /// Draws a menu file. \param menus without errors \param path of the file
    Paper draw(const MenuFile& menus, const QString& path);

private:
    void send(const QString& body);
    void settle();
    PaperMenu drawMenu(const KeyBoard& menu);
    PaperKey drawKey(const KeyBoard& menu, Key& key);
    PaperKey drawImmediate(const QString& body);
    PaperPicture drawBox(const QString& body);
    QList<PaperPicture> editor(const QString& title, const std::function<void()>& open);
    QString sourceOf(const Key& key) const;
    PaperPicture picture(const QString& title);

    std::unique_ptr<UnitSide> m_unit;
    std::unique_ptr<MainWindow> m_window;
    QSet<QString> m_names;
    QStringList m_faults;
};

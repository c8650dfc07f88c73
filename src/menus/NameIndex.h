#pragma once

#include <QHash>
#include <QList>
#include <QString>

/// Finds the first item of a list that bears a name, without searching the list.
///
/// It serves the keys of a menu, by their identifiers, and the menus of the book, by their names:
/// with thousands of keys a search for each message would take longer than all that the message
/// does. The index holds positions and no pointers, so that it cannot lead to an item that is gone
/// from the list. It notices by itself when the list grows or shrinks, and when the item that it
/// finds has another name by now. Nothing tells it that an item has taken a new name: before the
/// item is asked for by that name, something has to ask for the old one.
template <class Item>
class NameIndex
{
public:
    /// Makes an index.
    /// \param items the list, which must live as long as the index
    /// \param name the member by which items are found
    NameIndex(const QList<Item*>& items, QString Item::*name)
        : m_items(items)
        , m_name(name)
    {
    }

    /// \return the first item of this name, nullptr when there is none. Case counts.
    Item* find(const QString& name)
    {
        takeChanges();
        Item* found = at(name);
        if (found != nullptr && found->*m_name != name) {
            rebuild();
            found = at(name);
        }
        return found;
    }

private:
    Item* at(const QString& name) const
    {
        const auto found = m_positions.constFind(name);
        return found != m_positions.cend() ? m_items.at(*found) : nullptr;
    }

    void takeChanges()
    {
        const bool isLonger =
            m_items.size() > m_indexed && (m_indexed == 0 || m_items.at(m_indexed - 1) == m_last);
        if (isLonger) {
            indexFrom(m_indexed);
        } else if (m_items.size() != m_indexed ||
            (m_indexed > 0 && m_items.constLast() != m_last)) {
            rebuild();
        }
    }

    void rebuild()
    {
        m_positions.clear();
        indexFrom(0);
    }

    void indexFrom(qsizetype start)
    {
        for (qsizetype i = start; i < m_items.size(); ++i) {
            const QString& name = m_items.at(i)->*m_name;
            if (!m_positions.contains(name)) {
                m_positions.insert(name, i);
            }
        }
        m_indexed = m_items.size();
        m_last = m_items.isEmpty() ? nullptr : m_items.constLast();
    }

    const QList<Item*>& m_items;
    QString Item::*m_name;
    QHash<QString, qsizetype> m_positions; // of the first item of each name
    qsizetype m_indexed = 0;               // how many items it covers, from the first
    const void* m_last = nullptr;          // the last of them; compared, never followed
};

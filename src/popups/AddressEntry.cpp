#include "popups/AddressEntry.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr qsizetype Groups = 4;
constexpr qsizetype GroupDigits = 3;
constexpr int LargestGroup = 255;
constexpr QChar Dot{u'.'};

bool isGroup(const QString& text)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    return isNumber && value >= 0 && value <= LargestGroup;
}

} // namespace

void AddressEntry::append(const QString& key)
{
    const QStringList parts = m_text.trimmed().split(Dot);
    const bool full = parts.constLast().size() >= GroupDigits;
    const bool isDot = key == Dot;
    if (parts.size() < Groups) {
        if (full && !isDot) {
            m_text += Dot;
        }
        m_text += key;
    } else if (!full && !isDot) {
        m_text += key;
    }
}

void AddressEntry::backspace()
{
    m_text.chop(1);
}

void AddressEntry::clear()
{
    m_text.clear();
}

bool AddressEntry::isValid() const
{
    const QStringList parts = m_text.split(Dot);
    return parts.size() == Groups && std::all_of(parts.cbegin(), parts.cend(), isGroup);
}

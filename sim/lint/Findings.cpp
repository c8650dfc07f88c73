#include "sim/lint/Findings.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <tuple>

namespace lint {

namespace {

constexpr Severity Error = Severity::Error;
constexpr Severity Warning = Severity::Warning;
constexpr Severity Note = Severity::Note;

constexpr Code Table[] = {
    {"QN100", Error, "the file cannot be read"},
    {"QN101", Error, "unknown command word"},
    {"QN102", Error, "too few fields"},
    {"QN103", Error, "a field of the wrong type"},
    {"QN104", Error, "a character that cannot be sent"},
    {"QN105", Error, "a message that is too long"},
    {"QN106", Error, "a wait without a good time"},
    {"QN107", Error, "not a menu file in JSON"},
    {"QN108", Error, "a comma in a text"},
    {"QN109", Warning, "more fields than the panel reads"},
    {"QN110", Warning, "a comment for the check that is not understood"},
    {"QN201", Error, "unknown menu"},
    {"QN202", Error, "unknown key"},
    {"QN203", Error, "a key that opens a menu that does not exist"},
    {"QN204", Warning, "a menu that no key reaches"},
    {"QN205", Note, "a value that is not taken"},
    {"QN301", Error, "a key type that does not exist"},
    {"QN302", Warning, "a kind of number that does not exist"},
    {"QN303", Warning, "a number of columns that does not exist"},
    {"QN304", Error, "a key without a range"},
    {"QN305", Error, "a range that cannot be read"},
    {"QN306", Error, "a reversed range"},
    {"QN307", Warning, "a reversed slider range"},
    {"QN308", Warning, "a value outside its range"},
    {"QN309", Warning, "a range below zero on a pad without a minus sign"},
    {"QN310", Warning, "a slider step that has no effect"},
    {"QN311", Warning, "a number with a special value that has none"},
    {"QN312", Warning, "a range of more than two numbers"},
    {"QN401", Error, "a selection without items"},
    {"QN402", Warning, "a file list without items"},
    {"QN403", Warning, "an item without a blank"},
    {"QN404", Warning, "a choice that is covered"},
    {"QN405", Warning, "more choices than fit"},
    {"QN406", Error, "choices that are left out"},
    {"QN407", Warning, "a locked choice that does not exist"},
    {"QN501", Error, "two keys in one cell"},
    {"QN502", Error, "a key without a cell"},
    {"QN503", Warning, "more keys than columns"},
    {"QN504", Warning, "a main menu that is laid out otherwise"},
    {"QN505", Warning, "a state that is not shown"},
    {"QN601", Warning, "a label that is too long"},
    {"QN602", Warning, "a command without a separator"},
    {"QN603", Warning, "a key without a command"},
    {"QN604", Warning, "a key without a label"},
    {"QN701", Error, "SM: out of range"},
    {"QN702", Error, "SP: out of range"},
    {"QN703", Error, "Slave: out of range"},
    {"QN704", Error, "LC: out of range"},
    {"QN705", Error, "HM: out of range"},
    {"QN706", Error, "SH: out of range"},
    {"QN707", Error, "SQ: out of range"},
    {"QN708", Error, "SF: out of range"},
    {"QN709", Error, "PAX: out of range"},
    {"QN710", Error, "ST: out of range"},
    {"QN711", Warning, "PM: out of range"},
};

} // namespace

const QList<Code>& codes()
{
    static const QList<Code> all(std::begin(Table), std::end(Table));
    return all;
}

const Code* findCode(const QString& name)
{
    static const QHash<QString, const Code*> byName = [] {
        QHash<QString, const Code*> all;
        for (const Code& code : codes()) {
            all.insert(QLatin1String(code.name), &code);
        }
        return all;
    }();
    return byName.value(name, nullptr);
}

QString severityName(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return QStringLiteral("error");
    case Severity::Warning:
        return QStringLiteral("warning");
    default:
        return QStringLiteral("note");
    }
}

void Findings::add(
    const char* code, const MenuPlace& place, const QString& text, const QString& hint)
{
    const QString name = QString::fromLatin1(code);
    m_all.append({place, findCode(name)->severity, name, text, hint});
}

namespace {

// What is silenced where: "QN404" in a line, at a JSON pointer, or in the whole file.
class Silenced
{
public:
    explicit Silenced(const QList<MenuSilence>& silences)
    {
        for (const MenuSilence& silence : silences) {
            for (const QString& code : silence.codes) {
                m_keys.insert(key(code, silence.target));
            }
        }
    }

    bool hits(const Finding& finding) const
    {
        if (m_keys.isEmpty()) {
            return false;
        }
        if (m_keys.contains(key(finding.code, {}))) {
            return true;
        }
        if (finding.place.pointer.isEmpty()) {
            return m_keys.contains(key(finding.code, finding.place));
        }
        QString pointer = finding.place.pointer; // an object silences what it holds
        for (; !pointer.isEmpty(); pointer.truncate(pointer.lastIndexOf(QLatin1Char('/')))) {
            if (m_keys.contains(key(finding.code, {0, pointer}))) {
                return true;
            }
        }
        return false;
    }

private:
    static QString key(const QString& code, const MenuPlace& place)
    {
        return place.pointer.isEmpty() ? code + QString::number(place.line) : code + place.pointer;
    }

    QSet<QString> m_keys;
};

} // namespace

QList<Finding> Findings::sorted(const QList<MenuSilence>& silences) const
{
    const Silenced silenced(silences);
    QList<Finding> found;
    for (const Finding& finding : m_all) {
        if (!silenced.hits(finding)) {
            found.append(finding);
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const Finding& left, const Finding& right) {
        return std::tie(left.place.line, left.code) < std::tie(right.place.line, right.code);
    });
    return found;
}

} // namespace lint

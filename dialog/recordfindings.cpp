#include "recordfindings.h"

#include "dialogtexts.h"
#include "fieldrules.h"

#include <algorithm>
#include <climits>

namespace IPCPRI {
namespace RecordFindings {

namespace {

namespace Key = Config::Key;

int editDistance(const QString &a, const QString &b)
{
    QVector<int> row(b.size() + 1);
    for (int j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (int i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            const int above = row[j];
            row[j] = std::min(
                {row[j] + 1, row[j - 1] + 1, diagonal + (a.at(i - 1) == b.at(j - 1) ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

// The key of the record nearest to a text, letter case aside.
QString nearestKey(const QString &text)
{
    QString nearest;
    int best = INT_MAX;
    for (const Config::KeySpec &keyRule : Config::recordKeys()) {
        const int distance = editDistance(text.toLower(), keyRule.key.toLower());
        if (distance < best) {
            best = distance;
            nearest = keyRule.key;
        }
    }
    return nearest;
}

} // namespace

// A value as the lines show it: texts quoted, booleans and numbers bare.
QString shown(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Int:
        return QString::number(value.toInt());
    default:
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    }
}

QString quotedList(const QStringList &items)
{
    return items.isEmpty() ? QStringLiteral("nothing") : items.join(Texts::ListSeparator);
}

RecordFinding finding(RecordFinding::Kind kind, const QString &key, const QString &text)
{
    return RecordFinding{kind, key, text};
}

// The dialog refuses the record with its own message.
RecordFinding refused(const QString &key, const QString &subject, const QString &message,
                      const QString &why)
{
    return finding(RecordFinding::Refused, key,
                   subject + QStringLiteral(": ") + message
                       + (why.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(why)));
}

// "KEY" is VALUE, as the record holds it.
QString subject(const ConfigMap &record, const QString &key)
{
    return QStringLiteral("\"%1\" is %2")
        .arg(key, record.contains(key) ? shown(record.value(key)) : QStringLiteral("missing"));
}

RecordFinding unknownKey(const ConfigMap &record)
{
    for (auto it = record.cbegin(); it != record.cend(); ++it) {
        if (!Config::keySpec(it.key()))
            return finding(RecordFinding::Unknown, it.key(),
                           QStringLiteral("\"%1\" is no key of the record; did you mean \"%2\"?")
                               .arg(it.key(), nearestKey(it.key())));
    }
    return RecordFinding();
}

// What the dialog keeps of an entry typed into a text field, and the
// values its "Auto" modes hold.
RecordFinding fieldProblem(const ConfigMap &record)
{
    for (const FieldRules::TextRule &rule : FieldRules::textRules()) {
        if (!record.contains(rule.key))
            continue;
        const QString text = record.value(rule.key).toString();
        const QString kept = rule.keep(text);
        if (kept != text)
            return finding(RecordFinding::Kept, rule.key,
                           QStringLiteral("%1; the dialog keeps %2 and puts \"%3\" in its place")
                               .arg(subject(record, rule.key), rule.range, kept));
    }
    struct Held
    {
        QString modeKey;
        QString key;
        int value;
    };
    const Held held[] = {
        {Key::FfeMode, Key::FfeCm, FieldRules::AutoFfeTap},
        {Key::FfeMode, Key::FfeC1, FieldRules::AutoFfeTap},
        {Key::EqualizationMode, Key::Att, FieldRules::autoAttenuation()},
        {Key::EqualizationMode, Key::Boost, FieldRules::autoBoost()},
    };
    for (const Held &h : held) {
        if (record.value(h.modeKey) == Config::AutoMode && record.contains(h.key)
            && record.value(h.key).toInt() != h.value)
            return finding(RecordFinding::Kept, h.key,
                           QStringLiteral("%1; in the %2 \"%3\" the dialog holds it at %4")
                               .arg(subject(record, h.key), h.modeKey, Config::AutoMode)
                               .arg(h.value));
    }
    return RecordFinding();
}

bool sameValue(const QVariant &a, const QVariant &b)
{
    return a.userType() == b.userType() && a == b;
}

} // namespace RecordFindings
} // namespace IPCPRI

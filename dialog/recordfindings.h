#pragma once

#include "../config/configkeys.h"

#include <QString>
#include <QStringList>
#include <QVariant>

namespace IPCPRI {

// The first thing the dialog changes or refuses in a stored record, as one
// line naming the key, its value, what the dialog writes and the dialog's
// reason.
struct RecordFinding
{
    enum Kind {
        None,
        Refused, // accepting fails, with the dialog's message
        Changed, // the dialog hands back another value, or none
        Missing, // the dialog hands back a value the record lacks
        Unknown, // the record holds a key the dialog does not know
        Kept,    // typed into its field, the value would not stay
    };
    Kind kind = None;
    QString key;
    QString text;

    bool isNone() const { return kind == None; }
};

// How the lines of the record check say what they say.
namespace RecordFindings {

// A value as the lines show it: texts quoted, booleans and numbers bare.
QString shown(const QVariant &value);
// A list's items as the lines name them; "nothing" for none.
QString quotedList(const QStringList &items);
// "KEY" is VALUE, as the record holds it, or "KEY" is missing.
QString subject(const ConfigMap &record, const QString &key);
// Whether two values are the same, their types included.
bool sameValue(const QVariant &a, const QVariant &b);

RecordFinding finding(RecordFinding::Kind kind, const QString &key, const QString &text);
// The dialog refuses the record with its own message, and why where that says more.
RecordFinding refused(const QString &key, const QString &subject, const QString &message,
                      const QString &why = QString());
// A key the record holds that the dialog does not know, with the nearest one it knows.
RecordFinding unknownKey(const ConfigMap &record);
// What the dialog keeps of an entry typed into a text field, and the values
// its "Auto" modes hold.
RecordFinding fieldProblem(const ConfigMap &record);

} // namespace RecordFindings
} // namespace IPCPRI

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace CpriHost {

// What a record must hold before its core is generated: the values the
// core's dialog would have written for it. Every text is free of control
// characters, the file and module names pass the dialog frame's name rules,
// each choice is one the dialog offers, and the fields the dialog keeps in
// range (configuration clock, hexadecimal presets, speed mask) hold what
// the dialog would keep. The reference frequency reaches only its setting
// line, as a number, where the generator's check of setting lines judges it.
class RecordRules
{
public:
    // The lanes the dialog offers (the registry's free lanes) and the part
    // name of the record's device (empty for none), which decides the
    // reference-clock sources offered.
    RecordRules(const QStringList &offeredLanes, const QString &partName);

    // Why the record may not be generated, in one line, or an empty text.
    QString problem(const QMap<QString, QVariant> &record) const;

    // The values the dialog offers for a key it fills from a list; empty
    // for any other key.
    QStringList offered(const QString &key) const;

private:
    struct Choice;
    QVector<Choice> choices() const;
    QString choiceProblem(const QMap<QString, QVariant> &record) const;

    QStringList m_lanes;
    QString m_partName;
};

} // namespace CpriHost

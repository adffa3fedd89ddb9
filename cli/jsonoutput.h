#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QString>
#include <QStringList>
#include <QTextStream>

namespace CpriHost {

// Results go to standard output as JSON, problems to standard error as one
// line each.
inline void print(const QJsonDocument &doc)
{
    QTextStream(stdout) << doc.toJson(QJsonDocument::Indented);
}

inline void warn(const QString &message)
{
    QTextStream(stderr) << "cpri-host: " << message << '\n';
}

inline QJsonArray toArray(const QStringList &list)
{
    return QJsonArray::fromStringList(list);
}

} // namespace CpriHost

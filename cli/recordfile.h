#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVariant>

namespace CpriHost {

// Configuration records stored as JSON objects of text, boolean and
// integer values.
class RecordFile
{
public:
    // Reads and checks a record; false with error set on a missing file,
    // malformed JSON or a value of the wrong type.
    static bool read(const QString &path, QMap<QString, QVariant> &record, QString &error);
    // The same for a record's JSON text; name stands for its source in errors.
    static bool parse(const QByteArray &json, const QString &name, QMap<QString, QVariant> &record,
                      QString &error);
    // Writes a record atomically; false with error set when it cannot.
    static bool write(const QString &path, const QMap<QString, QVariant> &record, QString &error);
    static QJsonObject toJson(const QMap<QString, QVariant> &record);
};

} // namespace CpriHost

#include "recordfile.h"

#include <config/configkeys.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonValue>
#include <QSaveFile>

#include <cmath>
#include <limits>

namespace CpriHost {

namespace {

using IPCPRI::Config::ValueType;

QString typeName(ValueType type)
{
    switch (type) {
    case ValueType::Text:
        return QStringLiteral("a text");
    case ValueType::Bool:
        return QStringLiteral("a boolean");
    case ValueType::Int:
        return QStringLiteral("an integer");
    }
    return QString();
}

bool isInteger(const QJsonValue &value)
{
    if (!value.isDouble())
        return false;
    const double number = value.toDouble();
    return std::floor(number) == number && number >= std::numeric_limits<int>::min()
           && number <= std::numeric_limits<int>::max();
}

// The value as a record holds it, if its JSON type is one a record can hold.
bool toVariant(const QJsonValue &value, QVariant &out, ValueType &type)
{
    if (value.isString()) {
        out = value.toString();
        type = ValueType::Text;
    } else if (value.isBool()) {
        out = value.toBool();
        type = ValueType::Bool;
    } else if (isInteger(value)) {
        out = value.toInt();
        type = ValueType::Int;
    } else {
        return false;
    }
    return true;
}

} // namespace

bool RecordFile::read(const QString &path, QMap<QString, QVariant> &record, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        return false;
    }
    return parse(file.readAll(), path, record, error);
}

bool RecordFile::parse(const QByteArray &json, const QString &name, QMap<QString, QVariant> &record,
                       QString &error)
{
    QJsonParseError parse;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &parse);
    if (parse.error != QJsonParseError::NoError) {
        error = QStringLiteral("%1: malformed JSON at offset %2: %3")
                    .arg(name)
                    .arg(parse.offset)
                    .arg(parse.errorString());
        return false;
    }
    if (!doc.isObject()) {
        error = QStringLiteral("%1: a record must be a JSON object").arg(name);
        return false;
    }
    const QJsonObject object = doc.object();
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        QVariant value;
        ValueType type;
        const IPCPRI::Config::KeySpec *known = IPCPRI::Config::keySpec(it.key());
        if (!toVariant(it.value(), value, type) || (known && known->type != type)) {
            error = QStringLiteral("%1: the value of \"%2\" must be %3")
                        .arg(name, it.key(),
                             known ? typeName(known->type)
                                   : QStringLiteral("a text, a boolean or an integer"));
            return false;
        }
        record.insert(it.key(), value);
    }
    return true;
}

QJsonObject RecordFile::toJson(const QMap<QString, QVariant> &record)
{
    return QJsonObject::fromVariantMap(record);
}

bool RecordFile::write(const QString &path, const QMap<QString, QVariant> &record, QString &error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(toJson(record)).toJson()) < 0
        || !file.commit()) {
        error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace CpriHost

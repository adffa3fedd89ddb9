#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace Guide {

// What a port carries: its clock domain ("clock" for a clock, "async" for a
// signal that may change at any time, or the clock port it runs with) and
// one line of meaning.
struct PortMeaning
{
    QString domain;
    QString meaning;
};

inline const QString ClockDomain = QStringLiteral("clock");
inline const QString AsyncDomain = QStringLiteral("async");

// Every port a record can give the core, by name without bit range, in the
// order of the symbol's groups.
QStringList figurePortNames();

// The meaning of every port from lines "port domain meaning" ('#' starts a
// comment); empty, with the reason in error, when a port of the symbol has
// no line, a line names no port, or a domain is no clock of the symbol.
QMap<QString, PortMeaning> readPortMeanings(const QString &path, QString &error);

// One table per group of the symbol: each port's direction, width by speed
// class, clock domain and meaning.
QString portsSection(const QMap<QString, PortMeaning> &meanings);

} // namespace Guide

#include "portsguide.h"

#include "guidehtml.h"

#include <config/configkeys.h>
#include <config/speedrules.h>
#include <dialog/coreports.h>

#include <QFile>

using namespace IPCPRI;

namespace Guide {

namespace {

// A group's ports as records can give them: per port its direction and its
// width under each speed class (in the order of the classes).
struct GroupPorts
{
    QStringList names;
    QMap<QString, CorePort::Direction> directions;
    QMap<QString, QVector<int>> widths;
};

// A record that sets the keys given.
ConfigMap setting(const QStringList &keys)
{
    ConfigMap record;
    for (const QString &key : keys)
        record.insert(key, true);
    return record;
}

QStringList boolKeys()
{
    QStringList keys;
    for (const Config::KeySpec &key : Config::recordKeys()) {
        if (key.type == Config::ValueType::Bool)
            keys << key.key;
    }
    return keys;
}

// Each speed class with each switch of the record, one at a time.
GroupPorts groupPorts(const PortGroup &group)
{
    GroupPorts ports;
    const QVector<Config::SpeedClass> &classes = Config::speedClasses();
    for (int c = 0; c < classes.size(); ++c) {
        for (const QString &key : QStringList{QString()} + boolKeys()) {
            const FigureChoices choices = figureChoices(setting({classes.at(c).key, key}));
            for (const QString &name : group.ports(choices)) {
                const CorePort port = corePort(pinFigure(name));
                if (!ports.names.contains(port.name))
                    ports.names << port.name;
                ports.directions.insert(port.name, port.direction);
                ports.widths[port.name].resize(classes.size());
                ports.widths[port.name][c] = port.width;
            }
        }
    }
    return ports;
}

// "always", or the keys of which any one shows the group.
QString shownWhen(const PortGroup &group)
{
    if (!group.ports(figureChoices({})).isEmpty())
        return QStringLiteral("Always there.");
    QStringList keys;
    for (const QString &key : boolKeys()) {
        if (!group.ports(figureChoices(setting({key}))).isEmpty())
            keys << key;
    }
    return QStringLiteral("There when the record sets %1.")
        .arg(codes(keys).replace(QStringLiteral(", "), QStringLiteral(" or ")));
}

bool varies(const QVector<int> &widths)
{
    return std::any_of(widths.cbegin(), widths.cend(), [&](int w) { return w != widths.first(); });
}

QString domainText(const QString &domain)
{
    if (domain == ClockDomain)
        return QStringLiteral("a clock");
    if (domain == AsyncDomain)
        return QStringLiteral("asynchronous");
    return code(domain);
}

QString groupTable(const PortGroup &group, const QMap<QString, PortMeaning> &meanings)
{
    const GroupPorts ports = groupPorts(group);
    const bool byClass = std::any_of(ports.names.cbegin(), ports.names.cend(),
                                     [&](const QString &n) { return varies(ports.widths[n]); });
    QStringList header{QStringLiteral("Port"), QStringLiteral("Direction")};
    if (byClass) {
        for (const Config::SpeedClass &c : Config::speedClasses())
            header << QStringLiteral("Width, ") + c.key;
    } else {
        header << QStringLiteral("Width");
    }
    header << QStringLiteral("Clock domain") << QStringLiteral("Meaning");
    QString rows;
    for (const QString &name : ports.names) {
        QStringList cells{code(name), ports.directions.value(name) == CorePort::Input
                                          ? QStringLiteral("input")
                                          : QStringLiteral("output")};
        for (int width : byClass ? ports.widths.value(name) : ports.widths.value(name).mid(0, 1))
            cells << QString::number(width);
        cells << domainText(meanings.value(name).domain) << esc(meanings.value(name).meaning);
        rows += row(cells);
    }
    return QStringLiteral("<h3>%1</h3>\n<p>%2</p>\n").arg(esc(group.title), shownWhen(group))
           + table(header, rows);
}

} // namespace

QStringList figurePortNames()
{
    QStringList names;
    for (const PortGroup &group : portGroups())
        names << groupPorts(group).names;
    return names;
}

QMap<QString, PortMeaning> readPortMeanings(const QString &path, QString &error)
{
    QMap<QString, PortMeaning> meanings;
    const QLatin1Char blank(' ');
    const QStringList lines = dataLines(path, error);
    if (!error.isEmpty())
        return {};
    for (const QString &line : lines)
        meanings.insert(line.section(blank, 0, 0),
                        {line.section(blank, 1, 1), line.section(blank, 2)});
    const QStringList ports = figurePortNames();
    for (const QString &port : ports) {
        if (meanings.value(port).meaning.isEmpty())
            error = QStringLiteral("%1 gives no meaning of port \"%2\"").arg(path, port);
    }
    for (auto it = meanings.cbegin(); it != meanings.cend(); ++it) {
        const QString &domain = it->domain;
        if (!ports.contains(it.key()))
            error =
                QStringLiteral("%1 names \"%2\", which is no port of the core").arg(path, it.key());
        else if (domain != AsyncDomain && domain != ClockDomain
                 && meanings.value(domain).domain != ClockDomain)
            error = QStringLiteral("%1 gives \"%2\" the clock domain \"%3\", which is no clock of "
                                   "the core")
                        .arg(path, it.key(), domain);
    }
    return error.isEmpty() ? meanings : QMap<QString, PortMeaning>();
}

QString portsSection(const QMap<QString, PortMeaning> &meanings)
{
    QString html = QStringLiteral(
        "<h2>Ports</h2>\n<p>The ports of the generated core depend on the record; they come in "
        "the groups below, in the order of the dialog's port figure. A port ending in "
        "<code>_i</code> is an input, one ending in <code>_o</code> an output. A port runs in "
        "the clock domain of the clock port named beside it; an asynchronous one may change at "
        "any time. Where a group's widths depend on the speed class, each class has its "
        "column.</p>\n");
    for (const PortGroup &group : portGroups())
        html += groupTable(group, meanings);
    return html;
}

} // namespace Guide

#include "instantiation.h"

#include <dialog/coreports.h>
#include <ipserdes/namerules.h>

#include <QStringList>

namespace CpriHost {

namespace {

namespace Key = IPCPRI::Config::Key;
using IPCPRI::CorePort;

// A bus's bit range and the blank after it; nothing for a single bit.
QString rangeText(int width)
{
    return width == 1 ? QString() : QStringLiteral("[%1:0] ").arg(width - 1);
}

} // namespace

QString verilogIdentifier(const QString &name)
{
    if (IPSERDESIP::NameRules::moduleNameProblem(name).isEmpty())
        return name;
    return QLatin1Char('\\') + name + QLatin1Char(' ');
}

QString defaultWirePrefix(const IPCPRI::ConfigMap &record)
{
    return record.value(Key::File).toString() + QLatin1Char('_');
}

QString instantiationTemplate(const IPCPRI::ConfigMap &record, const QString &prefix)
{
    const QVector<CorePort> ports = IPCPRI::corePorts(record);
    QString text;
    for (const CorePort &port : ports)
        text += QStringLiteral("wire %1%2;\n")
                    .arg(rangeText(port.width), verilogIdentifier(prefix + port.name));
    text += QStringLiteral("%1 %2 (\n")
                .arg(verilogIdentifier(record.value(Key::Module).toString()),
                     verilogIdentifier(record.value(Key::File).toString()));
    QStringList connections;
    for (const CorePort &port : ports) {
        connections
            << QStringLiteral("    .%1(%2)").arg(port.name, verilogIdentifier(prefix + port.name));
    }
    return text + connections.join(QStringLiteral(",\n")) + QStringLiteral("\n);\n");
}

QStringList templateNames(const IPCPRI::ConfigMap &record, const QString &prefix)
{
    QStringList names{record.value(Key::File).toString()};
    for (const CorePort &port : IPCPRI::corePorts(record))
        names << prefix + port.name;
    return names;
}

} // namespace CpriHost

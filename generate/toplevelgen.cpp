// toplevelgen SOURCE OUTPUT: writes the package's top level from its source,
// closed with an `undef line for each of its defines and those of the define
// files (see toplevel.h). The build runs it for the package's data folder.

#include "toplevel.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() != 3) {
        QTextStream(stderr) << "usage: toplevelgen SOURCE OUTPUT\n";
        return 2;
    }
    QFile source(args.at(1));
    if (!source.open(QIODevice::ReadOnly)) {
        QTextStream(stderr) << "toplevelgen: cannot read " << args.at(1) << '\n';
        return 1;
    }
    QString text = QString::fromUtf8(source.readAll());
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    const QStringList lines = IPCPRI::Generate::closedTopLevel(text.split(QLatin1Char('\n')));
    QSaveFile out(args.at(2));
    if (!out.open(QIODevice::WriteOnly)
        || out.write((lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8()) < 0
        || !out.commit()) {
        QTextStream(stderr) << "toplevelgen: cannot write " << args.at(2) << '\n';
        return 1;
    }
    return 0;
}

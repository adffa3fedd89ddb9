#include "toplevel.h"

#include "definefiles.h"
#include "generationnames.h"

#include <QRegularExpression>

namespace IPCPRI {
namespace Generate {

namespace {

namespace Key = Config::Key;

const QString UndefLine = QStringLiteral("`undef %1");
const QString CoreTopLevelHeader =
    QStringLiteral("// The top level of the core %1: the package's %2");
const QStringList ClosingComment = {
    QStringLiteral("// Nothing defined above outlives this file: the next core of a compilation"),
    QStringLiteral("// starts afresh."),
};

// The file an include line names; empty for any other line.
QString includedFile(const QString &line)
{
    static const QRegularExpression include(QStringLiteral("^\\s*`include\\s+\"([^\"]+)\"\\s*$"));
    return include.match(line).captured(1);
}

} // namespace

QStringList closedTopLevel(const QStringList &source)
{
    static const QRegularExpression define(QStringLiteral("`define\\s+(\\w+)"));
    QStringList names;
    for (const QString &line : source) {
        for (auto it = define.globalMatch(line); it.hasNext();)
            names << it.next().captured(1);
    }
    names << defineNames();
    names.removeDuplicates();
    QStringList lines = source + ClosingComment;
    for (const QString &name : qAsConst(names))
        lines << UndefLine.arg(name);
    return lines;
}

QStringList coreTopLevel(const QStringList &packageTopLevel, const ConfigMap &record)
{
    QStringList lines{CoreTopLevelHeader.arg(record.value(Key::Module).toString(), TopLevelSource),
                      QStringLiteral("// with the lines of %1 and %2 in place of their includes.")
                          .arg(TopDefineFile, CoreDefineFile)};
    int tops = 0, cores = 0;
    for (const QString &line : packageTopLevel) {
        const QString file = includedFile(line);
        if (file == TopDefineFile) {
            lines << topDefines(record);
            ++tops;
        } else if (file == CoreDefineFile) {
            lines << coreDefines(record);
            ++cores;
        } else {
            lines << line;
        }
    }
    return tops == 1 && cores == 1 ? lines : QStringList();
}

bool isCoreTopLevel(const QString &firstLine)
{
    return firstLine.startsWith(CoreTopLevelHeader.section(QStringLiteral("%1"), 0, 0));
}

} // namespace Generate
} // namespace IPCPRI

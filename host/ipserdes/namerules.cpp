#include "namerules.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace IPSERDESIP {
namespace NameRules {

namespace {

// The messages belong to the dialog frame, which shows them.
QString tr(const char *text)
{
    return QCoreApplication::translate("IPSERDESIP::protocolGenDlg", text);
}

const QSet<QString> &verilogKeywords()
{
    // clang-format off
    static const QSet<QString> keywords = {
        "always", "and", "assign", "automatic", "begin", "buf", "bufif0", "bufif1",
        "case", "casex", "casez", "cell", "cmos", "config", "deassign", "default",
        "defparam", "design", "disable", "edge", "else", "end", "endcase", "endconfig",
        "endfunction", "endgenerate", "endmodule", "endprimitive", "endspecify",
        "endtable", "endtask", "event", "for", "force", "forever", "fork", "function",
        "generate", "genvar", "highz0", "highz1", "if", "ifnone", "incdir", "include",
        "initial", "inout", "input", "instance", "integer", "join", "large", "liblist",
        "library", "localparam", "macromodule", "medium", "module", "nand", "negedge",
        "nmos", "nor", "noshowcancelled", "not", "notif0", "notif1", "or", "output",
        "parameter", "pmos", "posedge", "primitive", "pull0", "pull1", "pulldown",
        "pullup", "pulsestyle_onevent", "pulsestyle_ondetect", "rcmos", "real",
        "realtime", "reg", "release", "repeat", "rnmos", "rpmos", "rtran", "rtranif0",
        "rtranif1", "scalared", "showcancelled", "signed", "small", "specify",
        "specparam", "strong0", "strong1", "supply0", "supply1", "table", "task", "time",
        "tran", "tranif0", "tranif1", "tri", "tri0", "tri1", "triand", "trior", "trireg",
        "unsigned", "use", "vectored", "wait", "wand", "weak0", "weak1", "while", "wire",
        "wor", "xnor", "xor"};
    // clang-format on
    return keywords;
}

bool isAllowedFileNameChar(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == '_'
           || u == '-' || u == '.';
}

bool isPathSeparator(QChar c)
{
    return c == QLatin1Char('/') || c == QLatin1Char('\\');
}

// A character as a message shows it: quoted when it prints, by its code otherwise.
QString shown(QChar c)
{
    if (c.isPrint())
        return QLatin1Char('"') + c + QLatin1Char('"');
    return QStringLiteral("<U+%1>").arg(QString::number(c.unicode(), 16).toUpper(), 4,
                                        QLatin1Char('0'));
}

// A name as a message quotes it: characters that do not print by their codes.
QString shown(const QString &name)
{
    QString text;
    for (QChar c : name)
        text += c.isPrint() ? QString(c) : shown(c);
    return text;
}

// The characters of name that a file name may not hold, each once, path
// separators left out (they are reported on their own).
QStringList forbiddenFileNameChars(const QString &name)
{
    QStringList found;
    for (QChar c : name) {
        if (!isAllowedFileNameChar(c) && !isPathSeparator(c) && !found.contains(shown(c)))
            found.append(shown(c));
    }
    return found;
}

bool isPathLike(const QString &name)
{
    return name == QLatin1String(".") || name == QLatin1String("..")
           || std::any_of(name.cbegin(), name.cend(), isPathSeparator);
}

} // namespace

QStringList fileNameProblems(const QString &name)
{
    if (name.isEmpty())
        return {tr("The file name is empty.")};
    QStringList problems;
    if (isPathLike(name)) {
        problems.append(tr("The file name \"%1\" must be a plain name, not a path "
                           "(no \"/\" or \"\\\", and not \".\" or \"..\").")
                            .arg(shown(name)));
    }
    const QStringList forbidden = forbiddenFileNameChars(name);
    if (!forbidden.isEmpty()) {
        problems.append(tr("The file name \"%1\" contains characters that are not allowed (%2); "
                           "use only letters A-Z and a-z, digits, \"_\", \"-\" and \".\".")
                            .arg(shown(name), forbidden.join(QStringLiteral(", "))));
    }
    const int bytes = QFile::encodeName(name).size();
    if (bytes > MaxFileNameBytes) {
        problems.append(tr("The file name is %1 bytes long; a folder name holds at most %2.")
                            .arg(bytes)
                            .arg(MaxFileNameBytes));
    }
    return problems;
}

QString moduleNameProblem(const QString &name)
{
    if (name.isEmpty())
        return tr("The module name is empty.");
    static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_$]*$"));
    if (!identifier.match(name).hasMatch()) {
        return tr("The module name \"%1\" is not a legal Verilog identifier: "
                  "it must start with a letter or \"_\" and may only contain "
                  "letters, digits, \"_\" and \"$\".")
            .arg(shown(name));
    }
    if (isVerilogKeyword(name))
        return tr("The module name \"%1\" is a reserved Verilog keyword.").arg(name);
    return QString();
}

bool isVerilogKeyword(const QString &word)
{
    return verilogKeywords().contains(word);
}

} // namespace NameRules
} // namespace IPSERDESIP
